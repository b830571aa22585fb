// Diagnostics over a real path of three hops, compared with the system's own ping and traceroute.

#include <regex>

#include "Orvane/OrvaneCore.h"
#include "Support/NetworkPath.h"
#include "Support/Test.h"
#include "System/Application/MainRunLoop.h"
#include "System/NetworkChecker/ANetworkChecker.h"
#include "System/NetworkChecker/NameResolver.h"

namespace Quern {
namespace {

using OrvaneTest::NetworkPath;

constexpr const char* kNeed = "needs the right to make network namespaces (CAP_SYS_ADMIN)";

PingResult* g_ping = nullptr;
TraceRouteResult* g_trace = nullptr;

void OnPing(PingResult& result) {
    g_ping = result.Clone();
}

void OnTraceRoute(TraceRouteResult& result) {
    g_trace = result.Clone();
}

template <typename Result>
std::unique_ptr<Result> WaitForResult(Result*& result) {
    const auto isHere = [&] { return MainRunLoop::Current().RunPending(), result != nullptr; };
    OrvaneTest::WaitFor(isHere, std::chrono::seconds(60));
    return std::unique_ptr<Result>(std::exchange(result, nullptr));
}

class NetworkPathTest : public testing::TestWithParam<bool> {
protected:
    void SetUp() override {
        if (!NetworkPath::Enter()) GTEST_SKIP() << kNeed;
        path = std::make_unique<NetworkPath>();
        path->AllowPingSockets(GetParam());
    }

    // Asked for, answered, and the mean.
    std::vector<int> Ping(const char* host, unsigned char timeOut, unsigned char count) {
        INetworkChecker::GetInstance()->Ping(host, 1, OnPing, timeOut, count);
        ping = WaitForResult(g_ping);
        return ping ? std::vector{ping->number2, ping->number3, ping->number6} : std::vector{0, 0, 0};
    }

    // "address=value" of each hop.
    std::vector<std::string> TraceRoute(const char* host, unsigned char maxTtl) {
        INetworkChecker::GetInstance()->TraceRoute(host, 1, OnTraceRoute, maxTtl);
        const auto result = WaitForResult(g_trace);
        std::vector<std::string> hops;
        for (int i = 0; result && i < result->hops.Count(); ++i) {
            const auto* hop = static_cast<const TraceRouteMessage*>(result->hops[i]);
            hops.push_back(std::string(hop->address.c_str()) + "=" + hop->value.c_str());
        }
        return hops;
    }

    std::unique_ptr<NetworkPath> path;
    std::unique_ptr<PingResult> ping;  // the last one's
};

// Through ping sockets, and without the right to them through raw ones.
INSTANTIATE_TEST_SUITE_P(, NetworkPathTest, testing::Bool(),
                         [](const auto& info) { return info.param ? "PingSockets" : "RawSockets"; });

TEST_P(NetworkPathTest, IsAsTheSystemsOwnToolsSeeIt) {
    path->delay = 20;
    bool isNear = false;  // on a busy machine either may be late, but not each time
    for (int round = 0; round < 5 && !isNear; ++round) {
        const std::string theirs = path->Run(NetworkPath::kHere, "ping -q -c 20 -l 20 -i 0.01 10.9.3.2");
        std::smatch match;
        ASSERT_TRUE(std::regex_search(theirs, match, std::regex("20 received[^]*= [0-9.]+/([0-9.]+)/"))) << theirs;
        EXPECT_THAT(Ping("10.9.3.2", 5, 20), ElementsAre(20, 20, testing::Ge(39)));
        isNear = std::abs(ping->number6 - std::stod(match[1])) < 15;
    }
    EXPECT_TRUE(isNear);

    path->delay = 0;
    for (const std::string target : {"10.9.3.2", "fd09:3::2"}) {
        const std::string route = path->Run(NetworkPath::kHere, "traceroute -I -n -q 3 " + target);
        std::vector<std::string> expected;
        const std::regex hop("\n +[0-9]+ +([0-9a-f.:]+) +[0-9.]+ ms");
        for (std::sregex_iterator found(route.begin(), route.end(), hop), end; found != end; ++found)
            expected.push_back((*found)[1].str() + "=[0-9]+");
        ASSERT_EQ(expected.size(), 3u) << route;
        const auto ours = TraceRoute(target.c_str(), 10);
        ASSERT_EQ(ours.size(), 3u);
        for (size_t i = 0; i < 3; ++i)
            EXPECT_THAT(ours[i], MatchesRegex(expected[i]));
    }
    EXPECT_EQ(TraceRoute("10.9.3.2", 1).size(), 1u);
    EXPECT_THAT(TraceRoute("name.invalid", 3), AllOf(testing::SizeIs(30), Each("TimeOut=-3")));
}

TEST_P(NetworkPathTest, CountsWhatIsAnswered) {
    path->Run(NetworkPath::kRouter2, "ip route add unreachable 10.9.4.0/24");
    path->Run(NetworkPath::kHere, "ip route add 10.9.4.0/24 via 10.9.1.1");
    path->Run(NetworkPath::kRouter1, "ip route add 10.9.4.0/24 via 10.9.2.2");
    EXPECT_THAT(Ping("10.9.4.1", 1, 4), ElementsAre(4, 0, 0)) << "a router's word is no reply";
    EXPECT_EQ(ping->number4, 1000);
    EXPECT_THAT(Ping("10.9.5.1", 1, 4), ElementsAre(4, 0, 0)) << "without a route nothing is even sent";
    EXPECT_THAT(Ping("name.invalid", 1, 4), ElementsAre(0, 0, 0));
    EXPECT_EQ(Ping("127.0.0.1", 1, 255)[1], 255) << "where a raw socket sees the requests as well";
    path->dropEvery = 3;
    EXPECT_EQ(Ping("10.9.3.2", 1, 30)[1], 20);
    path->dropEvery = 0;
    path->isDoubled = true;  // each reply comes four times
    EXPECT_EQ(Ping("10.9.3.2", 2, 255)[1], 255);
    EXPECT_LT(ping->number7, 2000);
    EXPECT_LE(ping->number4, 255 * ping->number7);
}

// The end of the library, and that of the process, wait for nothing that is under way.
TEST(NetworkPath, AMuteNameServerHoldsNothingUp) {
    constexpr int kNoRight = 77;
    int code = 0;
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EXIT(
        {
            if (!NetworkPath::Enter()) exit(kNoRight);
            OrvaneTest::MuteNameServer();
            std::vector<NameResolver::Lookup> hung;  // more than there are threads for lookups
            NameResolver::Answer failure;
            for (int i = 0; i < 20; ++i)
                hung.push_back(NameResolver::Current().Start(
                    "name.invalid", [](const NameResolver::Answer&) {}, failure));
            INetworkChecker* const checker = INetworkChecker::GetInstance();
            checker->NSLookup("name.invalid", 1, nullptr);
            checker->TraceRoute("name.invalid", 1, OnTraceRoute, 3);
            checker->Ping("name.invalid", 1, OnPing, 5, 3);
            checker->Ping("127.0.0.1", 1, OnPing, 1, 3);  // is not held up
            const auto result = WaitForResult(g_ping);
            OnApplicationQuit();
            exit(result && result->number3 == 3 ? 0 : 1);
        },
        [&](int status) {
            code = WEXITSTATUS(status);
            return code == 0 || code == kNoRight;
        },
        "");
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(4)) << "the server is given 10";
    if (code == kNoRight) GTEST_SKIP() << kNeed;
}

}  // namespace
}  // namespace Quern
