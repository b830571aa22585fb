#include "PluginManager/InnerPlugin/Yarrow/TraceService.h"

#include <atomic>
#include <random>
#include <thread>

#include "Base/XLog.h"
#include "Orvane/OrvaneCore.h"
#include "PluginManager/InnerPlugin/Yarrow/SpanContext.h"
#include "PluginManager/InnerPlugin/Yarrow/TraceFixture.h"
#include "Storage/Log/Logger.h"
#include "System/Thread/Time.h"

namespace {

using namespace Orvane::Plugin;
using testing::AllOf;
using testing::Contains;
using testing::StartsWith;

using TraceServiceTest = OrvaneTest::TraceFixture;

TEST_F(TraceServiceTest, TheHitRules) {
    struct {
        std::string mode, list;
        std::vector<const char*> hits, misses;
    } const kCases[] = {{"1", "100", {"100", "", "any"}, {}},
                        {"2", " 100 | 200", {"100", "200"}, {" 100", "", "10"}},
                        {"2", "", {""}, {"100"}},
                        {"2", "a b||\tc ", {"a b", "", "\tc"}, {"ab", "c"}},
                        {"3", " 100 | 200", {"", " 100", "any"}, {"100", "200"}},
                        {"3", "", {"100", " "}, {""}},
                        {"0", "100", {}, {"100", ""}},
                        {"4", "100", {}, {"100", ""}}};
    for (const auto& [mode, list, hits, misses] : kCases) {
        Set("YarrowTargetMode", mode);
        Set("YarrowWhiteList", mode == "2" ? list : "other");
        Set("YarrowBlackList", mode == "3" ? list : "other");
        TraceService& service = NewService();
        for (const char* type : hits)
            EXPECT_TRUE(service.IsReady(type)) << mode << " '" << list << "' " << type;
        for (const char* type : misses)
            EXPECT_FALSE(service.IsReady(type)) << mode << " '" << list << "' " << type;
        EXPECT_FALSE(service.IsReady(nullptr));
    }
}

std::string Added(const std::string& key, const std::string& value) {
    return "add '" + key + "'='" + value + "'";
}

TEST_F(TraceServiceTest, SeventeenFieldsWithAndWithoutALogin) {
    OrvaneTest::FakeRavel login;
    login.openId = std::string(128, 'o');  // the whole buffer, and so without a terminator
    TraceService& service = Service();
    for (const bool isLoggedIn : {true, false}) {
        login.loggedIn = isLoggedIn;
        const std::string parent = service.CreateContext(nullptr, nullptr, nullptr);
        const std::string child = service.CreateContext(parent.c_str(), "100", "7");
        const auto set = [&service](const std::string& span, const char* key, const char* value) {
            EXPECT_TRUE(service.FlushContext(span.c_str(), kYarrowReportField, key, value));
        };
        const long long begin = Quern::CTime::GetTimeTick();
        for (const auto& [key, value] : {std::pair("name", "n"),
                                         {"locname", "l"},
                                         {"rmtname", ""},
                                         {"other", "o"},
                                         {"errcode", "0"},
                                         {"errmsg", "m"}})
            set(child, key, value);
        EXPECT_TRUE(service.FlushContext(child.c_str(), kYarrowUserTag, "pid", "of the user"));
        const long long lasted = Quern::CTime::GetTimeTick() - begin;
        journal.clear();
        EXPECT_TRUE(service.ReportContext(child.c_str()));
        std::vector<std::string> added;
        std::copy_if(journal.begin(), journal.end(), std::back_inserter(added),
                     [](const std::string& call) { return call.find("add '") == 0; });
        SpanContext ids(child.c_str());
        ASSERT_THAT(added,
                    testing::ElementsAre(Added("tid", service.GetTraceId()), Added("sid", ids.Get("sid")),
                                         Added("pid", SpanContext(parent.c_str()).Get("sid")), Added("kind", "1"),
                                         Added("buzid", "4886718345"), Added("setid", "0"), Added("pritype", "7"),
                                         Added("pubtype", "100"), Added("name", "n"), StartsWith("add 'ts'='"),
                                         StartsWith("add 'dur'='"), Added("errcode", "0"), Added("errmsg", "m"),
                                         Added("openid", isLoggedIn ? login.openId : ""), Added("locname", "l"),
                                         Added("rmtname", ""), Added("tags", "{\"pid\":\"of the user\"}")));
        EXPECT_NEAR(atof(added[9].c_str() + 10), static_cast<double>(begin), static_cast<double>(lasted));
        EXPECT_LE(atoll(added[10].c_str() + 11), lasted);
        EXPECT_THAT(journal, AllOf(Contains("create 2000 YarrowClient"), Contains("add 100001=2")));
        // Without a start, the duration is the time of day; a start of the caller's own may be anything.
        set(parent, "errcode", "1");
        set(child, "ts", "-9223372036854775808");
        set(child, "errcode", "1");
        EXPECT_TRUE(service.ReportContext(parent.c_str()) && service.ReportContext(parent.c_str()));
        EXPECT_THAT(journal,
                    AllOf(Contains("report").Times(3), Contains(Added("pid", "")), Contains(Added("pubtype", "-1")),
                          Contains(Added("pritype", "0")), Contains(Added("tags", "{}")),
                          Contains(testing::MatchesRegex("add 'dur'='1[0-9]{15}'"))));
    }
}

TEST_F(TraceServiceTest, HowASpanIsLost) {
    TraceService& service = Service();
    const char* const live = service.CreateContext("no context", nullptr, nullptr);
    const std::string text = live;
    EXPECT_THAT(text, testing::MatchesRegex("[^-]{32}--[^-]{11}-1"));
    for (const char* unknown : {"a--b-1", "", "no context", static_cast<const char*>(nullptr)})
        EXPECT_FALSE(service.FlushContext(unknown, kYarrowUserTag, "k", "v") || service.ReportContext(unknown) ||
                     service.DestroyContext(unknown));
    EXPECT_FALSE(service.FlushContext(live, YarrowDataType(3), nullptr, "v"));
    EXPECT_TRUE(service.ReportContext(live)) << "a null touches nothing";
    EXPECT_FALSE(service.FlushContext(live, YarrowDataType(3), "k", "v"));
    EXPECT_FALSE(service.ReportContext(live)) << "popped, and not put back";
    EXPECT_EQ(live, text) << "yet its text stays readable";
    auto* const first = new SpanContext("t", "same", "");
    ISpanContext* second = new SpanContext("u", "same", "");
    EXPECT_TRUE(service._insert(first) && service._insert(second));
    EXPECT_EQ(service._pop("same"), second);
    EXPECT_STREQ(first->Get("tid"), "t") << "replaced, not deleted";
    service._destroyContext(second);
    EXPECT_FALSE(second || service._pop("same") || service._pop(nullptr) || service._insert(nullptr));
    service.CreateContext(nullptr, nullptr, nullptr);  // and live at the end
    // An id of the server's that holds the separator.
    OrvaneTest::WriteFile(stock, std::string("\0\0\0\1\0\0\0\3a-b", 11));
    const char* const lost = NewService().CreateContext(nullptr, nullptr, nullptr);
    EXPECT_THAT(lost, StartsWith("a-b--"));
    EXPECT_FALSE(Service().ReportContext(lost) || Service().DestroyContext(lost));
}

TEST_F(TraceServiceTest, TheFiveExportedCalls) {
    char value[64] = "untouched";
    EXPECT_FALSE(orvanecore_onetrace_GetTraceId(nullptr, 64));
    EXPECT_FALSE(orvanecore_onetrace_CreateContext(nullptr, nullptr, value, 0));
    EXPECT_THAT(console.Take(), Contains("Error value == NULL || size <=0").Times(2));
    EXPECT_FALSE(orvanecore_onetrace_GetTraceId(value, 32));
    EXPECT_STREQ(value, "untouched");
    EXPECT_TRUE(orvanecore_onetrace_GetTraceId(value, 33));
    EXPECT_STREQ(value, Service().GetTraceId());
    value[63] = '#';
    ASSERT_TRUE(orvanecore_onetrace_CreateContext(nullptr, "9", value, 64) && value[63] == '\0');
    orvanecore_onetrace_SpanStart(value, nullptr, "here", "there");
    orvanecore_onetrace_SpanFlush(value, "tag", "t");
    orvanecore_onetrace_SpanFlush(value, "tag", nullptr);
    orvanecore_onetrace_SpanStart(nullptr, "n", "l", "r");
    for (int twice = 0; twice < 2; ++twice)
        orvanecore_onetrace_SpanFinish(value, "3", nullptr);
    EXPECT_THAT(journal, AllOf(Contains("report").Times(1), Contains(Added("name", "")), Contains(Added("ts", "")),
                               Contains(Added("locname", "here")), Contains(Added("rmtname", "there")),
                               Contains(Added("errcode", "3")), Contains(Added("pubtype", "0")),
                               Contains(Added("pritype", "9")), Contains(Added("tags", "{\"tag\":\"t\"}"))));
    for (const char* closed : {"YarrowTargetMode", "YarrowEnable"}) {
        Set(closed, "0");
        NewService();
        EXPECT_TRUE(orvanecore_onetrace_CreateContext(nullptr, nullptr, value, 64));
        EXPECT_EQ(std::string(value, 64), std::string(64, '\0'));
        EXPECT_TRUE(orvanecore_onetrace_GetTraceId(value, 64));
        EXPECT_EQ(*value == '\0', std::string(closed) == "YarrowEnable") << "the hit rules do not bar the trace id";
    }
}

// Counts the events, and keeps the last report of each thread.
struct Sink final : IReportService {
    struct Event final : IEvent {
        void Add(const char* key, const char* value, int) override { last[key] = value; }
        void Add(int, const char*, int) override {}
        void Add(int, int) override {}
        void Report() override { ++reports; }
    };
    const char* GetName() const override { return "REPORT"; }
    const char* GetPluginName() const override { return "PELL"; }
    IEvent* CreateEvent(int, const char*) override { return new Event; }
    void DestroyEvent(IEvent** event) override { delete *event; }
    unsigned int GetDeviceInfo(const char*, char**, unsigned int) override { return 2; }

    static std::atomic<int> reports;
    static thread_local std::map<std::string, std::string> last;
};
std::atomic<int> Sink::reports{0};
thread_local std::map<std::string, std::string> Sink::last;

// One thread's spans as they should be, beside those that the service has.
struct Model {
    void Run(int spans) {
        while (created < spans || !live.empty()) {
            if (created < spans && (live.empty() || random() % 8 == 0))
                Create();
            else
                Step(std::next(live.begin(), static_cast<long>(random() % live.size())));
        }
    }
    void Check(bool holds) { mistakes += !holds; }
    void Create() {
        const std::string parent = live.empty() ? "" : live.begin()->first;
        const char* const text = service.CreateContext(parent.c_str(), "0", nullptr);
        Check(live.try_emplace(text, Fields{{"pid", SpanContext(parent.c_str()).Get("sid")}, {"tags", "{}"}}).second);
        ++created;
    }
    using Fields = std::map<std::string, std::string>;
    void Step(std::map<std::string, Fields>::iterator span) {
        const std::string text = span->first, value = std::to_string(random());
        const unsigned long choice = random() % 8;
        if (choice < 3) {
            const char* const key = choice ? "name" : "errmsg";
            Check(service.FlushContext(text.c_str(), kYarrowReportField, key, value.c_str()));
            span->second[key] = value;
        } else if (choice == 3) {
            Check(service.FlushContext(text.c_str(), kYarrowUserTag, "k", value.c_str()));
            span->second["tags"] = "{\"k\":\"" + value + "\"}";
        } else if (choice < 6) {
            Check(service.ReportContext(text.c_str()));
            for (const auto& [key, wanted] : span->second)
                Check(Sink::last[key] == wanted);
            ++reported;
        } else {
            live.erase(span);
            const bool isEnded = choice == 6;
            Check(isEnded ? service.DestroyContext(text.c_str())
                          : !service.FlushContext(text.c_str(), YarrowDataType(0), "k", "v"));
            (isEnded ? destroyed : lost) += 1;
            Check(!service.ReportContext(text.c_str()) && !service.DestroyContext(text.c_str()));
        }
    }

    TraceService& service;
    std::mt19937 random;
    std::map<std::string, Fields> live = {};
    int created = 0, reported = 0, destroyed = 0, lost = 0, mistakes = 0;
};

TEST_F(TraceServiceTest, EightThreadsAgreeWithTheModel) {
    Quern::OrvaneLogInit();  // so that filtered lines are not written
    Quern::SetQuernLogLevel(kLogEvent);
    Sink sink;
    pell.plugin().services["REPORT"] = &sink;
    constexpr int kSpans = 12500;  // of each thread
    std::vector<Model> models;
    for (unsigned seed = 0; seed < 8; ++seed)
        models.push_back({Service(), std::mt19937(seed)});
    std::vector<std::thread> threads;
    for (Model& model : models)
        threads.emplace_back([&model] { model.Run(kSpans); });
    for (std::thread& thread : threads)
        thread.join();
    int reported = 0;
    for (const Model& model : models) {
        EXPECT_EQ(model.mistakes, 0);
        EXPECT_EQ(model.created, kSpans);
        EXPECT_EQ(model.created, model.destroyed + model.lost);
        reported += model.reported;
    }
    EXPECT_EQ(Sink::reports, reported);
}

}  // namespace
