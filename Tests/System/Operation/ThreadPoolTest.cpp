#include "System/Operation/ThreadPool.h"

#include "Support/Test.h"
#include "System/Operation/Gate.h"
#include "System/Thread/ThreadName.h"

namespace Quern {
namespace {

using namespace OrvaneTest;

class ThreadPoolTest : public testing::Test {
protected:
    static bool WaitForIdle(const ThreadPool& pool, int count) {
        return WaitFor([&] { return pool.getIdleThreadNum() == count; });
    }
    // Occupies as many workers as tasks.
    void Occupy(ThreadPool& pool, Gate& gate, int tasks) {
        const int before = gate.Entered();
        for (int i = 0; i < tasks; ++i) {
            pool.pushTask([&gate](int) { gate.Pass(); }, 0);
            ASSERT_TRUE(gate.WaitForEntered(before + i + 1));
        }
    }

    // Pushes a task and waits until it has run.
    static void RunOne(ThreadPool& pool) {
        const auto ran = std::make_shared<std::atomic<bool>>(false);
        pool.pushTask([ran](int) { *ran = true; }, 0);
        ASSERT_TRUE(WaitFor([&] { return ran->load(); }));
    }

    CapturedConsole console;
};

TEST_F(ThreadPoolTest, RaisesItsMaximumToItsMinimum) {
    std::mutex mutex;
    std::set<std::pair<int, std::string>> workers;
    Gate gate;
    ThreadPool pool(5, 2);
    EXPECT_EQ(pool.getCurrentSize(), 5);
    ASSERT_TRUE(WaitForIdle(pool, 5));
    for (int i = 0; i < 5; ++i) {
        pool.pushTask(
            [&](int slot) {
                {
                    const std::lock_guard guard(mutex);
                    workers.emplace(slot, get_thread_name());
                }
                gate.Pass();
            },
            0);
    }
    ASSERT_TRUE(gate.WaitForEntered(5));
    std::set<std::pair<int, std::string>> expected;
    for (int slot = 0; slot < 5; ++slot)
        expected.emplace(slot, "OrvThreadPool-" + std::to_string(slot));
    EXPECT_EQ(workers, expected);
    pool.joinThread(5);
    pool.joinThread(-1);
    EXPECT_EQ(console.Count("Invalid thread id 5"), 1);
    EXPECT_EQ(console.Count("Invalid thread id -1"), 1);
    gate.Open();
}

TEST_F(ThreadPoolTest, StretchesWhenNobodyIsIdle) {
    Gate gate;
    const std::unique_ptr<ThreadPool> pool(ThreadPool::newCachedThreadPool(1, 3, 5, 2, 1));
    ASSERT_TRUE(WaitForIdle(*pool, 1));
    Occupy(*pool, gate, 1);
    EXPECT_EQ(pool->getCurrentSize(), 1) << "somebody was idle";
    Occupy(*pool, gate, 1);
    EXPECT_EQ(pool->getCurrentSize(), 2);
    EXPECT_EQ(console.Count("stretch pool from 1 to 2, waste "), 1);
    Occupy(*pool, gate, 1);
    const int lines = console.Count();
    pool->pushTask([&](int) { gate.Pass(); }, 0);
    EXPECT_EQ(pool->getCurrentSize(), 3);
    EXPECT_EQ(pool->getTaskNum(), 1);
    EXPECT_EQ(console.Count(), lines) << "with no free slot the task merely waits";
    gate.Open();
    EXPECT_TRUE(gate.WaitForEntered(4));
}

TEST_F(ThreadPoolTest, ShrinksAtAPushByItsStepDownToItsMinimum) {
    Gate gate, again;
    ThreadPool pool(3, 6);
    pool.setShrinkStep(0);
    pool.setStretchStep(0);
    pool.setShrinkInterval(-1);
    ASSERT_TRUE(WaitForIdle(pool, 3));
    Occupy(pool, gate, 4);
    EXPECT_EQ(pool.getCurrentSize(), 5) << "the stretch step stays at 2";
    Occupy(pool, gate, 2);
    EXPECT_EQ(pool.getCurrentSize(), 6) << "as many as there are slots";
    gate.Open();
    ASSERT_TRUE(WaitForIdle(pool, 6));

    RunOne(pool);
    EXPECT_EQ(pool.getCurrentSize(), 6) << "5 s have not passed";
    ASSERT_TRUE(WaitForIdle(pool, 6));
    pool.setShrinkInterval(0);
    RunOne(pool);
    EXPECT_EQ(pool.getCurrentSize(), 4) << "the shrink step stays at 2";
    EXPECT_EQ(console.Count("shrink pool, _idleThreadNum = 6"), 1);
    EXPECT_EQ(console.Count("shrink 2 threads, waste: "), 1);
    ASSERT_TRUE(WaitForIdle(pool, 4));
    RunOne(pool);
    EXPECT_EQ(pool.getCurrentSize(), 3);
    ASSERT_TRUE(WaitForIdle(pool, 3));
    RunOne(pool);
    EXPECT_EQ(pool.getCurrentSize(), 3);

    Occupy(pool, again, 4);
    EXPECT_EQ(pool.getCurrentSize(), 5) << "a slot can be used again";
    again.Open();
}

TEST_F(ThreadPoolTest, FixedPoolsKeepTheirSize) {
    Gate gate;
    const std::unique_ptr<ThreadPool> pool(ThreadPool::newSingleThreadPool());
    Occupy(*pool, gate, 1);
    pool->pushTask([&](int) { gate.Pass(); }, 0);
    EXPECT_EQ(pool->getCurrentSize(), 1);
    gate.Open();
    EXPECT_TRUE(gate.WaitForEntered(2));
    const std::unique_ptr<ThreadPool> two(ThreadPool::newFixedThreadPool(2));
    EXPECT_EQ(two->getCurrentSize(), 2);
}

TEST_F(ThreadPoolTest, StopRunsWhatIsQueuedAndDropsOnRequest) {
    Gate gate;
    ThreadPool pool(1, 1);
    pool.setFixedSize(true);
    Occupy(pool, gate, 1);
    std::vector<int> ran;
    const auto kept = std::make_shared<int>(0);
    const auto push = [&](int number, ThreadPool::TaskType type) {
        pool.pushTask([&ran, number, kept](int) { ran.push_back(number); }, type);
    };
    push(1, 7);
    push(2, 8);
    push(3, 7);
    push(4, 0);
    pool.stopTasksByType(7);
    EXPECT_EQ(kept.use_count(), 3) << "dropped tasks free what they hold";
    pool.stopTasksByType(9);
    EXPECT_EQ(pool.getTaskNum(), 2);
    std::thread([&] { gate.Open(); }).detach();
    pool.stop();
    EXPECT_THAT(ran, ElementsAre(2, 4));
    EXPECT_EQ(pool.getCurrentSize(), 0);
    EXPECT_EQ(kept.use_count(), 1);
    pool.stop();
    pool.joinThread(0);
    EXPECT_EQ(console.Count("Invalid thread id 0"), 1);

    push(5, 0);
    EXPECT_EQ(pool.getTaskNum(), 1) << "nothing runs it";
    pool.stopAllTasks();
    EXPECT_EQ(pool.getTaskNum(), 0);
    EXPECT_EQ(kept.use_count(), 1);
    EXPECT_THAT(ran, ElementsAre(2, 4));
}

TEST_F(ThreadPoolTest, TasksThatAStopKeepsAreRunThoughAllWorkersSleep) {
    Gate gate;
    ThreadPool pool(1, 1);
    Occupy(pool, gate, 1);
    std::atomic<bool> ran{false};
    pool.pushTask([&](int) { ran = true; }, 1);
    // Dropped while the other is out of the queue: the worker finds nothing, and sleeps.
    std::shared_ptr<int> dropped(new int, [&](const int* number) {
        delete number;
        gate.Open();
        EXPECT_TRUE(WaitForIdle(pool, 1));
    });
    pool.pushTask([held = std::move(dropped)](int) {}, 7);
    pool.stopTasksByType(7);
    EXPECT_TRUE(WaitFor([&] { return ran.load(); }));
}

TEST_F(ThreadPoolTest, TheDefaultPoolIsShared) {
    ThreadPool* const pool = ThreadPool::getDefaultThreadPool();
    EXPECT_EQ(ThreadPool::getDefaultThreadPool(), pool);
    EXPECT_EQ(pool->getCurrentSize(), 4);
    ThreadPool::destroyDefaultThreadPool();
    ThreadPool::destroyDefaultThreadPool();
    EXPECT_EQ(ThreadPool::getDefaultThreadPool()->getCurrentSize(), 4);
    ThreadPool::destroyDefaultThreadPool();
}

TEST_F(ThreadPoolTest, TakesAMillionTasksFromManyThreads) {
    constexpr int kThreads = 8;
    constexpr int kEach = 125000;
    std::atomic<int> ran{0};
    {
        ThreadPool pool(1, 6);
        pool.setShrinkInterval(0);
        Threads(kThreads, [&](int) {
            std::atomic<int> left{0};
            for (int i = 1; i <= kEach; ++i) {
                ++left;
                pool.pushTask([&](int) { ++ran, --left; }, 0);
                // Now and then lets the pool run dry, so that the next pushes find idle workers.
                if (i % 500 == 0 || i == kEach) WaitFor([&] { return left == 0; });
            }
        }).Join();
        EXPECT_GE(pool.getCurrentSize(), 1);
        EXPECT_LE(pool.getCurrentSize(), 6);
    }
    EXPECT_EQ(ran, kThreads * kEach);
    EXPECT_GT(console.Count("shrink pool"), 0);
    EXPECT_GT(console.Count("stretch pool"), 0);
}

// A task that pushes sends idle workers away while the end of the pool waits for all of them.
TEST_F(ThreadPoolTest, EndsWhileItsTasksPush) {
    constexpr int kPools = 100;
    std::atomic<int> ran{0};
    for (int i = 0; i < kPools; ++i) {
        Gate gate;
        ThreadPool pool(1, 4);
        Occupy(pool, gate, 4);
        gate.Open();
        ASSERT_TRUE(WaitForIdle(pool, 4));
        pool.setShrinkInterval(0);
        pool.setShrinkStep(1);
        pool.pushTask(
            [&](int) {
                for (int j = 0; j < 3; ++j)
                    pool.pushTask([&](int) { ++ran; }, 0);
            },
            0);
    }
    EXPECT_EQ(ran, kPools * 3);
    EXPECT_GT(console.Count("shrink pool"), kPools) << "not by the first push alone";
}

}  // namespace
}  // namespace Quern
