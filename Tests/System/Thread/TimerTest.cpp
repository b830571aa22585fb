#include "System/Thread/Timer.h"

#include "Support/Test.h"
#include "System/Thread/Sleep.h"

namespace Quern {
namespace {

using namespace OrvaneTest;
using Clock = std::chrono::steady_clock;

// The firings of a timer.
struct Firings {
    static void OnTimer(unsigned int id, void* user) {
        Firings* const self = static_cast<Firings*>(user);
        const std::lock_guard guard(self->mutex);
        self->times.push_back(Clock::now());
        self->ids.push_back(id);
        self->thread = gettid();
        if (self->stopIn) self->stopIn->StopTimer(id);
    }
    size_t Count() {
        const std::lock_guard guard(mutex);
        return times.size();
    }

    std::mutex mutex;
    std::vector<Clock::time_point> times;
    std::vector<unsigned int> ids;
    pid_t thread = 0;
    CTimer* stopIn = nullptr;
};

long long Milliseconds(Clock::duration duration) {
    return std::chrono::duration_cast<std::chrono::milliseconds>(duration).count();
}

TEST(Timer, OneShotFiresOnceAndItsThreadStaysUntilStopped) {
    CTimer timer;
    Firings firings;
    const unsigned int id = timer.StartTimer(3000, false, Firings::OnTimer, &firings);
    const Clock::time_point begin = Clock::now();
    ASSERT_TRUE(WaitFor([&] { return firings.Count() == 1; }));
    EXPECT_GE(Milliseconds(firings.times[0] - begin), 2990);
    EXPECT_LE(Milliseconds(firings.times[0] - begin), 4500);  // due within 4 s; the rest is a loaded machine's
    EXPECT_EQ(firings.ids[0], id);
    EXPECT_NE(firings.thread, gettid());

    SleepMS(2200);
    EXPECT_EQ(firings.Count(), 1u);
    EXPECT_NE(ThreadState(firings.thread), 0);
    timer.StopTimer(id);
    timer.StopTimer(id);
    EXPECT_TRUE(WaitUntilGone(firings.thread));
}

TEST(Timer, RepeatsAtMostOnceASecond) {
    CTimer timer;
    Firings often, never;
    const unsigned int first = timer.StartTimer(10, true, Firings::OnTimer, &often);
    timer.StartTimer(CTimerImp::kNever, true, Firings::OnTimer, &never);
    ASSERT_TRUE(WaitFor([&] { return often.Count() == 4; }));
    for (size_t i = 1; i < 4; ++i)
        EXPECT_GE(Milliseconds(often.times[i] - often.times[i - 1]), 990);
    timer.StopTimer(first);
    ASSERT_TRUE(WaitUntilGone(often.thread));
    EXPECT_LE(often.Count(), 5u);
    EXPECT_EQ(never.Count(), 0u);
}

TEST(Timer, IdsAreSharedByAllAndNeverReused) {
    CTimer one, other;
    const unsigned int first = one.StartTimer(CTimerImp::kNever, false, Firings::OnTimer, nullptr);
    one.StopTimer(first);
    one.StopTimer(0);
    one.StopTimer(12345);
    EXPECT_EQ(first, 1u);
    EXPECT_EQ(other.StartTimer(CTimerImp::kNever, false, Firings::OnTimer, nullptr), 2u);
    other.StopTimer(first);
    EXPECT_EQ(one.StartTimer(CTimerImp::kNever, false, Firings::OnTimer, nullptr), 3u);
}

TEST(Timer, StoppedRightAfterItsStartLeavesNoThread) {
    CTimer timer;
    for (int i = 0; i < 10; ++i)
        timer.StopTimer(timer.StartTimer(CTimerImp::kNever, true, Firings::OnTimer, nullptr));
    EXPECT_TRUE(WaitUntilAllAsleep("CThreadBase", 0));
}

TEST(Timer, MayBeStoppedFromItsOwnCallback) {
    CTimer timer;
    Firings firings;
    firings.stopIn = &timer;
    timer.StartTimer(0, true, Firings::OnTimer, &firings);
    ASSERT_TRUE(WaitFor([&] { return firings.Count() == 1; }));
    ASSERT_TRUE(WaitUntilGone(firings.thread));
    EXPECT_EQ(firings.Count(), 1u);
}

TEST(Timer, DestructionStopsAllAndWaitsForNone) {
    auto timer = std::make_unique<CTimer>();
    Firings firings[3];
    for (Firings& each : firings)
        timer->StartTimer(0, true, Firings::OnTimer, &each);
    for (Firings& each : firings)
        ASSERT_TRUE(WaitFor([&] { return each.Count() >= 1; }));
    const Clock::time_point begin = Clock::now();
    timer.reset();
    EXPECT_LT(Milliseconds(Clock::now() - begin), 500);
    for (Firings& each : firings) {
        ASSERT_TRUE(WaitUntilGone(each.thread));
        EXPECT_LE(each.Count(), 2u);
    }
}

}  // namespace
}  // namespace Quern
