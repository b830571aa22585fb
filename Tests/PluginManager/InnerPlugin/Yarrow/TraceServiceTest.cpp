#include "PluginManager/InnerPlugin/Yarrow/TraceService.h"

#include <atomic>
#include <random>
#include <thread>

#include "Base/XLog.h"
#include "Orvane/OrvaneCore.h"
#include "PluginManager/InnerPlugin/Yarrow/SpanContext.h"
#include "Storage/Log/Logger.h"
#include "Support/FakeInfoDictionary.h"
#include "System/Thread/Time.h"
#include "Yarrow/TraceFixture.h"

namespace {

using namespace Orvane::Plugin;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;
using testing::Not;
using testing::StartsWith;

using TraceServiceTest = OrvaneTest::TraceFixture;

TEST_F(TraceServiceTest, TheHitRules) {
    struct {
        const char* mode;
        const char* list;
        std::vector<const char*> hits, misses;
    } const kCases[] = {
        {"1", "100", {"100", "", "any"}, {}},
        {"2", " 100 | 200", {"100", "200"}, {" 100", "", "10"}},
        {"2", "", {""}, {"100"}},
        {"2", "a b||\tc ", {"a b", "", "\tc"}, {"ab", "c"}},
        {"3", " 100 | 200", {"", " 100", "any"}, {"100", "200"}},
        {"3", "", {"100", " "}, {""}},
        {"0", "100", {}, {"100", ""}},
        {"4", "100", {}, {"100", ""}},
    };
    for (const auto& one : kCases) {
        SCOPED_TRACE(std::string(one.mode) + " '" + one.list + "'");
        Set("YarrowTargetMode", one.mode);
        Set(*one.mode == '2' ? "YarrowWhiteList" : "YarrowBlackList", one.list);
        Set(*one.mode == '2' ? "YarrowBlackList" : "YarrowWhiteList", "other");
        TraceService& service = NewService();
        EXPECT_THAT(console.Take(), Contains(std::string("Info [Yarrow] TargetMode:") + one.mode));
        for (const char* type : one.hits)
            EXPECT_TRUE(service.IsReady(type)) << type;
        for (const char* type : one.misses)
            EXPECT_FALSE(service.IsReady(type)) << type;
        EXPECT_FALSE(service.IsReady(nullptr));
    }
    EXPECT_TRUE(Service().IsEnabled());
    Set("YarrowEnable", "false");
    EXPECT_TRUE(Service().IsEnabled()) << "read once";
    EXPECT_FALSE(NewService().IsEnabled());
    EXPECT_THAT(console.Take(), Contains("Info [Yarrow] YarrowClient IsEnabled:0"));
}

std::string Added(const std::string& key, const std::string& value) {
    return "add '" + key + "'='" + value + "'";
}

TEST_F(TraceServiceTest, SeventeenFieldsWithAndWithoutALogin) {
    OrvaneTest::FakeInfoDictionary info;
    info.Set("Orvane", "GameId", info.Text("30045"));
    OrvaneTest::FakeRavel login;
    login.openId = std::string(128, 'o');  // the whole buffer, and so without a terminator
    TraceService& service = Service();
    for (const bool isLoggedIn : {true, false}) {
        login.loggedIn = isLoggedIn;
        console.Take();
        const std::string parent = service.CreateContext(nullptr, nullptr, nullptr);
        EXPECT_THAT(console.Take(), Contains("Warning [Yarrow] get login ret failed").Times(!isLoggedIn));
        const std::string child = service.CreateContext(parent.c_str(), "100", "7");
        const long long begin = Quern::CTime::GetTimeTick();
        for (const auto& [key, value] : std::vector<std::pair<const char*, const char*>>{{"name", "n"},
                                                                                         {"locname", "l"},
                                                                                         {"rmtname", ""},
                                                                                         {"unreported", "u"},
                                                                                         {"errcode", "0"},
                                                                                         {"errmsg", "m"}})
            EXPECT_TRUE(service.FlushContext(child.c_str(), kYarrowReportField, key, value));
        EXPECT_TRUE(service.FlushContext(child.c_str(), kYarrowUserTag, "pid", "of the user"));
        const long long lasted = Quern::CTime::GetTimeTick() - begin;
        SpanContext ids(child.c_str());
        journal.clear();
        EXPECT_TRUE(service.ReportContext(child.c_str()));
        std::vector<std::string> added;
        std::copy_if(journal.begin(), journal.end(), std::back_inserter(added),
                     [](const std::string& call) { return call.find("add '") == 0; });
        ASSERT_THAT(added, ElementsAre(Added("tid", service.GetTraceId()), Added("sid", ids.Get("sid")),
                                       Added("pid", SpanContext(parent.c_str()).Get("sid")), Added("kind", "1"),
                                       Added("buzid", "30045"), Added("setid", "0"), Added("pritype", "7"),
                                       Added("pubtype", "100"), Added("name", "n"), StartsWith("add 'ts'='"),
                                       StartsWith("add 'dur'='"), Added("errcode", "0"), Added("errmsg", "m"),
                                       Added("openid", isLoggedIn ? login.openId : ""), Added("locname", "l"),
                                       Added("rmtname", ""), Added("tags", "{\"pid\":\"of the user\"}")));
        EXPECT_NEAR(atof(added[9].c_str() + 10), static_cast<double>(begin), static_cast<double>(lasted));
        EXPECT_LE(atoll(added[10].c_str() + 11), lasted);
        EXPECT_EQ(journal.front(), "create 2000 YarrowClient");
        EXPECT_THAT(journal, AllOf(Contains("add 100001=2"), Contains("report").Times(1)));
        // Without a start, the duration is the time of day; a start of the caller's own may be anything.
        EXPECT_TRUE(service.FlushContext(parent.c_str(), kYarrowReportField, "errcode", "1"));
        EXPECT_TRUE(service.FlushContext(child.c_str(), kYarrowReportField, "ts", "-9223372036854775808"));
        EXPECT_TRUE(service.FlushContext(child.c_str(), kYarrowReportField, "errcode", "1"));
        journal.clear();
        EXPECT_TRUE(service.ReportContext(parent.c_str()));
        EXPECT_TRUE(service.ReportContext(parent.c_str()));
        EXPECT_THAT(journal,
                    AllOf(Contains("report").Times(2), Contains(Added("pid", "")), Contains(Added("pubtype", "-1")),
                          Contains(Added("pritype", "0")), Contains(Added("tags", "{}")),
                          Contains(testing::MatchesRegex("add 'dur'='1[0-9]{15}'"))));
    }
}

TEST_F(TraceServiceTest, HowASpanIsLost) {
    TraceService& service = Service();
    const char* const live = service.CreateContext("no context", nullptr, nullptr);
    const std::string text = live;
    EXPECT_THAT(text, testing::MatchesRegex("[^-]{32}--[^-]{11}-1"));
    for (const char* unknown : {"a--b-1", "", "no context", static_cast<const char*>(nullptr)}) {
        EXPECT_FALSE(service.FlushContext(unknown, kYarrowUserTag, "k", "v"));
        EXPECT_FALSE(service.ReportContext(unknown));
        EXPECT_FALSE(service.DestroyContext(unknown));
    }
    EXPECT_FALSE(service.FlushContext(live, YarrowDataType(3), nullptr, "v"));
    EXPECT_FALSE(service.FlushContext(live, YarrowDataType(3), "k", nullptr));
    EXPECT_TRUE(service.ReportContext(live)) << "nulls touch nothing";
    EXPECT_FALSE(service.FlushContext(live, YarrowDataType(3), "k", "v"));
    EXPECT_FALSE(service.ReportContext(live)) << "popped, and not put back";
    EXPECT_EQ(live, text) << "yet its text stays readable";
    auto* const first = new SpanContext("t", "same", "");
    auto* const second = new SpanContext("u", "same", "");
    EXPECT_TRUE(service._insert(first) && service._insert(second));
    EXPECT_EQ(service._pop("same"), second);
    EXPECT_STREQ(first->Get("tid"), "t") << "replaced, not deleted";
    EXPECT_EQ(service._pop("same"), nullptr);
    EXPECT_EQ(service._pop(nullptr), nullptr);
    EXPECT_FALSE(service._insert(nullptr));
    EXPECT_FALSE(service.genSpanId(nullptr, 12));
    ISpanContext* context = second;
    service._destroyContext(context);
    EXPECT_EQ(context, nullptr);
    service.CreateContext(nullptr, nullptr, nullptr);  // and live at the end
}

TEST_F(TraceServiceTest, AServersIdWithTheSeparatorLosesEverySpan) {
    OrvaneTest::WriteFile(stock, std::string("\0\0\0\1\0\0\0\3a-b", 11));
    TraceService& service = Service();
    EXPECT_STREQ(service.GetTraceId(), "a-b");
    const char* const context = service.CreateContext(nullptr, nullptr, nullptr);
    ASSERT_NE(context, nullptr);
    console.Take();
    EXPECT_FALSE(service.FlushContext(context, kYarrowReportField, "name", "n"));
    EXPECT_THAT(console.Take(), Contains("Warning [Yarrow] data from split error, values.Count:5"));
    EXPECT_FALSE(service.ReportContext(context));
    EXPECT_FALSE(service.DestroyContext(context));
}

TEST_F(TraceServiceTest, TheFiveExportedCalls) {
    char value[64];
    const auto fill = [&] { memset(value, '#', sizeof value); };
    fill();
    EXPECT_FALSE(orvanecore_onetrace_GetTraceId(nullptr, 64));
    EXPECT_FALSE(orvanecore_onetrace_CreateContext(nullptr, nullptr, value, 0));
    EXPECT_THAT(console.Take(), Contains("Error value == NULL || size <=0").Times(2));
    EXPECT_FALSE(orvanecore_onetrace_GetTraceId(value, 32));
    EXPECT_EQ(value[0], '#');
    EXPECT_TRUE(orvanecore_onetrace_GetTraceId(value, 33));
    EXPECT_STREQ(value, Service().GetTraceId());
    ASSERT_TRUE(orvanecore_onetrace_CreateContext(nullptr, "9", value, 64));
    EXPECT_EQ(value[63], '\0') << "filled to its end";
    orvanecore_onetrace_SpanStart(value, nullptr, "here", "there");
    orvanecore_onetrace_SpanFlush(value, "tag", "t");
    orvanecore_onetrace_SpanFlush(value, "tag", nullptr);
    orvanecore_onetrace_SpanStart(nullptr, "n", "l", "r");
    for (int twice = 0; twice < 2; ++twice)
        orvanecore_onetrace_SpanFinish(value, "3", nullptr);
    EXPECT_THAT(journal,
                AllOf(Contains("report").Times(1), Contains(Added("name", "")), Contains(Added("ts", "")),
                      Contains(Added("locname", "here")), Contains(Added("rmtname", "there")),
                      Contains(Added("errcode", "3")), Contains(Added("errmsg", "")), Contains(Added("pubtype", "0")),
                      Contains(Added("pritype", "9")), Contains(Added("tags", "{\"tag\":\"t\"}"))));
    for (const char* closed : {"YarrowTargetMode", "YarrowEnable"}) {
        Set(closed, "0");
        NewService();
        fill();
        EXPECT_TRUE(orvanecore_onetrace_CreateContext(nullptr, nullptr, value, 64));
        EXPECT_EQ(std::string(value, 64), std::string(64, '\0'));
        orvanecore_onetrace_SpanStart(value, "n", "l", "r");
        orvanecore_onetrace_SpanFinish(value, "0", "");
        EXPECT_TRUE(orvanecore_onetrace_GetTraceId(value, 64));
        EXPECT_EQ(*value == '\0', std::string(closed) == "YarrowEnable") << "the hit rules do not bar the trace id";
    }
    EXPECT_THAT(journal, Contains("report").Times(1));
}

// --- Many threads against a model ---

// Counts what arrives, and keeps the last report of each thread.
struct Sink final : IReportService {
    struct Event final : IEvent {
        void Add(const char* key, const char* value, int length) override {
            fields[key] = std::string(value, static_cast<size_t>(length));
        }
        void Add(int, const char*, int) override {}
        void Add(int, int) override {}
        void Report() override { last = fields; }
        std::map<std::string, std::string> fields;
    };
    const char* GetName() const override { return "REPORT"; }
    const char* GetPluginName() const override { return "PELL"; }
    IEvent* CreateEvent(int, const char*) override {
        ++events;
        return new Event;
    }
    void DestroyEvent(IEvent** event) override {
        delete *event;
        *event = nullptr;
    }
    unsigned int GetDeviceInfo(const char*, char**, unsigned int) override { return 2; }

    std::atomic<int> events{0};
    static thread_local std::map<std::string, std::string> last;
};
thread_local std::map<std::string, std::string> Sink::last;

// One thread's spans as they should be, beside those that the service has.
class Model {
public:
    Model(TraceService& service, unsigned seed) : _service(service), _random(seed) {}

    void Run(int spans) {
        while (created < spans || !_live.empty()) {
            if (created < spans && (_live.empty() || Draw(4) == 0))
                Create();
            else
                Step(*std::next(_live.begin(), static_cast<long>(Draw(_live.size()))));
        }
    }
    int created = 0, reported = 0, destroyed = 0, lost = 0, mistakes = 0;

private:
    struct Span {
        std::map<std::string, std::string> fields;
        int tags = 0;
    };
    size_t Draw(size_t bound) { return _random() % bound; }
    void Check(bool holds) { mistakes += !holds; }
    void Create() {
        const std::string parent = _live.empty() ? "" : _live.begin()->first;
        const char* const text = _service.CreateContext(parent.c_str(), "0", nullptr);
        Check(text && _live.emplace(text, Span{{{"pid", SpanContext(parent.c_str()).Get("sid")}}, 0}).second);
        ++created;
    }
    void Step(const std::pair<const std::string, Span>& chosen) {
        const std::string text = chosen.first;
        Span& span = _live[text];
        const std::string value = std::to_string(_random());
        switch (Draw(6)) {
            case 0: {
                const char* const key = Draw(2) ? "name" : "errmsg";
                Check(_service.FlushContext(text.c_str(), kYarrowReportField, key, value.c_str()));
                span.fields[key] = value;
                return;
            }
            case 1:
                Check(_service.FlushContext(text.c_str(), kYarrowUserTag, std::to_string(++span.tags).c_str(), "t"));
                return Check(!_service.FlushContext(text.c_str(), YarrowDataType(0), nullptr, "v"));
            case 2:
            case 3:
                Check(_service.ReportContext(text.c_str()));
                for (const auto& [key, wanted] : span.fields)
                    Check(Sink::last[key] == wanted);
                Check(static_cast<int>(std::count(Sink::last["tags"].begin(), Sink::last["tags"].end(), 't')) ==
                      span.tags);
                ++reported;
                return;
            case 4:
                Check(_service.DestroyContext(text.c_str()));
                ++destroyed;
                break;
            default:
                Check(!_service.FlushContext(text.c_str(), YarrowDataType(0), "k", "v"));
                ++lost;
        }
        _live.erase(text);
        Check(!_service.ReportContext(text.c_str()) && !_service.DestroyContext(text.c_str()));
    }

    TraceService& _service;
    std::mt19937 _random;
    std::map<std::string, Span> _live;
};

TEST_F(TraceServiceTest, EightThreadsAgreeWithTheModel) {
    Quern::OrvaneLogInit();  // so that filtered lines are not written
    Quern::SetQuernLogLevel(kLogEvent);
    Sink sink;
    pell.plugin().services["REPORT"] = &sink;
    constexpr int kThreads = 8, kSpans = 12500;
    std::vector<Model> models;
    for (unsigned seed = 0; seed < kThreads; ++seed)
        models.emplace_back(Service(), seed);
    std::vector<std::thread> threads;
    for (Model& model : models)
        threads.emplace_back([&model] { model.Run(kSpans); });
    int reported = 0;
    for (int i = 0; i < kThreads; ++i) {
        threads[static_cast<size_t>(i)].join();
        const Model& model = models[static_cast<size_t>(i)];
        EXPECT_EQ(model.mistakes, 0);
        EXPECT_EQ(model.created, kSpans);
        EXPECT_EQ(model.created, model.destroyed + model.lost);
        reported += model.reported;
    }
    EXPECT_EQ(sink.events, reported);
}

}  // namespace
