#include <pthread.h>

#include "Support/Test.h"
#include "System/Thread/Atomic.h"
#include "System/Thread/Condition.h"
#include "System/Thread/ThreadName.h"

namespace Quern {
namespace {

using namespace OrvaneTest;

// Threads that each do one thing and count when they have done it.
class Waiters {
public:
    template <typename Wait>
    void Add(Wait wait) {
        std::atomic<pid_t> id{0};
        _threads.emplace_back([this, wait, &id] {
            id = gettid();
            wait();
            ++_released;
        });
        ASSERT_TRUE(WaitFor([&] { return id != 0; }));
        ASSERT_TRUE(WaitUntilAsleep(id));
    }
    bool Released(int count) {
        return WaitFor([&] { return _released == count; });
    }
    int Count() const { return _released; }
    ~Waiters() {
        for (std::thread& thread : _threads)
            thread.join();
    }

private:
    std::atomic<int> _released{0};
    std::vector<std::thread> _threads;
};

TEST(Critical, LocksForItsScopeAndAllowsNull) {
    const CCritical nothing(nullptr);
    CMutex recursive(true);
    Waiters waiters;
    {
        const CCritical outer(&recursive);
        const CCritical inner(&recursive);
        waiters.Add([&] { const CCritical guard(&recursive); });
        EXPECT_EQ(waiters.Count(), 0);
    }
    EXPECT_TRUE(waiters.Released(1));
}

TEST(Event, HasNoMemory) {
    CEvent event;
    event.Set();
    Waiters waiters;
    waiters.Add([&] { event.Wait(); });
    waiters.Add([&] { event.Wait(); });
    event.Reset();
    EXPECT_EQ(waiters.Count(), 0) << "an earlier Set must not release a later Wait";
    event.Set();
    EXPECT_TRUE(waiters.Released(2));
}

TEST(Condition, WakesOneOrAll) {
    CMutex mutex(false);
    CCondition locking(&mutex, true);
    Waiters waiters;
    for (int i = 0; i < 3; ++i)
        waiters.Add([&] { locking.Wait(); });
    locking.WakeUp();
    EXPECT_TRUE(waiters.Released(1));
    locking.Set();
    EXPECT_TRUE(waiters.Released(3));

    CCondition plain(&mutex, false);
    waiters.Add([&] {
        const CCritical guard(&mutex);
        plain.Wait();
    });
    plain.WakeUp();
    EXPECT_TRUE(waiters.Released(4));
}

TEST(Condition, WaitsForItsTimeOrNotAtAllWithoutMutex) {
    CCondition none(nullptr, true);
    none.Wait();
    none.TimeWait(1000000);

    CMutex mutex(false);
    CCondition condition(&mutex, false);
    const auto begin = std::chrono::steady_clock::now();
    condition.TimeWait(1100);  // carries nanoseconds into seconds, most of the time
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(1090));

    Waiters waiters;
    waiters.Add([&] { condition.TimeWait(60000); });
    condition.Set();
    EXPECT_TRUE(waiters.Released(1));
}

TEST(ThreadName, IsCutForTheKernelOnly) {
    std::thread([] {
        EXPECT_STREQ(get_thread_name(), "");
        set_thread_name("OperationQueue.ThreadManager");
        set_thread_name(nullptr);
        EXPECT_STREQ(get_thread_name(), "OperationQueue.ThreadManager");
        char kernel[64];
        ASSERT_EQ(pthread_getname_np(pthread_self(), kernel, sizeof kernel), 0);
        EXPECT_STREQ(kernel, "OperationQueue.");
    }).join();
    EXPECT_STREQ(get_thread_name(), "");
}

}  // namespace
}  // namespace Quern
