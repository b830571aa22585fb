// The selector pump against the plainest thing that does its work: a mutex around a deque of functions.

#include <benchmark/benchmark.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

#include "Support/Ratio.h"
#include "Support/Ratios.h"
#include "System/Thread/SelectorManager.h"
#include "System/Thread/TargetBase.h"

namespace {

class Counter : public Quern::CTargetBase {
public:
    Counter() : CTargetBase(false) {}
    void Add(void* number) { sum += reinterpret_cast<intptr_t>(number); }
    intptr_t sum = 0;
};

class FunctionQueue {
public:
    void Post(std::function<void()> function) {
        const std::lock_guard guard(_mutex);
        _functions.push_back(std::move(function));
    }
    void Update() {
        for (;;) {
            std::function<void()> function;
            {
                const std::lock_guard guard(_mutex);
                if (_functions.empty()) return;
                function = std::move(_functions.front());
                _functions.pop_front();
            }
            function();
        }
    }

private:
    std::mutex _mutex;
    std::deque<std::function<void()>> _functions;
};

// `state.range(0)` posts, then one update.
void Pump(benchmark::State& state) {
    Quern::CSelectorManager manager;
    Counter counter;
    const auto member = static_cast<void (Quern::CTargetBase::*)(void*)>(&Counter::Add);
    for (auto _ : state) {
        for (intptr_t i = 0; i < state.range(0); ++i) {
            Quern::CAFunctionSelector selector;
            selector.Set(&counter, member, reinterpret_cast<void*>(i));
            manager.AddSelector(selector);
        }
        manager.Update();
    }
    benchmark::DoNotOptimize(counter.sum);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

void Peer(benchmark::State& state) {
    FunctionQueue queue;
    Counter counter;
    Counter* const target = &counter;
    for (auto _ : state) {
        for (intptr_t i = 0; i < state.range(0); ++i)
            queue.Post([target, i] { target->Add(reinterpret_cast<void*>(i)); });
        queue.Update();
    }
    benchmark::DoNotOptimize(counter.sum);
    state.SetItemsProcessed(state.iterations() * state.range(0));
}

constexpr intptr_t kThreads = 4;
constexpr intptr_t kPosts = 250000;  // of each thread

// Sees to it that what one thread posted comes in that thread's order.
class OrderKeeper : public Quern::CTargetBase {
public:
    OrderKeeper() : CTargetBase(false) {}
    void Take(void* thread, void* number) {
        intptr_t& next = _next[reinterpret_cast<intptr_t>(thread)];
        kept = kept && reinterpret_cast<intptr_t>(number) == next;
        ++next;
        ++taken;
    }
    bool kept = true;
    intptr_t taken = 0;

private:
    intptr_t _next[kThreads] = {};
};

// A million posts from four threads, performed meanwhile. Returns the processor time of it all, in milliseconds.
template <typename Post, typename Update>
double FromFour(Post post, Update update) {
    const clock_t begin = clock();
    OrderKeeper keeper;
    std::vector<std::thread> threads;
    for (intptr_t thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([&, thread] {
            for (intptr_t number = 0; number < kPosts; ++number)
                post(keeper, reinterpret_cast<void*>(thread), reinterpret_cast<void*>(number));
        });
    }
    while (keeper.taken < kThreads * kPosts)
        update();
    for (std::thread& thread : threads)
        thread.join();
    if (!keeper.kept) std::puts("the order of a thread's posts was not kept");
    return static_cast<double>(clock() - begin) * 1000 / CLOCKS_PER_SEC;
}

double PumpFromFour() {
    Quern::CSelectorManager manager;
    const auto member = static_cast<void (Quern::CTargetBase::*)(void*, void*)>(&OrderKeeper::Take);
    return FromFour(
        [&](OrderKeeper& keeper, void* thread, void* number) {
            Quern::CAFunctionSelector selector;
            selector.Set(&keeper, member, thread, number);
            manager.AddSelector(selector);
        },
        [&] { manager.Update(); });
}

double PeerFromFour() {
    FunctionQueue queue;
    return FromFour(
        [&](OrderKeeper& keeper, void* thread, void* number) {
            OrderKeeper* const target = &keeper;
            queue.Post([=] { target->Take(thread, number); });
        },
        [&] { queue.Update(); });
}

// How the threads meet differs from round to round, so a single round says little: rounds of both in turn, and how the
// ratios of neighbours spread.
void CompareFromFour() {
    constexpr size_t kRounds = 20;
    std::vector<double> ours, peers, ratios;
    PumpFromFour();
    PeerFromFour();
    for (size_t round = 0; round < kRounds; ++round) {
        ours.push_back(PumpFromFour());
        peers.push_back(PeerFromFour());
        ratios.push_back(ours.back() / peers.back());
    }
    std::sort(ratios.begin(), ratios.end());
    std::printf(
        "a million posts from four threads, 20 rounds: %.0f ms, peer %.0f ms (medians)\n"
        "ratio: median %.2f (wanted 1.5), 90th percentile %.2f (wanted 2), worst %.2f\n",
        Orvane::Bench::Median(ours), Orvane::Bench::Median(peers), Orvane::Bench::Median(ratios),
        ratios[kRounds * 9 / 10 - 1], ratios.back());
}

BENCHMARK(Pump)->Arg(1)->Arg(20);
BENCHMARK(Peer)->Arg(1)->Arg(20);

}  // namespace

int main(int argc, char** argv) {
    // The C library leaves the atomic steps of a lock out of a process with a single thread, and no game is that.
    std::thread([] { pause(); }).detach();
    CompareFromFour();
    return Orvane::Benchmarks::RunWithRatios(argc, argv, {{"Pump/1", "Peer/1"}, {"Pump/20", "Peer/20"}});
}
