// How the library enters its own classes in the run time's table.
#ifndef ORVANE_BASE_RUN_TIME_CLASS_H
#define ORVANE_BASE_RUN_TIME_CLASS_H

#include <vector>

#include "Orvane/RunTime.h"

namespace Quern {

struct RunTimeMethod {
    const char* selector;
    orvane_implementation code;
};

// Makes a class with these methods and enters it under its name. Where the name is taken, the process holds a second
// copy of the library: the first one stays in force, and the class made here is found by nobody.
orvane_class* RegisterRunTimeClass(const char* name, const std::vector<RunTimeMethod>& instanceMethods,
                                   const std::vector<RunTimeMethod>& classMethods = {});

// Each enters the classes of one subject, and is defined beside what they stand for. Called once each, in this order,
// while the library loads: LibraryLoad.cpp does it before any other work.
void RegisterMainRunLoopClass();         // "OrvaneMainRunLoop", for Orvane/MainRunLoop.h
void RegisterInfoDictionaryClass();      // "OrvaneInfoDictionary", for Orvane/InfoPlist.h
void RegisterGameLogClass();             // "OrvaneGameLog", for Orvane/Game.h
void RegisterPlatformBridgeClass();      // "OrvanePlatformBridge", for Orvane/PlatformObject.h
void RegisterOperationQueueClass();      // "OrvaneOperationQueue", for Orvane/OperationQueue.h
void RegisterNotificationCenterClass();  // "OrvaneNotificationCenter", for Orvane/NotificationCenter.h
void RegisterNetworkClass();             // "OrvaneNetwork", for Orvane/INetwork.h
void RegisterNetworkCheckerClass();      // "OrvaneNetworkChecker", for Orvane/INetworkChecker.h
void RegisterWWWClass();                 // "OrvaneWWW", for Orvane/WWW.h
void RegisterApplicationClass();         // "CApplication", for Orvane/IApplicationObserver.h
void RegisterQuernApplicationClass();    // "QuernApplication", for Orvane/QuernApplicationObserver.h
void RegisterPluginUtilsClasses();       // "PluginUtils", and "PluginUtilsWrapper" for Orvane/IPluginManager.h
void RegisterAppLifecycleClasses();      // "OrvaneAppLifecycle" and its wrapper, for Orvane/AppLifecycle.h
void RegisterLifecycleHookClass();       // "OrvaneAppLifecycleDispatcher", whose methods the hook exchanges

}  // namespace Quern

#endif
