// What the client does by the clock, in real time, so in one lane alone.
#include "Base/Configure/ConfigureFixture.h"

namespace OrvaneTest {
namespace {

using Clock = std::chrono::steady_clock;
using testing::Contains;

class ConfigureTimerTest : public ConfigureFixture {
protected:
    // Waits until the proxy has been connected to so often. A moment just before it was.
    Clock::time_point Connected(int count) {
        Clock::time_point before;
        EXPECT_TRUE(WaitFor([&] {
            const Clock::time_point now = Clock::now();
            if (proxy.Connections() >= count) return true;
            before = now;
            return false;
        }));
        return before;
    }
};

TEST_F(ConfigureTimerTest, AFailureIsRepeatedUntilTheBudgetIsSpentAndReportedOnce) {
    Journal journal;
    FakePell pell(&journal);
    UseRetries(2);
    proxy.Use({Fault::kReset});
    Client().StartOnce();
    Clock::time_point beforeFailure = Connected(1);
    for (const int connections : {2, 3}) {
        ASSERT_TRUE(WaitForState(kFailed));
        const Clock::time_point failed = Clock::now();
        const Clock::time_point before = Connected(connections), now = Clock::now();
        EXPECT_GE(now - beforeFailure, std::chrono::seconds(10));
        EXPECT_LE(now - failed, std::chrono::milliseconds(11200));
        beforeFailure = before;
    }
    ASSERT_TRUE(WaitForState(kFailed));
    EXPECT_THAT(journal, Contains("create 2000 PullConfigResult").Times(1));
    EXPECT_THAT(journal, testing::IsSupersetOf({"add 30001=5", "add 30003=2", "report"}));
    EXPECT_FALSE(WaitFor([&] { return proxy.Connections() > 3; }, std::chrono::seconds(12)));
    // With a whole budget again; and what is asked meanwhile leaves the retry as it is.
    Client().OnNetworkStateChanged(Quern::kANetworkReachableViaWWAN);
    EXPECT_TRUE(WaitFor([&] { return proxy.Connections() > 3; }, std::chrono::seconds(2)));
    ASSERT_TRUE(WaitForState(kFailed));
    const size_t asked = server.Asked();
    proxy.Use({});
    Client().OnNetworkStateChanged(Quern::kANetworkReachableViaWWAN);
    ASSERT_TRUE(WaitForState(kFinished));
    EXPECT_EQ(server.Asked(), asked + 1);
    EXPECT_TRUE(WaitForAsked(asked + 2, std::chrono::milliseconds(11200)));
}

TEST_F(ConfigureTimerTest, TheGapRepeatsFetchesAndOneSchedule) {
    manifest.Set("OrvaneCore", "RemoteConfigNextGap", FakeInfoDictionary::Integer(3));
    for (int start = 0; start < 2; ++start) {
        Client().Start();
        ASSERT_TRUE(WaitForState(kFinished));
    }
    const size_t asked = server.Asked();
    std::this_thread::sleep_for(std::chrono::seconds(10));
    EXPECT_GE(server.Asked(), asked + 2);
    EXPECT_LE(server.Asked(), asked + 3);
}

}  // namespace
}  // namespace OrvaneTest
