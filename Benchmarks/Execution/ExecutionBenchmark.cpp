// What background work costs: the elastic pool against the simplest pool and against oneTBB, the threaded queue against
// its own floors.

#include <tbb/task_arena.h>
#include <unistd.h>

#include <atomic>
#include <latch>
#include <memory>
#include <mutex>
#include <vector>

#include "Base/ConsoleSink.h"
#include "SimplestPool.h"
#include "Support/Ratio.h"
#include "System/Operation/OperationQueueImp.h"
#include "System/Operation/ThreadPool.h"
#include "System/Thread/Sleep.h"

namespace {

using namespace Orvane::Bench;

constexpr int kWorkers = 3;  // what the pool queue starts with
constexpr int kRounds = 41;
constexpr int kTasks = 20000;
constexpr int kPings = 200;
constexpr int kAdditions = 2000;
constexpr int kManagerPass = 10;  // milliseconds

// Pushes empty tasks behind some that hold the workers, lets go and waits until the last has run. Without the hold it
// would be chance how often a worker falls asleep in between, and that would be all that is measured. Gives the
// seconds.
template <typename Push>
Seconds Flood(Push push) {
    const Seconds begin = Now();
    std::latch start(1);
    std::atomic<int> left{kTasks + kWorkers};
    for (int i = 0; i < kWorkers; ++i) {
        push([&](int) {
            start.wait();
            left.fetch_sub(1, std::memory_order_relaxed);
        });
    }
    for (int i = 0; i < kTasks; ++i)
        push([&left](int) { left.fetch_sub(1, std::memory_order_relaxed); });
    start.count_down();
    while (left.load(std::memory_order_relaxed) > 0)
        std::this_thread::yield();
    return Now() - begin;
}

// Pushes a task into a pool at rest, waits until it has started, and again.
template <typename Push>
void Ping(Push push) {
    for (int i = 0; i < kPings; ++i) {
        std::atomic<bool> started{false};
        push([&started](int) { started.store(true, std::memory_order_release); });
        while (!started.load(std::memory_order_acquire))
            std::this_thread::yield();
    }
}

struct Ours {
    std::unique_ptr<Quern::ThreadPool> pool{Quern::ThreadPool::newCachedThreadPool(kWorkers, kWorkers, 5, 2, 1)};
    template <typename Task>
    void operator()(Task task) {
        pool->pushTask(task, 0);
    }
};

struct Simplest {
    SimplestPool pool{kWorkers};
    template <typename Task>
    void operator()(Task task) {
        pool.Push(task);
    }
};

struct OneTbb {
    tbb::task_arena arena{kWorkers, 0};
    template <typename Task>
    void operator()(Task task) {
        arena.enqueue([task] { task(0); });
    }
};

// Pools of their own in each round: on which processors the threads of a pool have come to run, and so whether they
// get in each other's way, is chance and lasts as long as they do.
template <typename Pool>
double FloodFresh() {
    Pool pool;
    return Flood([&](auto task) { pool(task); }) * 1e9 / kTasks;
}

template <typename Other>
void ComparePools(const char* peer, const char* wanted) {
    std::vector<double> ours, others, ratios;
    for (int round = 0; round < kRounds; ++round) {
        ours.push_back(FloodFresh<Ours>());
        others.push_back(FloodFresh<Other>());
        ratios.push_back(ours.back() / others.back());
    }
    char what[80];
    snprintf(what, sizeof what, "pool, an empty task, against %s", peer);
    Print(what, {Median(ours), Median(others), Median(ratios)}, wanted);

    Ours pool;
    Other other;
    snprintf(what, sizeof what, "pool, from push to start, against %s", peer);
    Print(what,
          Compare(
              kRounds, kPings, [&] { Ping([&](auto task) { pool(task); }); },
              [&] { Ping([&](auto task) { other(task); }); }),
          wanted);
}

// An operation is put aside under one lock; its run is no part of the cost.
class ListUnderALock {
public:
    void Add(Quern::StaticOperation::Function function) {
        const std::lock_guard guard(_mutex);
        _operations.push_back(std::make_unique<Quern::StaticOperation>(function, nullptr, false));
    }

private:
    std::mutex _mutex;
    std::vector<std::unique_ptr<Quern::Operation>> _operations;
};

// From AddOperation to the start, for operations that come at every point of the manager's pass, beside such a pass.
Comparison MeasureLatency(Quern::OperationQueueImp* queue) {
    static std::atomic<bool> started;
    std::vector<double> ours, passes, ratios;
    for (int i = 0; i < 6 * kManagerPass; ++i) {
        Quern::SleepMS(2 * kManagerPass + i % kManagerPass);  // until the worker sleeps again
        started = false;
        const Seconds begin = Now();
        queue->AddOperation([](Quern::Operation*, void*) { started = true; }, nullptr, false);
        while (!started)
            std::this_thread::yield();
        const Seconds middle = Now();
        Quern::SleepMS(kManagerPass);
        ours.push_back((middle - begin) * 1e9);
        passes.push_back((Now() - middle) * 1e9);
        ratios.push_back(ours.back() / passes.back());
    }
    return {Median(ours), Median(passes), Median(ratios)};
}

void MeasureThreadedQueue() {
    Quern::OperationQueueImp* const queue = Quern::OperationQueueImp::GetInstance();
    // Half a pass of the manager, then a worker's rest, which is as long as a pass.
    Print("threaded queue, from AddOperation to start, against one pass", MeasureLatency(queue), "<= 2");

    ListUnderALock list;
    const auto nothing = [](Quern::Operation*, void*) {};
    Print("threaded queue, AddOperation, against a list under a lock",
          Compare(
              kRounds, kAdditions,
              [&] {
                  for (int i = 0; i < kAdditions; ++i)
                      queue->AddOperation(nothing, nullptr, false);
              },
              [&] {
                  for (int i = 0; i < kAdditions; ++i)
                      list.Add(nothing);
              }),
          "shown");
}

class Silence final : public Quern::ConsoleSink {
public:
    void Write(const char*, size_t) override {}
};

}  // namespace

int main() {
    Quern::ConsoleSink::Use(std::make_shared<Silence>());
    printf("%d workers on each side\n", kWorkers);
    PrintHead();
    ComparePools<Simplest>("the simplest pool", "<= 1.25");
    ComparePools<OneTbb>("oneTBB", "shown");
    MeasureThreadedQueue();
    fflush(stdout);
    _exit(0);  // the threaded queue still holds what it has no hurry to run
}
