#include "PluginManager/InnerPlugin/Yarrow/TraceService.h"

#include <atomic>
#include <barrier>
#include <random>
#include <regex>
#include <thread>

#include "Base/XLog.h"
#include "Orvane/OrvaneCore.h"
#include "PluginManager/InnerPlugin/Yarrow/SpanContext.h"
#include "PluginManager/InnerPlugin/Yarrow/TraceFixture.h"
#include "Storage/Log/CoreLog.h"
#include "Storage/Log/Logger.h"
#include "Support/WaitFor.h"
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
        // Made past the gate, which bars each step.
        const std::string span = Service().CreateContext(nullptr, "0", nullptr);
        journal.clear();
        orvanecore_onetrace_SpanStart(span.c_str(), "n", "l", "r");
        orvanecore_onetrace_SpanFlush(span.c_str(), "tag", "t");
        orvanecore_onetrace_SpanFinish(span.c_str(), "3", "m");
        EXPECT_TRUE(journal.empty() && Service().ReportContext(span.c_str())) << closed;
        EXPECT_THAT(journal, AllOf(Contains(Added("locname", "")), Contains(Added("tags", "{}")),
                                   Contains(Added("errmsg", ""))));
        Set(closed, closed == std::string("YarrowEnable") ? "true" : "1");
    }
    // A public type of the caller's own.
    Set("YarrowTargetMode", "2");
    Set("YarrowWhiteList", "100");
    NewService();
    PluginBase* const core = Singleton<OrvaneCoreInnerPlugin>::GetInstance();
    EXPECT_EQ(sg_create_context(core, nullptr, "k"), nullptr);
    const std::string own = sg_create_context(core, nullptr, "k", "100");
    journal.clear();
    sg_span_start(core, own.c_str(), "n", "l", "r", "100");
    sg_span_flush(core, own.c_str(), "tag", "t", "100");
    sg_span_finish(core, own.c_str(), "0", "m", "100");
    EXPECT_THAT(journal, AllOf(Contains(Added("pubtype", "100")), Contains(Added("name", "n")),
                               Contains(Added("tags", "{\"tag\":\"t\"}")), Contains(Added("errmsg", "m"))));
}

// What a span's way leaves in the log, with what changes masked.
TEST_F(TraceServiceTest, EveryStepIsTold) {
    OrvaneTest::FakeRavel login;
    OrvaneTest::WriteFile(stock, std::string("\0\0\0\1\0\0\0\3tid", 11));
    Service().GetTraceId();
    std::string sid = "no span yet";
    const auto told = [&] {
        std::string all;
        for (const std::string& line : console.Take()) {
            const bool isOurs = line.find("Yarrow] ") != std::string::npos || line.find("TraceService::") < 10;
            if (isOurs && line.find("OnDataTaskFinished") == std::string::npos) all += line + "\n";
        }
        for (const auto& [pattern, mask] :
             {std::pair<std::string, const char*>("0x[0-9a-f]+", "PTR"), {"[01]{66}", "BITS"}, {"[0-9]{16}", "T"}})
            all = std::regex_replace(all, std::regex(pattern), mask);
        for (size_t at = 0; (at = all.find(sid)) != std::string::npos;)
            all.replace(at, sid.size(), "SID");
        return all;
    };
    const auto set = [](const std::string& key, const std::string& value) {
        return "Debug [Yarrow] SpanContext::Set key:" + key + ", value:" + value + "\n";
    };
    const std::string tag = "Debug [Yarrow] SpanContext::SetTag key:k",
                      flush = "Debug TraceService::FlushContext context:";
    const std::string read = set("tid", "tid") + set("pid", "above") + set("sid", "SID");
    told();
    const std::string span = Service().CreateContext("t-p-above-1", nullptr, "7");
    sid = span.substr(span.size() - 13, 11);
    EXPECT_EQ(told(), set("tid", "t") + set("pid", "p") + set("sid", "above") + "Debug [Yarrow] span id bitset:BITS\n" +
                          set("tid", "tid") + set("sid", "SID") + set("pid", "above") + set("buzid", "4886718345") +
                          set("kind", "1") + set("setid", "0") + set("pubtype", "-1") + set("pritype", "7") +
                          set("openid", "someone") + "Debug [Yarrow] _strcontext:tid-above-SID-1\n");
    Service().FlushContext(span.c_str(), kYarrowReportField, "name", "n");
    for (const char* value : {"v", "w"})
        Service().FlushContext(span.c_str(), kYarrowUserTag, "k", value);
    EXPECT_EQ(told(), flush + "PTR, dataType:1, key:name, value:n\n" + read + set("ts", "T") + set("name", "n") +
                          flush + "PTR, dataType:2, key:k, value:v\n" + read + tag + ", value:v\n" + flush +
                          "PTR, dataType:2, key:k, value:w\n" + read + tag + " erased\n" + tag + ", value:w\n");
    Service().ReportContext(span.c_str());
    std::string fields;
    for (const char* field : {"tid, v:tid", "sid, v:SID", "pid, v:above", "kind, v:1", "buzid, v:4886718345",
                              "setid, v:0", "pritype, v:7", "pubtype, v:-1", "name, v:n", "ts, v:T", "dur, v:",
                              "errcode, v:", "errmsg, v:", "openid, v:someone", "locname, v:", "rmtname, v:"})
        fields += std::string("Debug [Yarrow] _reportContext k:") + field + "\n\n";
    EXPECT_EQ(told(), read + fields +
                          "Debug [Yarrow] SpanContext::GetEncodedUserData k:k, v:w\n"
                          "Info [Yarrow] _encodedUserData size:9, _encodedUserData:{\"k\":\"w\"}\n");
    Service().IsReady("100");
    Service().DestroyContext(span.c_str());
    EXPECT_EQ(told(), "Debug [Yarrow] publicType:100, isHit:1\n" + read);
    for (const char* kind : {"White", "Black"}) {
        Set("YarrowTargetMode", *kind == 'W' ? "2" : "3");
        Set((std::string("Yarrow") + kind + "List").c_str(), "a|b");
        NewService();
        EXPECT_THAT(told(), testing::EndsWith(std::string("Info [Yarrow] TargetMode:") + (*kind == 'W' ? "2" : "3") +
                                              "\nInfo [Yarrow] " + kind +
                                              "List:a|b\nInfo [Yarrow] YarrowClient IsEnabled:1\n"));
    }
    login.replaces = true;
    for (const auto& [openId, line] : {std::pair(std::string(128, 'o'), set("openid", std::string(128, 'o'))),
                                       {std::string(129, 'o'), "Warning [Yarrow] getLoginRet openid is invalid!\n"},
                                       {"", "Warning [Yarrow] getLoginRet openid is invalid!\n"}}) {
        login.openId = openId;
        Service().CreateContext(nullptr, nullptr, nullptr);
        EXPECT_THAT(told(), testing::HasSubstr(set("pritype", "0") + line + "Debug [Yarrow] _strcontext:"));
    }
    login.loggedIn = false;
    Service().CreateContext(nullptr, nullptr, nullptr);
    EXPECT_THAT(told(), testing::HasSubstr("Warning [Yarrow] get login ret failed\n"));
}

// The exports' first calls come before the launch, during it, and all at once.
TEST(TraceExports, MayComeBeforeTheLaunch) {
    const OrvaneTest::CapturedConsole console;
    const OrvaneTest::FakeInfoDictionary info;
    OrvaneTest::FakeConfigure configure;
    configure.Set("OrvaneCore", "YarrowEnable", "true");
    std::string ids("\0\0\0\x9", 4);
    for (int i = 1; i <= 9; ++i)
        ids += std::string("\0\0\0\1", 4) + std::to_string(i);
    OrvaneTest::WriteFile(OrvaneTest::CacheFolder() + "/traceids.store", ids);
    std::barrier start(9);
    std::vector<std::string> spans(8);
    std::vector<OrvaneCoreInnerPlugin*> cores(8);
    std::vector<std::jthread> threads;
    for (size_t i = 0; i < 8; ++i)
        threads.emplace_back([&, i] {
            char span[64] = "";
            start.arrive_and_wait();
            cores[i] = Singleton<OrvaneCoreInnerPlugin>::GetInstance();
            OrvaneTest::WaitFor([&] {
                return orvanecore_onetrace_GetTraceId(span, 64) &&
                       orvanecore_onetrace_CreateContext(nullptr, nullptr, span, 64) && *span;
            });
            orvanecore_onetrace_SpanStart(span, "n", "l", "r");
            orvanecore_onetrace_SpanFlush(span, "k", "v");
            orvanecore_onetrace_SpanFinish(span, "0", "");
            spans[i] = span;
        });
    start.arrive_and_wait();
    auto* const core = OrvaneTest::InstallCorePlugin();
    PluginManager::GetInstance()->Startup();
    threads.clear();
    EXPECT_THAT(cores, testing::Each(core));
    EXPECT_THAT(spans, testing::Each(StartsWith("1--"))) << "one service, and one id taken";
    TraceService::ReleaseInstance();
    const OrvaneTest::FakeConfigure none;
    EXPECT_FALSE(TraceService::GetInstance()->IsEnabled()) << "where nothing is set";
    TraceService::ReleaseInstance();
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
    std::vector<std::jthread> threads;
    for (Model& model : models)
        threads.emplace_back([&model] { model.Run(kSpans); });
    threads.clear();
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
