#include "System/Application/OrvaneAppLifecycle.h"

#include "Base/XLog.h"
#include "Support/FakePlugins.h"
#include "Support/LifecycleFakes.h"
#include "Support/Test.h"
#include "System/Application/BackgroundState.h"

namespace {

using Orvane::OrvaneAppLifecycle;
using namespace OrvaneTest;

constexpr char kLaunch[] = "application:didFinishLaunchingWithOptions:";
constexpr char kBackground[] = "applicationDidEnterBackground:";
constexpr char kOrientations[] = "application:supportedInterfaceOrientationsForWindow:";

class LifecycleTest : public testing::Test {
protected:
    OrvaneAppLifecycle* lifecycle = OrvaneAppLifecycle::sharedInstance();
    CapturedConsole console;
};

TEST_F(LifecycleTest, HoldsEachObserverThatFollowsTheProtocolOnce) {
    LifecycleClass follower("Follower"), stranger("Stranger", false);
    follower.Answer(kBackground, 0);
    stranger.Answer(kBackground, 0);
    orvane_object a = follower.Make("a"), b = follower.Make("b"), c = stranger.Make("c");
    lifecycle->addObserver(nullptr);
    lifecycle->addObserver(&c);
    lifecycle->removeObserver(&c);
    EXPECT_THAT(console.Take(), IsEmpty());
    lifecycle->addObserver(&b);
    lifecycle->addObserver(&a);
    lifecycle->addObserver(&b);
    const auto says = [](orvane_object& added) {
        return MatchesRegex(Format("OrvaneCore addObserver pointer:0x.+, observer:%p", static_cast<void*>(&added)));
    };
    EXPECT_THAT(console.Take(), ElementsAre(says(b), says(a)));
    lifecycle->applicationDidEnterBackground(nullptr);
    EXPECT_THAT(LifecycleClass::Heard(),
                ElementsAre("b applicationDidEnterBackground:", "a applicationDidEnterBackground:"));

    orvane_object unknown = follower.Make("unknown");
    console.Take();
    lifecycle->removeObserver(&unknown);
    lifecycle->removeObserver(&b);
    EXPECT_EQ(console.Take().size(), 2u);
    lifecycle->applicationDidEnterBackground(nullptr);
    EXPECT_THAT(LifecycleClass::Heard(), ElementsAre("a applicationDidEnterBackground:"));

    lifecycle->foreachObserver(nullptr);
}

// Typed members hand their arguments on in order, and give what the event answers.
TEST_F(LifecycleTest, SendsEventsWithTheirArguments) {
    LifecycleClass cls("Everything");
    for (const auto& event : Orvane::kAppEvents)
        cls.Answer(event.selector, 0);
    orvane_object observer = cls.Make("o");
    lifecycle->addObserver(&observer);
    char app, x, y;
    const std::string a = Format(" %p", static_cast<void*>(&app));
    const std::string axy = a + Format(" %p %p", static_cast<void*>(&x), static_cast<void*>(&y));
    LifecycleClass::RecordArguments(true);
    EXPECT_TRUE(lifecycle->application_openURL_sourceApplication_annotation(&app, &x, &y, &app));
    lifecycle->applicationWillResignActive(&app);
    EXPECT_TRUE(lifecycle->application_continueUserActivity_restorationHandler(&app, &x, &y));
    EXPECT_THAT(LifecycleClass::Heard(), ElementsAre("o application:openURL:sourceApplication:annotation:" + axy + a,
                                                     "o applicationWillResignActive:" + a,
                                                     "o application:continueUserActivity:restorationHandler:" + axy));
}

// All events by name, as a host without a delegate class drives the object.
TEST_F(LifecycleTest, IsDrivenByName) {
    auto* shared = static_cast<orvane_object*>(
        orvane_class_perform(orvane_class_lookup("OrvaneAppLifecycle"), "sharedInstance", nullptr));
    ASSERT_NE(shared, nullptr);
    LifecycleClass cls("ByName");
    orvane_object observer = cls.Make("o");
    for (const auto& event : Orvane::kAppEvents)
        if (event.event != Orvane::AppEvent::DidFinishLaunching) cls.Answer(event.selector, 0);
    void* arguments[] = {&observer};
    orvane_object_perform(shared, "addObserver:", arguments);
    const std::set<std::string> answerYes = {
        "handleOpenURL:", "application:openURL:options:", "application:openURL:sourceApplication:annotation:",
        "application:continueUserActivity:restorationHandler:"};

    for (const auto& event : Orvane::kAppEvents) {
        if (event.event == Orvane::AppEvent::DidFinishLaunching) continue;
        SCOPED_TRACE(event.selector);
        EXPECT_TRUE(orvane_object_responds(shared, event.selector));
        void* answer = orvane_object_perform(shared, event.selector, nullptr);  // a sloppy host: no array at all
        if (event.event == Orvane::AppEvent::SupportedInterfaceOrientations) {
            EXPECT_EQ(answer, reinterpret_cast<void*>(30));
            EXPECT_THAT(LifecycleClass::Heard(), IsEmpty());
        } else {
            EXPECT_EQ(answer, reinterpret_cast<void*>(answerYes.count(event.selector)));
            EXPECT_THAT(LifecycleClass::Heard(), ElementsAre(std::string("o ") + event.selector));
        }
    }
    orvane_object_perform(shared, "removeObserver:", arguments);
    orvane_object_perform(shared, kBackground, nullptr);
    EXPECT_THAT(LifecycleClass::Heard(), IsEmpty());
}

TEST_F(LifecycleTest, OtherLibrariesAddObserversThroughTheWrapper) {
    LifecycleClass cls("Sibling");
    cls.Answer(kBackground, 0);
    orvane_object observer = cls.Make("o");
    gs_OrvaneAppLifecycleAddObserver(&observer);
    gs_OrvaneAppLifecycleAddObserver(nullptr);
    lifecycle->applicationDidEnterBackground(nullptr);
    EXPECT_THAT(LifecycleClass::Heard(), ElementsAre("o applicationDidEnterBackground:"));

    orvane_object* wrapper = orvane_object_create(orvane_class_lookup("OrvaneAppLifecycleWrapper"));
    void* arguments[] = {&observer};
    orvane_object_perform(wrapper, "removeObserver:", arguments);
    orvane_object_release(wrapper);
    lifecycle->applicationDidEnterBackground(nullptr);
    EXPECT_THAT(LifecycleClass::Heard(), IsEmpty());
}

// An observer is told while the state is still the old one.
TEST_F(LifecycleTest, TheStateChangesOnThreeEventsAlone) {
    LifecycleClass cls("Watcher");
    cls.Act(kBackground, [] { LifecycleClass::Note(Quern::isIosBackground() ? "background" : "foreground"); });
    cls.Act("applicationDidBecomeActive:",
            [] { LifecycleClass::Note(Quern::isIosBackground() ? "background" : "foreground"); });
    orvane_object observer = cls.Make("o");
    lifecycle->addObserver(&observer);
    EXPECT_EQ(lifecycle->innerAppState(), 2) << "until launch";
    lifecycle->applicationWillEnterForeground(nullptr);
    EXPECT_EQ(lifecycle->innerAppState(), 2);
    lifecycle->applicationDidBecomeActive(nullptr);
    EXPECT_EQ(lifecycle->innerAppState(), 0);
    EXPECT_FALSE(Quern::isIosBackground());
    lifecycle->applicationWillResignActive(nullptr);
    EXPECT_EQ(lifecycle->innerAppState(), 0);
    lifecycle->applicationDidEnterBackground(nullptr);
    EXPECT_EQ(lifecycle->innerAppState(), 2);
    EXPECT_TRUE(Quern::isIosBackground());
    EXPECT_THAT(LifecycleClass::Heard(), ElementsAre("background", "foreground"));
}

TEST_F(LifecycleTest, OnlyTheLoginPluginsObserverDecidesTheOrientations) {
    LifecycleClass other("PluginRavelLifecycle2"), login("PluginRavelLifecycle");
    other.Answer(kOrientations, 4);
    orvane_object stranger = other.Make("stranger"), mute = login.Make("mute");
    lifecycle->addObserver(&stranger);
    lifecycle->addObserver(&mute);
    EXPECT_FALSE(lifecycle->hasExtraSupportWindowImplementation()) << "it does not have the method";
    EXPECT_EQ(lifecycle->application_supportedInterfaceOrientationsForWindow(nullptr, nullptr), 30u);
    login.Answer(kOrientations, 2);
    EXPECT_TRUE(lifecycle->hasExtraSupportWindowImplementation());
    EXPECT_EQ(lifecycle->application_supportedInterfaceOrientationsForWindow(nullptr, nullptr), 2u);
    EXPECT_THAT(LifecycleClass::Heard(), ElementsAre(std::string("mute ") + kOrientations));
}

// What comes in which order is told by the lines of a whole launch.
TEST_F(LifecycleTest, AnObserverHearsTheLaunchInTheForegroundWithTheLogStarted) {
    CacheFolder();
    LifecycleClass cls("Launcher");
    cls.Act(kLaunch, [&] { LifecycleClass::Note(std::to_string(lifecycle->innerAppState())); });
    orvane_object observer = cls.Make("o");
    lifecycle->addObserver(&observer);
    EXPECT_FALSE(Quern::IsCoreLoggerStarted());
    EXPECT_TRUE(lifecycle->application_didFinishLaunchingWithOptions(nullptr, nullptr));
    EXPECT_TRUE(Quern::IsCoreLoggerStarted());
    EXPECT_THAT(LifecycleClass::Heard(), ElementsAre("0"));
}

}  // namespace
