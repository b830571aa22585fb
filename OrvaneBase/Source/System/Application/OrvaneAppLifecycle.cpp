#include "System/Application/OrvaneAppLifecycle.h"

#include <algorithm>
#include <cstring>

#include "Base/ConsoleSink.h"
// Launch starts the whole library, and so reaches up to the log and the plugin host.
#include "PluginManager/InnerPlugin/OrvaneCoreInnerPlugin.h"
#include "PluginManager/PluginManager.h"
#include "Storage/Log/CoreLog.h"
#include "Storage/Log/Logger.h"
#include "System/Application/BackgroundState.h"

namespace Orvane {
namespace {

// The observer that may decide the orientations of a window: that of the login plugin.
constexpr char kOrientationObserverClass[] = "PluginRavelLifecycle";

bool FollowsProtocol(const orvane_object* observer) {
    return observer && orvane_class_conforms(observer->isa, ORVANE_APP_LIFECYCLE_OBSERVER);
}

bool DecidesOrientations(const orvane_object* observer) {
    const char* name = orvane_class_name(observer->isa);
    return name && strcmp(name, kOrientationObserverClass) == 0 &&
           orvane_object_responds(observer, DescribeAppEvent(AppEvent::SupportedInterfaceOrientations).selector);
}

}  // namespace

OrvaneAppLifecycle* OrvaneAppLifecycle::sharedInstance() {
    static OrvaneAppLifecycle* instance = new OrvaneAppLifecycle;  // never destroyed: threads ask it for its state
    return instance;
}

void OrvaneAppLifecycle::addObserver(orvane_object* observer) {
    if (!FollowsProtocol(observer)) return;
    const Observer pointer = Observer::pointerWithObject(observer);
    if (std::find(_observers.begin(), _observers.end(), pointer) != _observers.end()) return;
    _observers.push_back(pointer);
    Quern::PlatformLog("OrvaneCore addObserver pointer:%p, observer:%p", static_cast<const void*>(&_observers.back()),
                       static_cast<void*>(observer));
}

void OrvaneAppLifecycle::removeObserver(orvane_object* observer) {
    if (!FollowsProtocol(observer)) return;
    const Observer pointer = Observer::pointerWithObject(observer);
    Quern::PlatformLog("OrvaneCore removeObserver pointer:%p, observer:%p", static_cast<const void*>(&pointer),
                       static_cast<void*>(observer));
    const auto found = std::find(_observers.begin(), _observers.end(), pointer);
    if (found != _observers.end()) _observers.erase(found);
}

void OrvaneAppLifecycle::foreachObserver(const std::function<void(orvane_object*)>& block) {
    if (!block) return;
    // By index, so that an observer that breaks the rule and changes the set costs a turn and no memory.
    for (size_t i = 0; i < _observers.size(); ++i)
        block(_observers[i].object());
}

bool OrvaneAppLifecycle::hasExtraSupportWindowImplementation() {
    bool has = false;
    foreachObserver([&has](const orvane_object* observer) { has = has || DecidesOrientations(observer); });
    return has;
}

void* OrvaneAppLifecycle::Deliver(AppEvent event, void* const* arguments) {
    arguments = AppEventArgumentsOrNulls(arguments);
    switch (event) {
        case AppEvent::DidFinishLaunching:
            Launch(arguments);
            break;
        case AppEvent::DidEnterBackground:
            TellObservers(event, arguments);
            _innerAppState.store(kBackground, std::memory_order_relaxed);
            break;
        case AppEvent::DidBecomeActive:
            TellObservers(event, arguments);
            _innerAppState.store(kActive, std::memory_order_relaxed);
            break;
        case AppEvent::SupportedInterfaceOrientations:
            return reinterpret_cast<void*>(SupportedOrientations(arguments));
        default:
            TellObservers(event, arguments);
    }
    return reinterpret_cast<void*>(static_cast<uintptr_t>(DescribeAppEvent(event).answersYes));
}

void OrvaneAppLifecycle::Launch(void* const* arguments) {
    _innerAppState.store(kActive, std::memory_order_relaxed);

    Plugin::OrvaneCoreInnerPlugin* corePlugin = Plugin::Singleton<Plugin::OrvaneCoreInnerPlugin>::GetInstance();
    corePlugin->GetCachePluginManager();
    corePlugin->RegisterPlugin(corePlugin);

    Quern::OrvaneLogInit();
    Quern::Logger::XLogInit();

    TellObservers(AppEvent::DidFinishLaunching, arguments);

    Plugin::PluginManager::GetInstance()->Startup();
    Plugin::PluginManager::GetInstance()->PostStartup();
}

void OrvaneAppLifecycle::TellObservers(AppEvent event, void* const* arguments) {
    const char* selector = DescribeAppEvent(event).selector;
    foreachObserver([=](orvane_object* observer) { orvane_object_perform(observer, selector, arguments); });
}

unsigned long OrvaneAppLifecycle::SupportedOrientations(void* const* arguments) {
    unsigned long mask = kAllOrientations;
    const char* selector = DescribeAppEvent(AppEvent::SupportedInterfaceOrientations).selector;
    foreachObserver([&](orvane_object* observer) {
        if (DecidesOrientations(observer))
            mask = reinterpret_cast<unsigned long>(orvane_object_perform(observer, selector, arguments));
    });
    return mask;
}

CAppLifecycleLaunch::CAppLifecycleLaunch() {
    Quern::PlatformLog("CAppLifecycleLaunch::CAppLifecycleLaunch");
    OrvaneAppLifecycle::sharedInstance();
}

}  // namespace Orvane

namespace Quern {

bool isIosBackground() {
    return Orvane::OrvaneAppLifecycle::sharedInstance()->innerAppState() == Orvane::OrvaneAppLifecycle::kBackground;
}

}  // namespace Quern
