#include "System/Application/PerformSelector.h"

#include "Orvane/OrvaneCore.h"
#include "Support/Test.h"
#include "System/Application/MainRunLoop.h"
#include "System/Thread/TargetBase.h"

namespace Quern {
namespace {

class Target : public CTargetBase {
public:
    explicit Target(bool manualUpdate = false) : CTargetBase(manualUpdate) {}

    void One(void* a) { calls.push_back(reinterpret_cast<intptr_t>(a)); }
    void Two(void* a, void* b) { calls.push_back(reinterpret_cast<intptr_t>(a) * 10 + reinterpret_cast<intptr_t>(b)); }

    std::vector<intptr_t> calls;
};

constexpr auto kOne = static_cast<void (CTargetBase::*)(void*)>(&Target::One);
constexpr auto kTwo = static_cast<void (CTargetBase::*)(void*, void*)>(&Target::Two);

void* Word(intptr_t value) {
    return reinterpret_cast<void*>(value);
}

TEST(PerformSelector, GoesToTheMainRunLoopAtFirst) {
    Target target;
    std::thread([&] {
        PerformSelectorOnUIThread(&target, kOne, Word(1));
        PerformSelectorOnUIThread(&target, kTwo, Word(2), Word(3));
        PerformSelectorOnUIThread(nullptr);
        PerformSelectorOnMainThread(nullptr);
    }).join();
    Quern_UpdateUIThread();
    EXPECT_THAT(target.calls, ElementsAre());
    MainRunLoop::Current().RunPending();
    EXPECT_THAT(target.calls, ElementsAre(1, 23));

    PerformSelectorOnUIThread(&target, kOne, Word(4));
    Quern_IgnoreUIThread(&target);
    PerformSelectorOnUIThread(&target, kOne, Word(5));
    EXPECT_EQ(target.calls.size(), 2u) << "also from the main thread it waits for the loop";
    MainRunLoop::Current().RunPending();
    EXPECT_THAT(target.calls, ElementsAre(1, 23, 5));
}

TEST(PerformSelector, EachPerformDrainsTwenty) {
    Target target;
    CAFunctionSelector selector;
    selector.Set(&target, kOne, Word(1));
    for (int i = 0; i < 25; ++i)
        GetMainSelectorManger()->AddSelector(selector);
    PerformSelectorOnMainThread(&selector);
    MainRunLoop::Current().RunPending();
    EXPECT_EQ(target.calls.size(), 20u);
    QuernPerformSelectorOnMainThread(nullptr);
    MainRunLoop::Current().RunPending();
    EXPECT_EQ(target.calls.size(), 26u);
}

// Finds out whether the thread that posted the call rests until it is over.
struct Waiter : CTargetBase {
    Waiter() : CTargetBase(false) {}
    void LookAtPoster() { posterSlept = OrvaneTest::WaitUntilAsleep(poster) && !returned; }
    std::atomic<pid_t> poster{0};
    std::atomic<bool> returned{false};
    bool posterSlept = false;
};

TEST(PerformSelector, WaitsForASelectorUsedInPlace) {
    Target target;
    CAFunctionSelector selector;
    selector.Set(&target, kOne, Word(1));
    QuernPerformSelectorOnMainThread(&selector);
    EXPECT_THAT(target.calls, ElementsAre(1)) << "at once on the main thread";

    Waiter waiter;
    std::thread poster([&] {
        waiter.poster = gettid();
        CAFunctionSelector local;
        local.Set(&waiter, static_cast<void (CTargetBase::*)()>(&Waiter::LookAtPoster));
        QuernPerformSelectorOnMainThread(&local);
        waiter.returned = true;
        MainRunLoop::Current().Stop();
    });
    EXPECT_TRUE(MainRunLoop::Current().Run());
    poster.join();
    EXPECT_TRUE(waiter.posterSlept);
}

TEST(PerformSelector, GoesToTheEngineOnceItAsked) {
    Target target, other;
    EXPECT_EQ(Quern_IsManualUpdate(), 0);
    PerformSelectorOnUIThread(&other, kOne, Word(0));
    quern_target_unity_enable_ui_update();
    EXPECT_EQ(Quern_IsManualUpdate(), 1);
    Quern_UpdateUIThread();
    Quern_IgnoreUIThread(&target);
    Quern_EndUIThread();

    PerformSelectorOnUIThread(&target, kOne, Word(1));
    PerformSelectorOnUIThread(&other, kOne, Word(2));
    PerformSelectorOnUIThread(&target, kOne, Word(3));
    Quern_IgnoreUIThread(&other);
    MainRunLoop::Current().RunPending();
    EXPECT_THAT(target.calls, ElementsAre());
    EXPECT_THAT(other.calls, ElementsAre(0)) << "what went to the main run loop before is not the engine's";
    quern_target_unity_update();
    EXPECT_THAT(target.calls, ElementsAre(1, 3));
    EXPECT_THAT(other.calls, ElementsAre(0));

    PerformSelectorOnUIThread(&target, kOne, Word(4));
    Quern_EndUIThread();
    Quern_UpdateUIThread();
    PerformSelectorOnUIThread(&target, kOne, Word(5));
    Quern_UpdateUIThread();
    EXPECT_THAT(target.calls, ElementsAre(1, 3, 5)) << "lost with the pump, which comes back at the next call";

    CAFunctionSelector selector;
    selector.Set(&target, kOne, Word(6));
    PerformSelectorOnMainThread(&selector);
    Quern_RemoveTargetFromMainThread(&target);
    MainRunLoop::Current().RunPending();
    EXPECT_EQ(target.calls.back(), 5);
    Quern_EndUIThread();
}

TEST(PerformSelector, AnyThreadMayPostWhileThePumpIsEnded) {
    constexpr int kThreads = 4, kEach = 20000;
    static std::atomic<int> performed;
    Quern_EnableManualUpdate();
    std::atomic<int> left{kThreads};
    OrvaneTest::Threads threads(kThreads, [&](int) {
        CAFunctionSelector selector;
        selector.function0 = [] { ++performed; };
        for (int i = 0; i < kEach; ++i) {
            PerformSelectorOnUIThread(&selector);
            Quern_IgnoreUIThread(&left);
        }
        --left;
    });
    while (left > 0) {
        Quern_UpdateUIThread();
        Quern_EndUIThread();
    }
    threads.Join();
    Quern_EndUIThread();
    EXPECT_LE(performed, kThreads * kEach);
    // A call that ends the pump ends the update too: what it posts behind that waits for the next.
    CAFunctionSelector selector;
    selector.function0 = [] {
        Quern_EndUIThread();
        CAFunctionSelector later;
        later.function0 = [] { performed = -1; };
        PerformSelectorOnUIThread(&later);
    };
    PerformSelectorOnUIThread(&selector);
    Quern_UpdateUIThread();
    EXPECT_GE(performed, 0);
    Quern_UpdateUIThread();
    EXPECT_EQ(performed, -1);
}

TEST(PerformSelector, ATargetsOwnQueueComesFirst) {
    Target target(true);
    Quern_EnableManualUpdate();
    PerformSelectorOnUIThread(&target, kOne, Word(1));
    Quern_UpdateUIThread();
    MainRunLoop::Current().RunPending();
    EXPECT_THAT(target.calls, ElementsAre());
    target.UpdateByManual();
    EXPECT_THAT(target.calls, ElementsAre(1));
}

}  // namespace
}  // namespace Quern
