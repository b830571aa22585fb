#include "Orvane/OrvaneCore.h"

#include "Support/Test.h"

namespace {

std::string g_calls;

void First() {
    g_calls += "1";
}
void Second() {
    g_calls += "2";
}
void AddsSecond() {
    g_calls += "a";
    AddApplicationQuitCallback(Second);
}

TEST(QuitCallbacks, RunOnceInOrderOfFirstRegistration) {
    AddApplicationQuitCallback(nullptr);
    AddApplicationQuitCallback(Second);
    AddApplicationQuitCallback(First);
    AddApplicationQuitCallback(Second);
    OnApplicationQuit();
    EXPECT_EQ(g_calls, "21");
    OnApplicationQuit();
    EXPECT_EQ(g_calls, "21") << "the list is empty after a run";
    AddApplicationQuitCallback(First);
    OnApplicationQuit();
    EXPECT_EQ(g_calls, "211") << "a new list begins";
}

TEST(QuitCallbacks, OneAddedDuringTheRunIsRunInTheSamePass) {
    AddApplicationQuitCallback(First);
    AddApplicationQuitCallback(AddsSecond);
    OnApplicationQuit();
    EXPECT_EQ(g_calls, "1a2");
}

void Returns() {
    g_calls += "r";
    AddApplicationQuitCallback(Returns);
}

TEST(QuitCallbacks, OneWhoseTurnIsOverIsRunOnceMoreAndThenInTheNextRun) {
    AddApplicationQuitCallback(Returns);
    AddApplicationQuitCallback(First);
    OnApplicationQuit();
    EXPECT_EQ(g_calls, "r1r");
    OnApplicationQuit();
    EXPECT_EQ(g_calls, "r1rrr");
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
    std::vector<std::thread> threads;
    for (auto* const callback : kCounts) {
        threads.emplace_back([&, callback] {
            for (int round = 0; round < kRounds; ++round)
                AddApplicationQuitCallback(callback);
            ++done;
        });
    }
    while (done < 4)
        OnApplicationQuit();
    for (std::thread& thread : threads)
        thread.join();
    OnApplicationQuit();
    for (const auto& runs : g_runs)
        EXPECT_GE(runs, 1);
}

}  // namespace
