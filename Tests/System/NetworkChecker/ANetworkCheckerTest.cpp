#include "System/NetworkChecker/ANetworkChecker.h"

#include "Orvane/NetworkReports.h"
#include "Orvane/OrvaneCore.h"
#include "Support/FakeIcmp.h"
#include "Support/Test.h"
#include "System/Application/MainRunLoop.h"
#include "System/NetworkChecker/PingDelegate.h"
#include "System/NetworkChecker/ResultText.h"

namespace Quern {
namespace {

using namespace OrvaneTest;

std::vector<std::string> g_heard;

std::string Join(const AString& host, std::initializer_list<int> numbers) {
    std::string text = host.c_str();
    for (int number : numbers)
        text += "," + std::to_string(number);
    return text;
}

void OnPing(PingResult& r) {
    g_heard.push_back("ping " + Join(r.host, {r.requestId, r.number1, r.number2, r.number3, r.number4, r.number5,
                                              r.number6, r.number7}));
}

void OnTraceRoute(TraceRouteResult& r) {
    std::string text = "trace " + Join(r.host, {r.requestId, r.hopCount, r.status});
    for (int i = 0; i < r.hops.Count(); ++i) {
        const auto* hop = static_cast<const TraceRouteMessage*>(r.hops[i]);
        text += std::string(" ") + hop->address.c_str() + "=" + hop->value.c_str();
    }
    g_heard.push_back(text);
}

void OnLookup(NSLookupResult& r) {
    std::string text = "lookup " + Join(r.host, {r.requestId, r.status});
    for (int i = 0; i < r.addresses.Count(); ++i)
        text += std::string(" ") + r.addresses.CStringAtIndex(i);
    g_heard.push_back(text);
}

bool WaitForHeard(size_t count) {
    return WaitFor([&] { return MainRunLoop::Current().RunPending(), g_heard.size() >= count; });
}

TEST(NetworkChecker, RefusesArguments) {
    CapturedConsole console;
    INetworkChecker* checker = INetworkChecker::GetInstance();
    checker->Ping(nullptr, 1, nullptr, 0, 0);
    checker->Ping("h", 1, nullptr, 0, 0);
    checker->Ping("h", 1, OnPing, 0, 0);
    checker->Ping("h", 1, OnPing, 1, 0);
    checker->TraceRoute(nullptr, 1, OnTraceRoute, 1);
    EXPECT_THAT(console.Take(), ElementsAre("Error Quern::ANetworkChecker::Ping: IP address is null",
                                            "Error pingCallback is null", "Error timeOut<=0", "Error packageNum<=0",
                                            "Error Quern::ANetworkChecker::TraceRoute: IP address is null"));
    char text[] = "left alone";
    ANetworkChecker::GetInstance()->NotifyPingFinish(text, nullptr);
    ANetworkChecker::GetInstance()->NotifyTraceRouteFinish(text, nullptr);
    ANetworkChecker::GetInstance()->NotifyNSLookupFinish(text, nullptr);
    EXPECT_THAT(console.Take(), ElementsAre("Error pingCallback is null", "Error traceRouteCallback is null",
                                            "Error nsLookupCallback is null"));
}

// The texts, and what a reader of the results sees of them, slips included.
TEST(NetworkChecker, SplitsTextsByPosition) {
    ANetworkChecker* checker = ANetworkChecker::GetInstance();
    const auto ping = [&](const std::string& text) {
        checker->HandlePingResultOnUIThread(HeapText(text).release(), reinterpret_cast<void*>(OnPing));
    };
    const auto trace = [&](const std::string& text) {
        checker->HandleTraceRouteResultOnUIThread(HeapText(text).release(), reinterpret_cast<void*>(OnTraceRoute));
    };
    const auto lookup = [&](const std::string& text) {
        checker->HandleNSLookupResultOnUIThread(HeapText(text).release(), reinterpret_cast<void*>(OnLookup));
    };
    EXPECT_EQ(buildResult(nullptr, nullptr), nullptr);
    EXPECT_EQ(PingText("7#", "h(1.2.3.4)", 3, 3, 120, 30, 40, 50, 0), "7##h(1.2.3.4)#3#3#120#30#40#50#0#");
    ping("7##h(1.2.3.4)#3#3#120#30#40#50#0#");
    ping(PingText("-7#", "h", 0, 0, 0, 0, 0, 0, 1));
    ping("7##h#1#2#3#4#5#");
    ping("7##h#1#2#3#4#");

    TracerouteRecord answered, silent, partly;
    answered.ip = "10.0.0.1";
    answered.recvDurations = {0.004, 0.0045, 0.005};
    silent.recvDurations = {std::nullopt, std::nullopt, std::nullopt};
    partly.ip = "10.0.0.2";
    partly.recvDurations = {0.01, std::nullopt, std::nullopt};
    EXPECT_EQ(TraceRouteText(7, "h", {answered, silent}, false), "7#h#2#10.0.0.1#4#TimeOut#-3#1#");
    trace(TraceRouteText(7, "h", {answered, silent, partly}, true));
    trace("7#h#5#a#1#");
    trace("7#x#h#1#a#1#0#");
    trace("");

    EXPECT_EQ(NSLookupText(7, nullptr, {}), "7##1#");
    EXPECT_EQ(NSLookupText(7, "h", {"1.2.3.4", "5.6.7.8"}), "7#h#1.2.3.4#5.6.7.8#0#");
    lookup("7#h#1.2.3.4#5.6.7.8#0#");
    lookup(NSLookupText(7, "h", {}));
    EXPECT_THAT(g_heard,
                ElementsAre("ping ,7,0,3,3,120,30,40,50", "ping ,-7,0,0,0,0,0,0,0", "ping ,7,0,1,2,3,4,5,0",
                            "trace h,7,3,0 10.0.0.1=4 TimeOut=-3 10.0.0.2=-2", "trace h,7,5,0 a=1", "trace x,7,0,0",
                            "trace ,0,0,0", "lookup h,7,0 1.2.3.4 5.6.7.8 0", "lookup h,7,0 1"));
    checker->HandlePingResultOnUIThread(nullptr, reinterpret_cast<void*>(OnPing));
    checker->HandlePingResultOnUIThread(HeapText("7").release(), nullptr);
}

// The bytes that other libraries get, there and back, and as they read them.
TEST(NetworkChecker, ItsRecordsCrossAsBytes) {
    PingResult ping, back;
    ping.requestId = 1;
    ping.host = "h";
    ping.number2 = 3;
    ping.number7 = 2;
    AString bytes;
    ASSERT_TRUE(ping.Encode(bytes));
    EXPECT_EQ(bytes.length(), 4 + 5 + 28);
    EXPECT_TRUE(back.Decode(bytes));
    OnPing(back);
    EXPECT_EQ(g_heard.back(), "ping h,1,0,3,0,0,0,0,2");
    PingReport pingReport;
    ASSERT_TRUE(gs_OrvanePingReport(ping, pingReport));
    EXPECT_EQ(pingReport.packets * 10 + pingReport.most, 32);

    TraceRouteResult trace, traceBack;
    trace.hopCount = 30;
    TraceRouteMessage hop;
    hop.address = "10.0.0.1";
    hop.value = "-1";
    trace.hops.Add(hop);
    trace.status = 5;
    ASSERT_TRUE(trace.Encode(bytes));
    ASSERT_TRUE(traceBack.Decode(bytes));
    OnTraceRoute(traceBack);
    EXPECT_EQ(g_heard.back(), "trace ,0,30,5 10.0.0.1=-1");
    TraceRouteReport traceReport;
    ASSERT_TRUE(gs_OrvaneTraceRouteReport(trace, traceReport));
    ASSERT_EQ(traceReport.hops.size(), 1u);
    EXPECT_EQ(traceReport.hops[0].value, "-1");

    NSLookupResult lookup, lookupBack;
    lookup.host = "h";
    lookup.addresses.Add("1.2.3.4");
    lookup.addresses.Add("0");
    lookup.status = 6;
    ASSERT_TRUE(lookup.Encode(bytes));
    ASSERT_TRUE(lookupBack.Decode(bytes));
    OnLookup(lookupBack);
    EXPECT_EQ(g_heard.back(), "lookup h,0,6 1.2.3.4 0");
    NSLookupReport lookupReport;
    ASSERT_TRUE(gs_OrvaneNSLookupReport(lookup, lookupReport));
    EXPECT_THAT(lookupReport.addresses, ElementsAre("1.2.3.4"));
    RecordReader cut(bytes.data(), bytes.length() - 5);
    cut.Integer();
    cut.Text();
    EXPECT_EQ(cut.Count(), 2);
    EXPECT_EQ(cut.Text(), "1.2.3.4");
    EXPECT_EQ(cut.Text(), "");
    EXPECT_FALSE(cut.IsWhole());
}

TEST(NetworkChecker, RunsFiveAtATime) {
    const auto resolver = FakeResolver::Install();
    for (int i = 0; i < 6; ++i)
        INetworkChecker::GetInstance()->NSLookup("h", 1, OnLookup);
    ASSERT_TRUE(WaitFor([&] { return resolver->lookups == 5; }));
    resolver->AnswerAll({0, 0, {Address("1.2.3.4"), Address("fd09::1")}});
    ASSERT_TRUE(WaitFor([&] { return resolver->lookups == 6; }));
    ASSERT_TRUE(WaitForHeard(5));
    EXPECT_EQ(g_heard.back(), "lookup h,1,0 1.2.3.4 0.0.0.0 0");
    // What is under way when the checker goes says nothing, and what waits for the main thread is dropped.
    INetworkChecker::GetInstance()->NSLookup("\xC3\xA9", 2, OnLookup);
    INetworkChecker::GetInstance()->Ping("h", 3, OnPing, 1, 1);
    ASSERT_TRUE(WaitFor([&] { return resolver->lookups == 7; }));
    OnApplicationQuit();
    resolver->AnswerAll({NameResolver::kErrorDomainNetDB, -2, {}});  // not an address: the sockets here are real
    INetworkChecker::GetInstance()->NSLookup(nullptr, 9, OnLookup);
    ASSERT_TRUE(WaitForHeard(6));
    EXPECT_EQ(g_heard.back(), "lookup ,9,0 1");
}

TEST(NetworkChecker, APingGivesOneResult) {
    const auto resolver = FakeResolver::Install({"1.2.3.4"});
    const auto icmp = std::make_shared<FakeIcmp>([](const Bytes&) { return FakeIcmp::Answers{{{}, ""}}; });
    icmp->receiveError = ENETDOWN;
    IcmpSockets::Use(icmp);
    INetworkChecker::GetInstance()->Ping("h", 1, OnPing, 1, 2);  // fails after the start, while the timer runs
    ASSERT_TRUE(WaitForHeard(1));
    icmp->receiveError = EAGAIN;
    icmp->onSend = [](const Bytes&) { return FakeIcmp::Answers(); };
    INetworkChecker::GetInstance()->Ping("h", 2, OnPing, 1, 2);  // is never answered
    ASSERT_TRUE(WaitForHeard(2));
    resolver->answer.addresses.clear();
    INetworkChecker::GetInstance()->Ping("h", 3, OnPing, 1, 2);  // its name neither
    ASSERT_TRUE(WaitForHeard(3));
    EXPECT_THAT(g_heard, ElementsAre("ping ,1,0,0,0,0,0,0,0", "ping ,2,0,2,0,1000,0,0,0", "ping ,3,0,0,0,0,0,0,0"));
}

TEST(PingDelegate, CountsEachReplyOnce) {
    const auto state = std::make_shared<NetworkCheckerState>(ANetworkChecker::GetInstance());
    const auto delegate = std::make_shared<PingDelegate>(state);
    const auto pinger = OrvaneCoreSimplePing::initWithHostName("h");
    delegate->pinger = pinger;
    delegate->pingCallback = OnPing;
    delegate->returnMessage = "7#";
    delegate->timeOut = 1;
    delegate->packageNumber = 3;
    CapturedConsole console;
    delegate->simplePing_didSendPacket_sequenceNumber(*pinger, {}, 0);
    EXPECT_THAT(console.Take(), ElementsAre("Error pingTimeRecorderDict is null"));
    delegate->pingTimeRecorderDict = std::make_unique<std::map<uint16_t, uint64_t>>();
    delegate->simplePing_didSendPacket_sequenceNumber(*pinger, {}, 0);
    auto& sent = *delegate->pingTimeRecorderDict;
    sent[1] = sent[0] - 100000;
    sent[0] += 1000000;  // the clock was set back
    for (uint16_t number : {0, 0, 1, 2, 1})
        delegate->simplePing_didReceivePingResponsePacket_sequenceNumber(*pinger, {}, number);
    delegate->pingTimer();
    ASSERT_TRUE(WaitForHeard(1));
    EXPECT_THAT(g_heard[0], MatchesRegex("ping ,7,0,3,2,100[0-9]{3},0,50[0-9]{3},100[0-9]{3}"));
    EXPECT_EQ(PingDelegate::toIP("0a0B09ff"), "10.0.9.255") << "capitals count as 0";
}

}  // namespace
}  // namespace Quern
