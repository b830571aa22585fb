// The two observer sets that the layer on top tells: QuernApplication's events and CApplication's stages.

#include "Orvane/IApplicationObserver.h"
#include "Orvane/QuernApplicationObserver.h"
#include "Support/Test.h"
#include "System/Application/CApplication.h"
#include "System/Application/OrvaneAppLifecycle.h"
#include "System/Application/QuernApplication.h"

namespace Quern {
namespace {

using namespace OrvaneTest;

std::vector<std::string> g_heard;

std::vector<std::string> Heard() {
    return std::exchange(g_heard, {});
}

class StageObserver : public IApplicationObserver {
public:
    explicit StageObserver(std::string name, std::function<void()> onPause = nullptr)
        : _name(std::move(name)), _onPause(std::move(onPause)) {}
    void OnCreate() override { Hear("create"); }
    void OnStart() override { Hear("start"); }
    void OnPause() override {
        Hear("pause");
        if (_onPause) _onPause();
    }
    void OnResume() override { Hear("resume"); }
    void OnStop() override { Hear("stop"); }
    void OnDestroy() override { Hear("destroy"); }

private:
    void Hear(const char* stage) { g_heard.push_back(_name + " " + stage); }

    std::string _name;
    std::function<void()> _onPause;
};

TEST(CApplication, TellsEachStageInOrderOfConstruction) {
    const StageObserver a("a"), b("b");
    struct {
        void (*tell)();
        const char* stage;
        const char* says;
    } const kStages[] = {
        {gs_OrvaneApplicationOnCreate, "create", "{}"},
        {gs_OrvaneApplicationOnStart, "start", "{}"},
        {gs_OrvaneApplicationOnPause, "pause", "{ \"Info CApplication::OnPause Observersize:2\" }"},
        {gs_OrvaneApplicationOnResume, "resume", "{ \"Info CApplication::OnResume\" }"},
        {gs_OrvaneApplicationOnStop, "stop", "{}"},
        {gs_OrvaneApplicationOnDestroy, "destroy", "{}"},
    };
    for (const auto& [tell, stage, says] : kStages) {
        CapturedConsole console;
        tell();
        EXPECT_THAT(Heard(), ElementsAre(std::string("a ") + stage, std::string("b ") + stage));
        EXPECT_EQ(testing::PrintToString(console.Take()), says);
    }
}

TEST(CApplication, HoldsAnObserverOnceAndSaysSo) {
    CapturedConsole console;
    auto observer = std::make_unique<StageObserver>("a");
    void* const pointer = static_cast<IApplicationObserver*>(observer.get());
    const std::string added = Format("Info CApplication::AddObserver:%p", pointer);
    EXPECT_THAT(console.Take(), ElementsAre(added, added, "Info CApplication::size:1"));
    CApplication::GetInstance()->AddObserver(observer.get());
    EXPECT_THAT(console.Take(), ElementsAre(added));
    CApplication::GetInstance()->AddObserver(nullptr);
    EXPECT_THAT(console.Take(), IsEmpty());
    observer.reset();
    EXPECT_THAT(console.Take(), ElementsAre(Format("Info CApplication::RemoveObserver:%p", pointer)));

    auto left = std::make_unique<StageObserver>("b");
    CApplication::ReleaseInstance();
    CApplication::ReleaseInstance();
    CApplication::GetInstance()->OnStart();
    EXPECT_THAT(Heard(), IsEmpty()) << "a new instance knows nobody";
    left.reset();
}

TEST(CApplication, AStageMayDestroyObservers) {
    std::unique_ptr<StageObserver> itself, last;
    const StageObserver first("first");
    itself = std::make_unique<StageObserver>("itself", [&] { itself.reset(); });
    const StageObserver skipped("skipped");
    const StageObserver destroyer("destroyer", [&] { last.reset(); });
    last = std::make_unique<StageObserver>("last");
    CApplication::GetInstance()->OnPause();
    EXPECT_THAT(Heard(), ElementsAre("first pause", "itself pause", "destroyer pause"))
        << "the one behind one that goes moves up to its place, which the walk is past";
    CApplication::GetInstance()->OnPause();
    EXPECT_THAT(Heard(), ElementsAre("first pause", "skipped pause", "destroyer pause"));
}

// Writes every event down with its arguments.
class EventObserver : public QuernApplicationObserver {
public:
    bool handleOpenURL(const char* url) override { return Hear("url", url); }
    void applicationDidEnterBackground(void* a) override { Hear("background", a); }
    void applicationWillEnterForeground(void* a) override { Hear("foreground", a); }
    void applicationDidBecomeActive(void* a) override { Hear("active", a); }
    void applicationWillResignActive(void* a) override { Hear("resign", a); }
    void applicationWillTerminate(void* a) override { Hear("terminate", a); }
    bool applicationContinueUserActivity_Activity(void* a, void* b) override { return Hear("activity", a, b); }
    bool application_didFinishLaunchingWithOptions(void* a, void* b) override { return Hear("launch", a, b); }
    void application_didRegisterForRemoteNotificationsWithDeviceToken(void* a, const char* b) override {
        Hear("token", a, b);
    }
    void application_didFailToRegisterForRemoteNotificationsWithError(void* a, const char* b) override {
        Hear("error", a, b);
    }
    void application_didReceiveRemoteNotification(void* a, const char* b) override { Hear("notification", a, b); }
    void application_handleEventsForBackgroundURLSession_completionHandler(void* a, const char* b, void* c) override {
        Hear("session", a, b, c);
    }

private:
    template <typename... Arguments>
    bool Hear(std::string event, Arguments... arguments) {
        ((event += std::string(" ") + static_cast<const char*>(arguments)), ...);
        g_heard.push_back(event);
        return false;
    }
};

TEST(QuernApplication, TellsEveryEventAndTwoOfThemOnToTheStages) {
    struct {
        const char* selector;
        const char* heard;
        bool answersYes;
        const char* stage = nullptr;
    } const kEvents[] = {
        {"handleOpenURL:", "url 1", true},
        {"applicationDidEnterBackground:", "background 1", false, "stages pause"},
        {"applicationWillEnterForeground:", "foreground 1", false, "stages resume"},
        {"applicationDidBecomeActive:", "active 1", false},
        {"applicationWillResignActive:", "resign 1", false},
        {"applicationWillTerminate:", "terminate 1", false},
        {"applicationContinueUserActivity:Activity:", "activity 1 2", true},
        {"application:didFinishLaunchingWithOptions:", "launch 1 2", true},
        {"application:didRegisterForRemoteNotificationsWithDeviceToken:", "token 1 2", false},
        {"application:didFailToRegisterForRemoteNotificationsWithError:", "error 1 2", false},
        {"application:didReceiveRemoteNotification:", "notification 1 2", false},
        {"application:handleEventsForBackgroundURLSession:completionHandler:", "session 1 2 3", false},
    };
    char one[] = "1", two[] = "2", three[] = "3";
    void* const arguments[] = {one, two, three};
    const EventObserver observer;
    const QuernApplicationObserver silent;  // what is not overridden does nothing and says no
    const StageObserver stages("stages");
    for (const auto& event : kEvents) {
        EXPECT_EQ(gs_QuernApplicationPerform(event.selector, arguments) != nullptr, event.answersYes) << event.selector;
        if (event.stage)
            EXPECT_THAT(Heard(), ElementsAre(event.heard, event.stage));
        else
            EXPECT_THAT(Heard(), ElementsAre(event.heard));
    }
    // The two ways to hear about the application know nothing of each other.
    Orvane::OrvaneAppLifecycle::sharedInstance()->applicationDidEnterBackground(nullptr);
    EXPECT_THAT(Heard(), IsEmpty());
}

TEST(QuernApplication, HoldsAnObserverOnceUntilItIsDestroyed) {
    QuernApplication* const application = QuernApplication::sharedInstance();
    auto observer = std::make_unique<EventObserver>();
    application->addObserver(observer.get());
    application->addObserver(nullptr);
    application->removeObserver(nullptr);
    application->foreachObserver(nullptr);
    EXPECT_TRUE(application->handleOpenURL("x"));
    EXPECT_THAT(Heard(), ElementsAre("url x"));
    observer.reset();
    EXPECT_TRUE(application->handleOpenURL("x"));
    EXPECT_THAT(Heard(), IsEmpty());

    int controller = 0;
    void* const arguments[] = {&controller};
    EXPECT_EQ(gs_QuernApplicationPerform("rootVC", nullptr), nullptr);
    gs_QuernApplicationPerform("setRootVC:", arguments);
    EXPECT_EQ(gs_QuernApplicationPerform("rootVC", nullptr), &controller);
}

}  // namespace
}  // namespace Quern
