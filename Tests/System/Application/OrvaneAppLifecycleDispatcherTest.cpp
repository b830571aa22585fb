#include "System/Application/OrvaneAppLifecycleDispatcher.h"

#include "Base/XLog.h"
#include "Support/LifecycleFakes.h"
#include "Support/Test.h"
#include "System/Application/OrvaneAppLifecycle.h"
#include "System/Application/SwizzleHelper.h"

namespace {

using Orvane::OrvaneAppLifecycle;
using Orvane::OrvaneAppLifecycleDispatcher;
using Orvane::SwizzleHelper;
using OrvaneTest::LifecycleClass;

constexpr char kLaunch[] = "application:didFinishLaunchingWithOptions:";
constexpr char kContinue[] = "application:continueUserActivity:restorationHandler:";
constexpr char kOrientations[] = "application:supportedInterfaceOrientationsForWindow:";

class DispatcherTest : public testing::Test {
protected:
    void* Send(orvane_object& delegate, const char* selector, const char* first = nullptr,
               const char* second = nullptr) {
        void* const arguments[] = {const_cast<char*>(first), const_cast<char*>(second), nullptr, nullptr};
        return orvane_object_perform(&delegate, selector, arguments);
    }
    static void* Number(uintptr_t value) { return reinterpret_cast<void*>(value); }

    OrvaneTest::CapturedConsole console;
};

TEST_F(DispatcherTest, ManualHookComesAfterTheClassAndOnlyOnce) {
    g_OrvaneCoreManualHook("GameDelegate");
    g_OrvaneCoreManualHook(nullptr);
    EXPECT_THAT(
        console.Take(),
        ElementsAre("No Derived UIApplicationDelegate found 2", "GetDerivedUIApplicationDelegate 2: GameDelegate",
                    "No Derived UIApplicationDelegate found 2", "GetDerivedUIApplicationDelegate 2: (null)"));
    LifecycleClass delegate("GameDelegate");
    g_OrvaneCoreManualHook("GameDelegate");
    EXPECT_THAT(console.Take(),
                ElementsAre("GetDerivedUIApplicationDelegate 2: GameDelegate", "OrvHook start",
                            "OrvaneSDK Add Implementation (application:continueUserActivity:restorationHandler:)."));
    LifecycleClass second("SecondDelegate");
    g_OrvaneCoreManualHook("SecondDelegate");
    EXPECT_THAT(console.Take(), ElementsAre("GetDerivedUIApplicationDelegate 2: SecondDelegate", "OrvHook has done"));
    EXPECT_EQ(orvane_class_get_method(second.get(), kContinue), nullptr);
    OrvaneAppLifecycleDispatcher::manualSwizzle(nullptr);
    EXPECT_THAT(console.Take(), ElementsAre("OrvHook has done"));
}

TEST_F(DispatcherTest, TheDelegateIsFoundByTwoNames) {
    EXPECT_EQ(Orvane::GetDerivedUIApplicationDelegate(), nullptr);
    LifecycleClass unity("UnityAppController");
    EXPECT_EQ(Orvane::GetDerivedUIApplicationDelegate(), unity.get());
    LifecycleClass own("AppDelegate");
    EXPECT_EQ(Orvane::GetDerivedUIApplicationDelegate(), own.get());
    EXPECT_THAT(console.Take(), ElementsAre("OrvHook No Derived UIApplicationDelegate found",
                                            "OrvHook GetDerivedUIApplicationDelegate:UnityAppController",
                                            "OrvHook GetDerivedUIApplicationDelegate:AppDelegate"));
    OrvaneAppLifecycleDispatcher::load();
    EXPECT_THAT(console.Take(), IsEmpty()) << "the hook was tried while the library loaded, and is not tried again";
}

// Every event of a delegate that implements all: the observer hears it first, then the delegate, whose answer counts.
TEST_F(DispatcherTest, EventsReachTheObserversFirstAndThenTheDelegate) {
    LifecycleClass observerClass("Observer"), delegateClass("AppDelegate");
    for (const auto& event : Orvane::kAppEvents) {
        if (event.event != Orvane::AppEvent::DidFinishLaunching) observerClass.Answer(event.selector, 0);
        delegateClass.Answer(event.selector, 77);
    }
    orvane_object observer = observerClass.Make("observer"), delegate = delegateClass.Make("delegate");
    OrvaneAppLifecycle::sharedInstance()->addObserver(&observer);
    OrvaneAppLifecycleDispatcher::manualSwizzle(delegateClass.get());
    EXPECT_EQ(console.Take().back(), "OrvHook start") << "the delegate can continue activities by itself";

    for (const auto& event : Orvane::kAppEvents) {
        if (event.event == Orvane::AppEvent::DidFinishLaunching ||
            event.event == Orvane::AppEvent::SupportedInterfaceOrientations)
            continue;
        SCOPED_TRACE(event.selector);
        EXPECT_EQ(Send(delegate, event.selector), Number(77));
        EXPECT_THAT(LifecycleClass::Heard(), ElementsAre(std::string("observer ") + event.selector,
                                                         std::string("delegate orvane_") + event.selector));
    }
}

TEST_F(DispatcherTest, WritesALineForTheEventsThatHaveOne) {
    LifecycleClass delegateClass("AppDelegate");
    for (const auto& event : Orvane::kAppEvents)
        delegateClass.Answer(event.selector, 0);
    orvane_object delegate = delegateClass.Make("delegate");
    OrvaneAppLifecycleDispatcher::manualSwizzle(delegateClass.get());
    console.Take();

    Send(delegate, "handleOpenURL:", "game://a");
    Send(delegate, "handleOpenURL:");
    Send(delegate, "application:openURL:options:", "app", "game://100%25");
    Send(delegate, "application:didReceiveRemoteNotification:fetchCompletionHandler:", "app", "{\"a\":1}");
    EXPECT_THAT(console.Take(),
                ElementsAre("OrvaneAppLifecycleDispatcher orvane_handleOpenURL: game://a",
                            "OrvaneAppLifecycleDispatcher orvane_handleOpenURL: (null)",
                            "[OrvaneAppLifecycleDispatcher orvane_application: openURL: game://100%25, options:]",
                            "OrvaneAppLifecycleDispatcher orvane_application: didReceiveRemoteNotification:{\"a\":1} "
                            "fetchCompletionHandler:"));
    for (const char* selector :
         {"applicationDidEnterBackground:", "applicationWillEnterForeground:", "applicationDidBecomeActive:",
          "applicationWillResignActive:", "applicationWillTerminate:", "applicationDidReceiveMemoryWarning:",
          "application:didReceiveLocalNotification:"})
        Send(delegate, selector);
    EXPECT_THAT(console.Take(), IsEmpty());
}

TEST_F(DispatcherTest, ADelegateWithoutAMethodMissesTheEventButContinuesActivities) {
    LifecycleClass observerClass("Observer"), delegateClass("AppDelegate");
    observerClass.Answer("applicationDidEnterBackground:", 0);
    observerClass.Answer(kContinue, 0);
    orvane_object observer = observerClass.Make("observer"), delegate = delegateClass.Make("delegate");
    OrvaneAppLifecycle::sharedInstance()->addObserver(&observer);
    OrvaneAppLifecycleDispatcher::manualSwizzle(delegateClass.get());
    console.Take();

    EXPECT_FALSE(orvane_object_responds(&delegate, "applicationDidEnterBackground:"));
    EXPECT_EQ(Send(delegate, "orvane_applicationDidEnterBackground:"), nullptr);
    EXPECT_THAT(LifecycleClass::Heard(), IsEmpty());
    EXPECT_EQ(Send(delegate, kContinue), Number(1));
    EXPECT_THAT(LifecycleClass::Heard(), ElementsAre(std::string("observer ") + kContinue));
    EXPECT_EQ(console.Take().back(),
              "[OrvaneAppLifecycleDispatcher application: continueUserActivity: restorationHandler:](orvanesdk add)");
}

TEST_F(DispatcherTest, TheObserversOrientationsGoBeforeTheDelegates) {
    LifecycleClass delegateClass("AppDelegate"), login("PluginRavelLifecycle"), zero("Other");
    delegateClass.Answer(kOrientations, 8);
    zero.Answer(kOrientations, 2);
    orvane_object delegate = delegateClass.Make("delegate"), other = zero.Make("other"), observer = login.Make("login");
    OrvaneAppLifecycle::sharedInstance()->addObserver(&other);
    OrvaneAppLifecycleDispatcher::manualSwizzle(delegateClass.get());
    console.Take();
    const std::string own = std::string("delegate orvane_") + kOrientations;

    EXPECT_EQ(Send(delegate, kOrientations), Number(8));
    EXPECT_THAT(LifecycleClass::Heard(), ElementsAre(own));
    EXPECT_THAT(console.Take(),
                ElementsAre("supportedInterfaceOrientationsForWindow has_new_implementation: 0, mask:8"));

    OrvaneAppLifecycle::sharedInstance()->addObserver(&observer);
    console.Take();
    login.Answer(kOrientations, 0);
    EXPECT_EQ(Send(delegate, kOrientations), Number(8));
    EXPECT_THAT(LifecycleClass::Heard(), ElementsAre(std::string("login ") + kOrientations, own));
    EXPECT_THAT(
        console.Take(),
        ElementsAre("supportedInterfaceOrientationsForWindow new implementation return 0, use origin implementation.",
                    "supportedInterfaceOrientationsForWindow has_new_implementation: 1, mask:8"));

    login.Answer(kOrientations, 2);
    EXPECT_EQ(Send(delegate, kOrientations), Number(2));
    EXPECT_THAT(LifecycleClass::Heard(), ElementsAre(std::string("login ") + kOrientations));
    EXPECT_THAT(console.Take(),
                ElementsAre("supportedInterfaceOrientationsForWindow has_new_implementation: 1, mask:2"));
}

TEST(SwizzleHelper, ExchangesAndAddsByItsRules) {
    const auto exchange = SwizzleHelper::originalClass_swizzledClass_originalSelector_swizzleSelector;
    const auto add = SwizzleHelper::AddMethodForClass_swizzledClass_selector;
    LifecycleClass target("Target"), source("Source");
    target.Answer("own:", 0);
    source.Answer("new:", 0);
    source.Act("added:", [] {});
    const auto ownCode = orvane_class_get_method(target.get(), "own:");

    EXPECT_FALSE(exchange(nullptr, source.get(), "own:", "new:"));
    EXPECT_FALSE(add(nullptr, source.get(), "added:"));

    EXPECT_TRUE(add(target.get(), source.get(), "added:"));
    EXPECT_EQ(orvane_class_get_method(target.get(), "added:"), orvane_class_get_method(source.get(), "added:"));
    EXPECT_FALSE(add(target.get(), source.get(), "added:"));
    orvane_class_add_class_method(target.get(), "new:", ownCode);
    EXPECT_FALSE(add(target.get(), source.get(), "new:")) << "the class itself responds";
    EXPECT_EQ(orvane_class_get_method(target.get(), "new:"), nullptr);

    source.Act("hook:", [] {});
    EXPECT_TRUE(exchange(target.get(), source.get(), "own:", "hook:"));
    EXPECT_EQ(orvane_class_get_method(target.get(), "own:"), orvane_class_get_method(source.get(), "hook:"));
    EXPECT_EQ(orvane_class_get_method(target.get(), "hook:"), ownCode);
    EXPECT_FALSE(exchange(target.get(), source.get(), "own:", "hook:"));
    EXPECT_EQ(orvane_class_get_method(target.get(), "hook:"), ownCode) << "exchanged once";
}

}  // namespace
