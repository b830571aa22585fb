#include "Base/COrvaneCore.h"
#include "Base/QuernCommon.h"
#include "Base/XLog.h"
#include "Orvane/IApplicationObserver.h"
#include "Orvane/IBase.h"
#include "Orvane/IPlatformObjectManager.h"
#include "Orvane/OrvaneCore.h"
#include "Orvane/PlatformObject.h"
#include "Support/FakeConfigure.h"
#include "Support/FakeKeychain.h"
#include "Support/Test.h"
#include "System/Application/PerformSelector.h"

namespace {

using OrvaneTest::CapturedConsole;

TEST(Facade, TellsItsVersion) {
    EXPECT_STREQ(orvanecore_get_version(), "1.5.11.2664");
    EXPECT_THAT(orvanecore_get_version_hash(), MatchesRegex("[0-9a-f]{40}"));
    EXPECT_STREQ(orvanecore_get_orvane_version_string(), "ORVANE_VERSION_ORVANECORE_1.5.11.2664");
    EXPECT_EQ(OrvaneCoreVersionNumber, 1.0);
    EXPECT_STREQ(reinterpret_cast<const char*>(OrvaneCoreVersionString),
                 "@(#)PROGRAM:OrvaneCore  PROJECT:OrvaneCore-1\n");
}

TEST(Facade, GreetsOnceAndIsNeverReleased) {
    CapturedConsole console;
    Orvane::IOrvaneCore* core = orvanecore_getInstance();
    EXPECT_THAT(console.Take(),
                ElementsAre(MatchesRegex(
                    "Event Hello OrvaneCore! OS_TYPE:iOS, Version:1\\.5\\.11\\.2664, VersionHash:[0-9a-f]{40}")));
    EXPECT_EQ(orvanecore_init(), 0);
    orvanecore_releaseInstance();
    EXPECT_EQ(orvanecore_getInstance(), core);
    EXPECT_THAT(console.Take(), ElementsAre("Event  orvanecore_init", "Event  orvanecore_release"));
}

TEST(Facade, PassesLevelUserAndServerOn) {
    CapturedConsole console;
    OrvaneTest::FakeConfigure configure;
    OrvaneTest::FakeKeychain::Install();
    orvanecore_getInstance();
    console.Take();

    orvanecore_setLogLevel(kLogWarning);
    EXPECT_EQ(Quern::GetQuernLogLevel(), kLogWarning);
    EXPECT_TRUE(orvanecore_setUserInfo("12", "someone"));
    EXPECT_STREQ(Quern::QuernCommon::GetInstance()->GetChannelID(), "12");
    EXPECT_STREQ(Quern::QuernCommon::GetInstance()->GetOpenID(), "someone");
    EXPECT_THAT(console.Take(), IsSupersetOf({"Event orvanecore_setLogLevel:2", "Event orvanecore_setUserInfo"}));

    orvanecore_getInstance()->SetRemoteConfigUrl("https://example.org");
    orvanecore_getInstance()->ClearRemoteConfigCache();
    EXPECT_EQ(configure.lastUrl, "https://example.org");
    EXPECT_EQ(configure.clears, 1);
}

int g_quits = 0;

TEST(Facade, ReleaseOfTheRootRunsTheQuitCallbacksAndGivesTheCommonStateBack) {
    const Quern::QuernInitializer unnamed;
    EXPECT_STREQ(Quern::QuernCommon::GetInstance()->GetProjectName(), "Orvane");
    const Quern::QuernInitializer named("Another");
    AddApplicationQuitCallback([] { ++g_quits; });
    Quern::IBase::Release();
    EXPECT_EQ(g_quits, 1);
    EXPECT_STREQ(Quern::QuernCommon::GetInstance()->GetProjectName(), "Another") << "no root stood that holds it";

    orvanecore_getInstance();  // makes the root
    EXPECT_TRUE(InitQuernObjectEnvironment());
    Quern::IBase::Release();
    EXPECT_EQ(g_quits, 1);
    EXPECT_STREQ(Quern::QuernCommon::GetInstance()->GetProjectName(), "Orvane");
}

// Posts a call for the engine's tick, which logs the text.
void PostLine(const char* text) {
    Quern::CAFunctionSelector selector;
    selector.arguments[0] = const_cast<char*>(text);
    selector.function1 = [](void* line) { Quern::XLog2(kLogInfo, "f", 1, "f", static_cast<const char*>(line)); };
    Quern::PerformSelectorOnUIThread(&selector);
}

// A native half that tells the script layer of its end.
struct Farewell : Quern::CPlatformObject {
    ~Farewell() override {
        SendUnityMessage("end", "of the object");
        PostLine("posted by the object");
    }
};

struct QuietStages : Quern::IApplicationObserver {
    void OnCreate() override {}
    void OnStart() override {}
    void OnPause() override {}
    void OnResume() override {}
    void OnStop() override {}
    void OnDestroy() override {}
};

TEST(Facade, ItsDestructorTakesTheLibraryDownInOrder) {
    CapturedConsole console;
    Quern_EnableManualUpdate();
    AddApplicationQuitCallback([] {
        Quern::XLog2(kLogInfo, "f", 1, "f", "quit");
        PostLine("posted by a quit callback");
    });
    Orvane::COrvaneCore* core = Orvane::COrvaneCore::GetInstance();
    setArborSendMessageCallback([](uint64_t id, const char* method, const char* message) {
        Quern::XLog(kLogInfo, "f", 1, "f", "%d %s %s", static_cast<int>(id), method, message);
    });
    Quern::IPlatformObjectManager::GetInstance()->AddObject(7, new Farewell);
    Quern::IPlatformObjectManager::GetInstance()->GetPlatformObject(7)->SetObjectId(7);
    const QuietStages stages;
    console.Take();

    delete core;
    EXPECT_THAT(console.Take(),
                ElementsAre("Event COrvaneCore::~COrvaneCore(), start", "Info quit",
                            "Info IArborObjectManager::DestroyAll", "Info 7 end of the object",
                            "Info CPlatformObject::ClearEnvironment", "Event COrvaneCore::~COrvaneCore(), end"));
    Quern_UpdateUIThread();
    EXPECT_THAT(console.Take(), ElementsAre("Info posted by the object"))
        << "the pump ends behind the quit callbacks and before the objects";
    Farewell().SendUnityMessage("nobody", "hears");
    gs_OrvaneApplicationOnPause();
    EXPECT_THAT(console.Take(), ElementsAre("Info CApplication::OnPause Observersize:0"));
    EXPECT_STREQ(orvanecore_getInstance()->GetVersion(), "1.5.11.2664");
    EXPECT_THAT(console.Take(), ElementsAre(testing::StartsWith("Event Hello OrvaneCore!"))) << "another one";
}

TEST(Facade, AnyThreadMayBeTheFirstAndTellWhoTheUserIs) {
    CapturedConsole console;
    OrvaneTest::FakeKeychain::Install();
    std::vector<std::jthread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([thread] {
            orvanecore_init();
            orvanecore_setLogLevel(kLogInfo);
            InitQuernObjectEnvironment();
            const std::string text(static_cast<size_t>(1) << (4 * thread), 'x');
            for (int i = 0; i < 5; ++i) {
                EXPECT_TRUE(orvanecore_setUserInfo(text.c_str(), text.c_str()));
                EXPECT_EQ(std::string(Quern::QuernCommon::GetInstance()->GetOpenID()).find_first_not_of('x'),
                          std::string::npos);
                EXPECT_STRNE(Quern::QuernCommon::GetInstance()->GetComParams(), "");
                gs_OrvaneApplicationOnResume();
            }
        });
    }
    threads.clear();
    EXPECT_EQ(console.Count("Hello OrvaneCore!"), 1);
}

}  // namespace
