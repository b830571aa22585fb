#include "Orvane/OrvaneCore.h"

#include "Support/Test.h"

namespace {

std::string g_calls;

template <char Name>
void Call() {
    g_calls += Name;
}
// Registers another in the middle of a run.
template <char Name, void (*Other)()>
void Add() {
    g_calls += Name;
    AddApplicationQuitCallback(Other);
}
void Returns() {
    Add<'r', Returns>();
}

TEST(QuitCallbacks, RunInOrderOfFirstRegistrationAndTheListIsEmptyAfterARun) {
    const struct {
        std::vector<void (*)()> registered;
        const char *calls, *again;  // of two runs
    } kRuns[] = {
        {{nullptr, Call<'2'>, Call<'1'>, Call<'2'>}, "21", ""},
        {{Call<'1'>, Add<'a', Call<'2'>>}, "1a2", ""},  // in the same pass
        {{Returns, Call<'1'>}, "r1r", "rr"},            // its turn was over: once more, and then in the next run
    };
    for (const auto& run : kRuns) {
        for (auto* const callback : run.registered)
            AddApplicationQuitCallback(callback);
        for (const char* calls : {run.calls, run.again}) {
            OnApplicationQuit();
            EXPECT_EQ(std::exchange(g_calls, ""), calls);
        }
    }
}

std::atomic<int> g_runs[4];
template <int Number>
void Counts() {
    ++g_runs[Number];
}

TEST(QuitCallbacks, AreTakenFromAnyThreadDuringARun) {
    constexpr int kRounds = 20000;
    constexpr void (*kCounts[])() = {Counts<0>, Counts<1>, Counts<2>, Counts<3>};
    std::atomic<int> done{0};
    std::vector<std::jthread> threads;
    for (auto* const callback : kCounts) {
        threads.emplace_back([&, callback] {
            for (int round = 0; round < kRounds; ++round)
                AddApplicationQuitCallback(callback);
            ++done;
        });
    }
    while (done < 4)
        OnApplicationQuit();
    threads.clear();
    OnApplicationQuit();
    for (const auto& runs : g_runs)
        EXPECT_GE(runs, 1);
}

}  // namespace
