#include "System/Network/ANetworkApplicationObserver.h"

#include "Base/RunTimeClass.h"
#include "Orvane/AppLifecycle.h"
#include "System/Network/OrvaneCoreWifiChangeTimer.h"

namespace Quern {
namespace {

void* DidFinishLaunching(orvane_object*, const char*, void* const*) {
    return reinterpret_cast<void*>(static_cast<uintptr_t>(true));
}

void* DidEnterBackground(orvane_object*, const char*, void* const*) {
    OrvaneCoreWifiChangeTimer::RememberBeforeBackground();
    return nullptr;
}

void* WillEnterForeground(orvane_object*, const char*, void* const*) {
    OrvaneCoreWifiChangeTimer::Start();
    return nullptr;
}

}  // namespace

ANetworkApplicationObserver::ANetworkApplicationObserver() {
    OrvaneCoreWifiChangeTimer::MakeSnapshot();
    orvane_class* const cls = RegisterRunTimeClass("ANetworkApplicationObserver",
                                                   {{"application:didFinishLaunchingWithOptions:", DidFinishLaunching},
                                                    {"applicationDidEnterBackground:", DidEnterBackground},
                                                    {"applicationWillEnterForeground:", WillEnterForeground}});
    orvane_class_add_protocol(cls, ORVANE_APP_LIFECYCLE_OBSERVER);
    // The lifecycle does not retain its observers: this one is never released.
    gs_OrvaneAppLifecycleAddObserver(orvane_object_create(cls));
}

}  // namespace Quern
