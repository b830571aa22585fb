#include "System/Application/OrvaneAppLifecycleDispatcher.h"

#include <atomic>
#include <string>

#include "Base/ConsoleSink.h"
#include "Base/RunTimeClass.h"
#include "System/Application/OrvaneAppLifecycle.h"
#include "System/Application/SwizzleHelper.h"

namespace Orvane {
namespace {

constexpr char kDispatcherClass[] = "OrvaneAppLifecycleDispatcher";

bool hasHook = false;

std::string HookSelector(const char* selector) {
    return std::string("orvane_") + selector;
}

// "%@" prints a text, and "(null)" for none.
std::string FillIn(std::string line, const char* text) {
    const size_t at = line.find("%@");
    return at == std::string::npos ? line : line.replace(at, 2, text ? text : "(null)");
}

void WriteHookLine(const AppEventDescription& description, void* const* arguments) {
    if (!description.hookLine) return;
    const auto* text = static_cast<const char*>(AppEventArgumentsOrNulls(arguments)[description.hookLineArgument]);
    Quern::PlatformLog("%s", FillIn(description.hookLine, text).c_str());
}

// The delegate's own code, which the exchange left under the hook's selector.
void* PerformOriginal(orvane_object* delegate, const char* selector, void* const* arguments) {
    return orvane_object_perform(delegate, HookSelector(selector).c_str(), arguments);
}

// The code of every hooked event but the orientations. The delegate's answer is what the caller sees.
void* OnEvent(orvane_object* delegate, const char* selector, void* const* arguments) {
    const AppEventDescription* description = FindAppEvent(selector);
    // A delegate without the event's method has this code under the hook's own selector, and nothing to pass on to.
    if (!description) return nullptr;
    WriteHookLine(*description, arguments);
    OrvaneAppLifecycle::sharedInstance()->Deliver(description->event, arguments);
    return PerformOriginal(delegate, selector, arguments);
}

// Here the observer's answer goes before the delegate's: the login plugin may ask for another orientation.
void* OnOrientations(orvane_object* delegate, const char* selector, void* const* arguments) {
    if (!FindAppEvent(selector)) return nullptr;
    OrvaneAppLifecycle* lifecycle = OrvaneAppLifecycle::sharedInstance();
    const bool has_new_implementation = lifecycle->hasExtraSupportWindowImplementation();
    void* mask = nullptr;
    if (has_new_implementation) {
        mask = lifecycle->Deliver(AppEvent::SupportedInterfaceOrientations, arguments);
        if (!mask)
            Quern::PlatformLog(
                "supportedInterfaceOrientationsForWindow new implementation return 0, use origin implementation.");
    }
    if (!mask) mask = PerformOriginal(delegate, selector, arguments);
    Quern::PlatformLog("supportedInterfaceOrientationsForWindow has_new_implementation: %u, mask:%lu",
                       static_cast<unsigned>(has_new_implementation), reinterpret_cast<unsigned long>(mask));
    return mask;
}

// Stands in for a delegate that cannot continue activities.
void* ContinueUserActivity(orvane_object*, const char*, void* const*) {
    Quern::PlatformLog(
        "[OrvaneAppLifecycleDispatcher application: continueUserActivity: restorationHandler:](orvanesdk add)");
    return reinterpret_cast<void*>(1);
}

}  // namespace

orvane_class* GetDerivedUIApplicationDelegate() {
    if (orvane_class* delegate = orvane_class_lookup("AppDelegate")) {
        Quern::PlatformLog("OrvHook GetDerivedUIApplicationDelegate:AppDelegate");
        return delegate;
    }
    if (orvane_class* delegate = orvane_class_lookup("UnityAppController")) {
        Quern::PlatformLog("OrvHook GetDerivedUIApplicationDelegate:UnityAppController");
        return delegate;
    }
    Quern::PlatformLog("OrvHook No Derived UIApplicationDelegate found");
    return nullptr;
}

void OrvaneAppLifecycleDispatcher::load() {
    static std::atomic<bool> tried{false};
    if (!tried.exchange(true)) manualSwizzle(GetDerivedUIApplicationDelegate());
}

void OrvaneAppLifecycleDispatcher::manualSwizzle(orvane_class* delegate) {
    if (hasHook) {
        Quern::PlatformLog("OrvHook has done");
        return;
    }
    if (delegate) {
        hasHook = true;
        Quern::PlatformLog("OrvHook start");
    }
    const orvane_class* dispatcher = orvane_class_lookup(kDispatcherClass);
    const char* continueActivity = DescribeAppEvent(AppEvent::ContinueUserActivity).selector;
    if (SwizzleHelper::AddMethodForClass_swizzledClass_selector(delegate, dispatcher, continueActivity))
        Quern::PlatformLog("OrvaneSDK Add Implementation (application:continueUserActivity:restorationHandler:).");
    for (const AppEventDescription& description : kAppEvents)
        SwizzleHelper::originalClass_swizzledClass_originalSelector_swizzleSelector(
            delegate, dispatcher, description.selector, HookSelector(description.selector).c_str());
}

}  // namespace Orvane

// Its instance methods are the code that the hook exchanges: one for each event, named by putting "orvane_" in front of
// its selector.
void Quern::RegisterLifecycleHookClass() {
    using namespace Orvane;
    orvane_class* cls = RegisterRunTimeClass(
        kDispatcherClass, {{DescribeAppEvent(AppEvent::ContinueUserActivity).selector, ContinueUserActivity}});
    for (const AppEventDescription& description : kAppEvents) {
        const bool isOrientations = description.event == AppEvent::SupportedInterfaceOrientations;
        orvane_class_add_method(cls, HookSelector(description.selector).c_str(),
                                isOrientations ? OnOrientations : OnEvent);
    }
}

void g_OrvaneCoreManualHook(const char* className) {
    orvane_class* delegate = orvane_class_lookup(className);
    if (!delegate) Quern::PlatformLog("No Derived UIApplicationDelegate found 2");
    Quern::PlatformLog("GetDerivedUIApplicationDelegate 2: %s", className ? className : "(null)");
    Orvane::OrvaneAppLifecycleDispatcher::manualSwizzle(delegate);
}
