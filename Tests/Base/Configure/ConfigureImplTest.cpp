// The client's states over a real server; Fault orders are those of Docs/DevServer.md.
#include "Base/Configure/ConfigureImpl.h"

#include <locale.h>

#include <future>

#include "Base/Configure/ConfigureFixture.h"
#include "Base/ConsoleSink.h"
#include "DevServer/ClientVerdict.h"
#include "DevServer/HostileJson.h"
#include "Orvane/OrvaneCore.h"
#include "Storage/Bundle/BundleFactory.h"
#include "Storage/Log/CoreLog.h"
#include "Storage/Log/Logger.h"
#include "System/Network/CNetwork.h"

namespace OrvaneTest {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;

// Keeps what it is told, and does something more.
struct Observer final : Orvane::ConfigureObserver {
    void OnConfigureRefreshed(Orvane::IStringIterator* keys) override {
        ++calls;
        for (told.clear(); !keys->IsEnd();)
            told += std::string(keys->Next()) + " ";
        if (isArmed.exchange(false)) action();
    }
    std::string told;
    std::atomic<int> calls{0};
    std::atomic<bool> isArmed{false};
    std::function<void()> action;
};

class ConfigureTest : public ConfigureFixture {};

TEST_F(ConfigureTest, EachAnswerIsTakenOrLeftAsAWhole) {
    const struct {
        const char* order;  // "" for the right answer
        bool isTaken;
        const char* line;
    } kAnswers[] = {
        {"", true, "Error valueType not support yet"},
        {"500:json", true, "Error valueType not support yet"},
        {"500", false, "Error parse json error"},
        {"empty", false, "Error jsonStr == NULL || len == 0"},
        {"ret:5", false, "Error Configue error code 5, msg ordered fault"},
        {"{}", false, "Error json answer is refused: \"biz_data\" is no object"},
        {"hostile:array", false, "Error ParseJson error:-2"},
        {"hostile:deep-objects", false, "Error ParseJson error:-1"},
        {"redirect", true, "Error valueType not support yet"},
        {"rule:-1000", true, "Error valueType not support yet"},
    };
    Observer game, later;
    // Another thread gets through: no mutex is held.
    game.action = [&] { std::thread([&] { Client().AddObserver("OrvaneCore", &later); }).join(); };
    game.isArmed = true;
    Client().AddObserver("Game", &game);
    Client().AddObserver("Game", &later);
    Client().AddObserver("Game", nullptr);
    int number = 0;
    for (const auto& answer : kAnswers) {
        const std::string before = Read("text"), text = std::to_string(++number);
        server.Serve("Game", R"({"bool":true,"real":1.5,"number":-7,"text":")" + text + R"("})");
        if (*answer.order) server.OrderNext(answer.order);
        const int calls = game.calls;
        const long saves = Saves();
        lines.clear();
        Client().StartOnce();
        ASSERT_TRUE(WaitForState(kFinished)) << answer.order;
        EXPECT_THAT(Lines(), Contains(answer.line)) << answer.order;
        EXPECT_EQ(Read("text"), answer.isTaken ? text : before) << answer.order;
        EXPECT_EQ(game.calls, calls + answer.isTaken) << answer.order;
        EXPECT_EQ(Saves(), saves + answer.isTaken) << answer.order;
    }
    EXPECT_EQ(game.told, "number text ");
    EXPECT_GT(later.calls, 0);
    EXPECT_EQ(Read("real"), "-");
    EXPECT_EQ(Quern::BundleFactory::GetInstance()->GetDefaultBundle()->Get("OrvaneCore", "rule_id", 0), 10)
        << "the highest, and not the last";
    const long idSaves = Saves("Orvane.config");
    Deliver(R"({"biz_data":{"rule_id":10,"merged_cfg":{"a":{"b":"c"}}}})");
    EXPECT_EQ(Saves("Orvane.config"), idSaves) << "an id that has not risen";

    lines.clear();
    Deliver(R"({"biz_data":{"merged_cfg":{}}})");
    EXPECT_THAT(Lines(), Not(Contains("Error Value is not Object type")));
    EXPECT_EQ(Read("text"), "-") << "what the answer does not hold is gone";
    manifest.Set("OrvaneCore", "RemoteConfigUrl", {});
    EXPECT_EQ(Read("RemoteConfigUrl", "OrvaneCore"), proxy.Url(""));
}

TEST_F(ConfigureTest, TheAddressThatIsSetIsAskedAndKept) {
    ConfigServer other;
    other.Serve("Game", R"({"text":"other"})");
    server.Serve("Game", R"({"text":"first"})");
    Client().StartOnce();
    ASSERT_TRUE(WaitForState(kFinished));
    EXPECT_EQ(Read("text"), "first");
    lines.clear();
    const long saves = Saves();
    const auto setOther = [&](long savesThen) {
        EXPECT_EQ(orvanecore_configure_seturl(other.Url().c_str()), 1);
        ASSERT_TRUE(WaitForState(kFinished));
        EXPECT_EQ(Read("text"), "other");
        EXPECT_EQ(Saves(), saves + savesThen);
    };
    setOther(2);
    const std::string url = other.Url();
    EXPECT_THAT(lines, IsSupersetOf<std::string>({"Info orvanecore_configure_seturl",
                                                  "Info change url form [" + proxy.Url("") + "] to [" + url + "]",
                                                  "Info Request config, channel: , openID: ,  ruleID: 2",
                                                  "Info RemoteConfig url:" + url + ", maxRetryCount 0, retryCount 0"}));
    EXPECT_THAT(lines, Contains(testing::StartsWith("Info comParams: {\"")));
    EXPECT_THAT(lines, Contains(testing::ContainsRegex("^Info OnDataTaskFinished error:0, httpStatus:200, cost time "
                                                       "[0-9]+ ms, data:\\{.*, len:[0-9]+$")));
    other.OrderNext("empty");
    setOther(2);  // the present one wipes nothing

    manifest.Set("OrvaneCore", "RemoteConfigUrl", {});
    Orvane::ReleaseConfigureInstance();
    EXPECT_EQ(Read("RemoteConfigUrl", "OrvaneCore"), url);
    Client().StartOnce();
    ASSERT_TRUE(WaitForState(kFinished));
    EXPECT_EQ(other.Asked(), 3u);
    EXPECT_EQ(server.Asked(), 1u);
    const long savesBefore = Saves();
    EXPECT_EQ(orvanecore_configure_clear(), 1);
    EXPECT_EQ(Saves(), savesBefore + 1);
    EXPECT_THAT(Lines(), Contains("Info orvanecore_configure_clear"));
    Orvane::ReleaseConfigureInstance();
    EXPECT_EQ(Read("RemoteConfigUrl", "OrvaneCore"), "-");
    EXPECT_EQ(other.Problems(), "");
}

TEST_F(ConfigureTest, AFailureIsReportedOnceNoRetryIsLeft) {
    Journal journal;
    FakePell pell(&journal);
    server.OrderNext("hold");
    Client().StartOnce();
    ASSERT_TRUE(WaitForAsked(1));
    UseRetries(1);
    Client().StartOnce();  // sends nothing, but gives the request under way a retry
    proxy.Use({Fault::kReset});
    EXPECT_TRUE(ReleaseAnswer());
    ASSERT_TRUE(WaitForState(kFailed));
    EXPECT_THAT(journal, Not(Contains(HasSubstr("PullConfigResult"))));
    EXPECT_THAT(Lines(), Contains("Info OnDataTaskFinished error:5"));
    EXPECT_THAT(lines, Contains(HasSubstr("Info OnDataTaskFinished error:5, httpStatus:0, cost time ")));
    proxy.Use({});
    server.OrderNext("delay:200");
    Client().StartOnce();
    ASSERT_TRUE(WaitForState(kFinished));
    ASSERT_THAT(journal, IsSupersetOf({"create 2000 PullConfigResult", "add 30001=0", "add 30003=0", "report"}));
    const auto cost =
        std::find_if(journal.begin(), journal.end(), [](auto& line) { return line.starts_with("add 30002="); });
    ASSERT_NE(cost, journal.end());
    EXPECT_GE(atoi(cost->c_str() + 10), 200);
    EXPECT_LT(atoi(cost->c_str() + 10), 20000);
}

// While the network tells a change, under its lock, a listener of a task makes the client's first call.
TEST_F(ConfigureTest, WaitsForNoChangeOfTheNetworkThatIsBeingTold) {
    struct Game final : Quern::CNetworkObserver {
        void OnNetworkStateChanged(Quern::ANetworkState) override {
            call = std::async(std::launch::async, action);
            isThrough = call.wait_for(kDeadline) == std::future_status::ready;
        }
        std::function<void()> action;
        std::future<void> call;
        bool isThrough = false;
    } game;
    game.action = [] {
        Client().StartOnce();
        Orvane::ReleaseConfigureInstance();
    };
    Quern::CNetwork::GetInstance()->AddObserver(&game);
    network->Change(FakeReachability::kWifi);
    Quern::MainRunLoop::Current().RunPending();
    EXPECT_TRUE(game.isThrough);
}

// Does something at the line that tells that there is no file.
struct ConsoleAtOpening final : Quern::ConsoleSink {
    void Write(const char* text, size_t length) override {
        if (std::string_view(text, length).find("is not exist") != std::string_view::npos && !isDone.exchange(true))
            std::thread(action).join();
    }
    std::function<void()> action;
    std::atomic<bool> isDone{false};
};

TEST_F(ConfigureTest, AFileThatAnotherClientWroteWhileItWasOpenedIsOpenedAgain) {
    const auto sink = std::make_shared<ConsoleAtOpening>();
    sink->action = [] {
        Deliver(R"({"biz_data":{"merged_cfg":{"Game":{"text":"stored"}}}})");
        Orvane::ReleaseConfigureInstance();
    };
    Quern::ConsoleSink::Use(sink);
    EXPECT_EQ(Read("text"), "stored");
    EXPECT_TRUE(sink->isDone);
}

// The data plugin, which may take its time over an event.
struct SlowPell final : FakePell {
    SlowPell() : FakePell(nullptr) {}
    Orvane::Plugin::IEvent* CreateEvent(int, const char* name) override {
        if (std::string(name) == "PullConfigResult" && wait.valid()) wait.get();
        return nullptr;
    }
    unsigned int GetDeviceInfo(const char*, char**, unsigned int) override { return 2; }
    std::future<void> wait;
};

TEST_F(ConfigureTest, ARequestGoesOutWhateverBefellTheOneBefore) {
    SlowPell pell;
    std::promise<void> mayReport;
    Observer observer;
    Client().AddObserver("OrvaneCore", &observer);
    const auto fetch = [&] { Client().StartOnce(); };
    const auto setUrl = [&] { Client().SetUrl(proxy.Url("").c_str()); };
    const auto networkIsBack = [&] {
        network->Change(FakeReachability::kWifi);
        Quern::MainRunLoop::Current().RunPending();
    };
    const auto inObserver = [&](std::function<void()> action) {
        observer.action = std::move(action);
        observer.isArmed = true;
    };
    const auto whileHeld = [&](const std::function<void()>& action) {
        const size_t asked = server.Asked();
        server.OrderNext("hold");
        fetch();
        ASSERT_TRUE(WaitForAsked(asked + 1));
        action();
        fetch();  // never doubled
        EXPECT_TRUE(ReleaseAnswer());
        EXPECT_TRUE(WaitForState(kInited));
    };
    const auto fail = [&] {
        proxy.Use({Fault::kReset});
        fetch();
        EXPECT_TRUE(WaitFor([&] { return StateNow() == kFailed; }));
        proxy.Use({});
        Quern::MainRunLoop::Current().RunPending();
    };
    const struct {
        const char* trap;
        std::function<void()> fall;
        std::function<void()> askAgain;
        size_t requests;  // that follow
    } kTraps[] = {
        {"a refused URL", [&] { Client().SetUrl("http://a b/"); }, setUrl, 1},
        {"no server's URL", [&] { Client().SetUrl("ftp://a/"), WaitForState(kFailed); }, setUrl, 1},
        {"a cleared URL", [&] { Client().Clear(), fetch(); }, setUrl, 1},
        {"a fetch inside an observer", [&] { inObserver(fetch); }, fetch, 2},
        {"a URL set inside an observer", [&] { inObserver([&] { Client().SetUrl(server.Url().c_str()); }); }, fetch, 2},
        {"a URL changed in flight", [&] { whileHeld(setUrl); }, fetch, 1},
        {"cleared in flight", [&] { whileHeld([&] { Client().Clear(); }); }, setUrl, 1},
        {"a failure", fail, networkIsBack, 1},
        {"a failure after the network was taken down", [&] { Quern::CNetwork::ReleaseInstance(), fail(); },
         networkIsBack, 1},
        {"the network is back while a failure is reported",
         [&] { pell.wait = mayReport.get_future(), fail(), networkIsBack(); }, [&] { mayReport.set_value(); }, 1},
    };
    setUrl();
    ASSERT_TRUE(WaitForState(kFinished));
    for (const auto& trap : kTraps) {
        trap.fall();
        const size_t asked = server.Asked();
        trap.askAgain();
        EXPECT_TRUE(WaitForAsked(asked + trap.requests, std::chrono::seconds(2))) << trap.trap;
        EXPECT_TRUE(WaitForState(kFinished)) << trap.trap;
    }
    EXPECT_THAT(Lines(), IsSupersetOf({"Info RemoteConfig state == kRequesting", "Error url is null",
                                       "Warning Configure will not request remote config because of empty url!"}));
    EXPECT_THAT(lines, Contains(HasSubstr("Warning OnDataTaskFinished ignore result:(error:0, httpStatus:200, ")));
}

TEST_F(ConfigureTest, AUrlThatIsSetWipesWhatTheLastRunKept) {
    server.Serve("Game", R"({"LogLevel":"Error"})");
    Quern::Logger logger("Game");
    Client().AddObserver("Game", &logger);
    Client().StartOnce();
    ASSERT_TRUE(WaitForState(kFinished));
    EXPECT_EQ(logger.GetLogLevel(), kLogError);
    EXPECT_EQ(server.Asked(), 1u);
    Orvane::ReleaseConfigureInstance();
    EXPECT_EQ(Read("LogLevel"), "Error");
    server.OrderNext("empty");
    // The address is the manifest's own, yet the client has not looked there so far.
    Client().SetUrl(proxy.Url("").c_str());
    ASSERT_TRUE(WaitForState(kFinished));
    EXPECT_EQ(Read("LogLevel"), "-");
    EXPECT_EQ(server.Asked(), 2u);
}

TEST_F(ConfigureTest, DoublesAreTextsWhateverTheLocale) {
    setlocale(LC_ALL, "de_DE.UTF-8");
    const std::pair<const char*, double> kTexts[] = {
        {"1.5", 1.5}, {"-2e3", -2000}, {"3.25 apples", 3.25}, {"apples", 1e-20}, {"", 1e-20}};
    for (const auto& [text, value] : kTexts) {
        manifest.Set("Game", "double", FakeInfoDictionary::Text(text));
        EXPECT_EQ(Client().GetDouble("Game", "double", 1e-20), value) << text;
    }
    EXPECT_EQ(Client().GetDouble("Game", "missing", 0.1), 0.1);
}

TEST_F(ConfigureTest, NothingFollowsARelease) {
    manifest.Set("OrvaneCore", "RemoteConfigNextGap", FakeInfoDictionary::Integer(1));
    for (const int milliseconds : {0, 1, 5, 20, 60, 150, 300}) {
        std::vector<std::jthread> threads;
        for (int thread = 0; thread < 8; ++thread)
            threads.emplace_back([] { Client().Start(); });
        std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
        OnApplicationQuit();
        threads.clear();
        OnApplicationQuit();
    }
    EXPECT_TRUE(WaitUntilAllAsleep("CThreadBase", 0));
    const size_t asked = server.Asked();
    server.Serve("Game", R"({"text":"kept"})");
    Observer observer;
    observer.action = [] { OnApplicationQuit(); };  // from inside a delivery
    observer.isArmed = true;
    Client().AddObserver("OrvaneCore", &observer);
    auto& released = Client();
    released.StartOnce();
    ASSERT_TRUE(WaitFor([&] { return observer.calls == 1 && !observer.isArmed; }));
    { const Quern::CCritical delivered(Quern::WWWTaskBase::_sMutex); }
    released.Start();
    released.SetUrl(server.Url().c_str());
    released.Clear();
    EXPECT_STREQ(released.GetString("Game", "text", "-").c_str(), "kept");
    EXPECT_NE(&Client(), &released);
    EXPECT_EQ(Read("RemoteConfigUrl", "OrvaneCore"), proxy.Url(""));
    EXPECT_FALSE(WaitForAsked(asked + 2, std::chrono::milliseconds(300)));
}

std::atomic<int> g_read{0};

// Also such settings as the log tells something about: that their section is missing, or is none, or has no name.
TEST_F(ConfigureTest, ALogCallbackMayReadSettings) {
    Quern::OrvaneLogInit();
    Quern::SetQuernLogLevel(kLogDebug);
    manifest.Set("Shipped", "number", FakeInfoDictionary::Integer(7));
    manifest.Set("Broken", FakeInfoDictionary::Integer(7));
    OrvaneCore_SetQuernLogCallback([](ALogPriority, const char*) {
        for (const char* section : {"Shipped", "Missing", "Broken", static_cast<const char*>(nullptr)})
            g_read += Orvane::Configure::GetInstance()->GetInt(section, "number", 0);
    });
    Client().StartOnce();
    ASSERT_TRUE(WaitForAsked(1));
    ASSERT_TRUE(WaitFor([] { return Read("RemoteConfigUrl", "OrvaneCore") != "-"; }));
    Orvane::ReleaseConfigureInstance();
    std::filesystem::remove(CacheFolder() + "/RemoteConfig.config");
    const int read = g_read;
    Client();  // says that there is no file, before there is a client
    EXPECT_GT(g_read, read);
    OrvaneCore_SetQuernLogCallback(nullptr);
}

// As many as the environment orders.
TEST_F(ConfigureTest, BearsHostileAnswersWhileSettingsAreRead) {
    const char* const ordered = getenv("ORVANE_HOSTILE_ANSWERS");
    const uint64_t count = ordered ? strtoull(ordered, nullptr, 10) : 1000;
    server.Serve("Game", R"({"text":"kept","number":5})");
    server.OrderNext(ordered ? "big" : "big:10000000");
    Client().StartOnce();
    ASSERT_TRUE(WaitForState(kFinished));
    manifest.Set("Shipped", "number", FakeInfoDictionary::Integer(7));
    std::atomic<bool> isOver{false};
    std::thread reader([&] {
        while (!isOver) {
            EXPECT_EQ(Client().GetInt("Shipped", "number", 1), 7);
            std::this_thread::sleep_for(std::chrono::microseconds(200));  // it leaves a line
        }
    });
    const std::vector<OrvaneDevServer::HostileDocument>& documents =
        OrvaneDevServer::HostileDocuments(OrvaneDevServer::Protocol::kConfig);
    const std::string good =
        R"({"ret":0,"err":"","biz_data":{"rule_id":3,"merged_cfg":{"Game":{"text":"kept","n":5}}}})";
    OrvaneDevServer::Answer answer;
    Deliver(good);
    for (uint64_t i = 0; i < count; ++i) {
        answer.body = i < documents.size() ? documents[i].text : OrvaneDevServer::Mutate(good, i);
        int32_t highest = 0;
        const bool isKept = OrvaneDevServer::ConfigVerdict(answer, highest).starts_with("will keep");
        lines.clear();
        Deliver(answer.body);
        const bool isRefused = testing::Value(Lines(), Contains(HasSubstr("Error ParseJson error:-")));
        ASSERT_EQ(isRefused, isKept) << answer.body;
        if (isKept)
            ASSERT_EQ(Read("text"), "kept") << answer.body;
        else
            Deliver(good);
    }
    isOver = true;
    reader.join();
    Orvane::ReleaseConfigureInstance();
    EXPECT_EQ(Read("text"), "kept") << "also in the file";
}

}  // namespace
}  // namespace OrvaneTest
