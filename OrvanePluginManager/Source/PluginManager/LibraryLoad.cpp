// All that happens while the library loads, before main. The one file with objects of static lifetime that do work;
// none of them has a destructor that does.
#include "Base/Bridge/PlatformBridge.h"
#include "Base/QuernCommon.h"
#include "PluginManager/PluginUtils.h"
#include "Storage/Bundle/InfoDictionaryClass.h"
#include "Storage/Log/GameLog.h"
#include "System/Application/CApplication.h"
#include "System/Application/MainRunLoopClass.h"
#include "System/Application/NotificationCenter.h"
#include "System/Application/OrvaneAppLifecycle.h"
#include "System/Application/OrvaneAppLifecycleDispatcher.h"
#include "System/Application/QuernApplication.h"
#include "System/Network/ANetworkApplicationObserver.h"
#include "System/Network/NetworkClass.h"
#include "System/NetworkChecker/NetworkCheckerClass.h"
#include "System/Operation/OperationQueueClass.h"
#include "System/WWW/Task/WWWClass.h"

namespace {

// The object run time of the home platform knows a library's classes, and has loaded them, before any initialiser of
// the library runs: so it is here.
struct RunTimeClassesLoad {
    RunTimeClassesLoad() {
        Quern::RegisterMainRunLoopClass();
        Quern::RegisterInfoDictionaryClass();
        Quern::RegisterGameLogClass();
        Quern::RegisterPlatformBridgeClass();
        Quern::RegisterOperationQueueClass();
        Quern::NotificationCenter::RegisterRunTimeClass();
        Quern::RegisterNetworkClass();
        Quern::RegisterNetworkCheckerClass();
        Quern::RegisterWWWClass();
        Quern::CApplication::RegisterRunTimeClass();
        Quern::QuernApplication::RegisterRunTimeClass();
        PluginUtils::RegisterRunTimeClasses();
        Orvane::OrvaneAppLifecycle::RegisterRunTimeClasses();
        Orvane::OrvaneAppLifecycleDispatcher::RegisterRunTimeClass();
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
