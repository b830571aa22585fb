// All that happens while the library loads, before main. The one file with objects of static lifetime that do work;
// none of them has a destructor that does.
#include "Base/QuernCommon.h"
#include "Base/RunTimeClass.h"
#include "PluginManager/PluginUtils.h"
#include "System/Application/OrvaneAppLifecycle.h"
#include "System/Application/OrvaneAppLifecycleDispatcher.h"
#include "System/Application/QuernApplication.h"
#include "System/Network/ANetworkApplicationObserver.h"

namespace {

// On the home platform the run time has loaded a library's classes before any initialiser of the library runs. So here
// they are entered first: this object stands in front of the others.
struct RunTimeClassesLoad {
    RunTimeClassesLoad() {
        Quern::RegisterMainRunLoopClass();
        Quern::RegisterInfoDictionaryClass();
        Quern::RegisterGameLogClass();
        Quern::RegisterPlatformBridgeClass();
        Quern::RegisterOperationQueueClass();
        Quern::RegisterNotificationCenterClass();
        Quern::RegisterNetworkClass();
        Quern::RegisterNetworkCheckerClass();
        Quern::RegisterWWWClass();
        Quern::RegisterApplicationClass();
        Quern::RegisterQuernApplicationClass();
        Quern::RegisterPluginUtilsClasses();
        Quern::RegisterAppLifecycleClasses();
        Quern::RegisterLifecycleHookClass();
        Orvane::OrvaneAppLifecycleDispatcher::load();
    }
};

const RunTimeClassesLoad g_runTimeClassesLoad;
const Quern::QuernInitializer g_quernInitializer("Orvane");
const Quern::CLaunch g_launch;
const PluginUtilsLaunch g_pluginUtilsLaunch;
const Orvane::CAppLifecycleLaunch g_appLifecycleLaunch;
const Quern::ANetworkApplicationObserver g_networkApplicationObserver;

}  // namespace
