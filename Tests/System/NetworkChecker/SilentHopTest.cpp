// Traceroutes that wait: each silent hop takes nine seconds, so these run in one lane alone.

#include "Support/NetworkPath.h"
#include "Support/Test.h"
#include "System/NetworkChecker/Traceroute.h"

namespace Quern {
namespace {

using OrvaneTest::NetworkPath;

class SilentHop : public testing::Test {
protected:
    // The addresses of the hops, "-" for a silent one, and whether the target was reached.
    std::string Run(long maxTtl, const char* host = "10.9.3.2") {
        std::string text;
        Traceroute::startTracerouteWithHost_totalTTL_stepCallback_finish(
            host, maxTtl,
            [&](const TracerouteRecord& record) {
                text += record.ip.value_or("-") + " ";
                if (record.ttl == 3) path->dropEvery = 1;
            },
            [&](const auto&, bool succeed) { text += succeed ? "reached" : "not reached"; });
        return text;
    }

    void SetUp() override {
        if (!NetworkPath::Enter()) GTEST_SKIP() << "needs the right to make network namespaces (CAP_SYS_ADMIN)";
        path = std::make_unique<NetworkPath>();
    }

    std::unique_ptr<NetworkPath> path;
};

TEST_F(SilentHop, IsPassed) {
    path->AllowPingSockets(false);
    // What r2 itself has to say does not get out.
    path->Run(NetworkPath::kRouter2, "ip rule add iif lo blackhole");
    // Beside it, one whose first router says that there is no way: no answer either.
    path->Run(NetworkPath::kHere, "ip route add 10.9.4.0/24 via 10.9.1.1");
    path->Run(NetworkPath::kRouter1, "ip route add unreachable 10.9.4.0/24");
    std::thread other([this] { EXPECT_EQ(Run(1, "10.9.4.1"), "- not reached"); });
    EXPECT_EQ(Run(10), "10.9.1.1 - 10.9.3.2 reached");
    other.join();
}

// The target's answers to the third round come in the fourth, of which every probe is dropped.
TEST_F(SilentHop, ItsLateAnswersDoNotCount) {
    path->AllowPingSockets(true);
    path->delay = 4600;
    EXPECT_EQ(Run(4), "10.9.1.1 10.9.2.2 - - not reached");
}

}  // namespace
}  // namespace Quern
