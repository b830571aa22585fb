// What the client does by the clock, in real time, so in one lane alone.
#include "Base/Configure/ConfigureFixture.h"

namespace OrvaneTest {
namespace {

using Clock = std::chrono::steady_clock;
using testing::Contains;
using testing::HasSubstr;

class ConfigureTimerTest : public ConfigureFixture {
protected:
    void UseRetries(int count) {
        manifest.Set("OrvaneCore", "RemoteConfigMaxRetryCount", FakeInfoDictionary::Integer(count));
    }
    // Seconds until the proxy has been connected to so often.
    double SecondsUntilConnected(int count, std::chrono::seconds deadline = std::chrono::seconds(15)) {
        const auto begin = Clock::now();
        EXPECT_TRUE(WaitFor([&] { return proxy.Connections() >= count; }, deadline));
        return std::chrono::duration<double>(Clock::now() - begin).count();
    }
};

TEST_F(ConfigureTimerTest, AFailureIsRepeatedUntilTheBudgetIsSpentAndReportedOnce) {
    Journal journal;
    FakePell pell(&journal);
    UseRetries(2);
    proxy.Use({Fault::kReset});
    Client().StartOnce();
    SecondsUntilConnected(1);
    for (const int connections : {2, 3}) {
        ASSERT_TRUE(WaitForState(kFailed));
        const double seconds = SecondsUntilConnected(connections);
        EXPECT_GT(seconds, 9.5);
        EXPECT_LT(seconds, 11.5);
    }
    ASSERT_TRUE(WaitForState(kFailed));
    EXPECT_THAT(journal, Contains("create 2000 PullConfigResult").Times(1));
    EXPECT_THAT(journal, testing::IsSupersetOf({"add 30001=5", "add 30003=2", "report"}));
    EXPECT_FALSE(WaitFor([&] { return proxy.Connections() > 3; }, std::chrono::seconds(12)));
    Client().OnNetworkStateChanged(Quern::kANetworkReachableViaWWAN);
    EXPECT_LT(SecondsUntilConnected(4), 2);
    ASSERT_TRUE(WaitForState(kFailed));
    SecondsUntilConnected(5);  // with a whole budget
}

TEST_F(ConfigureTimerTest, TheGapRepeatsFetchesAndOneSchedule) {
    manifest.Set("OrvaneCore", "RemoteConfigNextGap", FakeInfoDictionary::Integer(3));
    Client().Start();
    Client().Start();
    std::this_thread::sleep_for(std::chrono::seconds(10));
    EXPECT_GE(server.Asked(), 3u);
    EXPECT_LE(server.Asked(), 5u);
}

TEST_F(ConfigureTimerTest, ARetryThatMeetsAClearedUrlAsksNobody) {
    UseRetries(3);
    proxy.Use({Fault::kReset});
    Client().StartOnce();
    ASSERT_TRUE(WaitForState(kFailed));
    Client().Clear();
    std::this_thread::sleep_for(std::chrono::seconds(12));
    EXPECT_EQ(proxy.Connections(), 1);
    EXPECT_THAT(Lines(), Contains(HasSubstr("because of empty url!")));
}

}  // namespace
}  // namespace OrvaneTest
