#include "System/Thread/SelectorManager.h"

#include "Support/Test.h"
#include "System/Thread/TargetBase.h"

namespace Quern {
namespace {

std::vector<intptr_t>* g_called;

void* Word(intptr_t value) {
    return reinterpret_cast<void*>(value);
}
intptr_t Value(void* word) {
    return reinterpret_cast<intptr_t>(word);
}

void Note(std::initializer_list<intptr_t> what) {
    g_called->insert(g_called->end(), what);
}

class Target : public CTargetBase {
public:
    Target() : CTargetBase(false) {}
    void Member0() { g_called->push_back(0); }
    void Member1(void* a) { Note({1, Value(a)}); }
    void Member2(void* a, void* b) { Note({2, Value(a), Value(b)}); }
    void Member3(void* a, void* b, void* c) { Note({3, Value(a), Value(b), Value(c)}); }
    void Number(void* a) { g_called->push_back(Value(a)); }
};

template <typename... Arguments>
auto Member(void (Target::*member)(Arguments...)) {
    return static_cast<void (CTargetBase::*)(Arguments...)>(member);
}

class SelectorTest : public testing::Test {
protected:
    SelectorTest() { g_called = &called; }

    CAFunctionSelector Number(intptr_t number) {
        CAFunctionSelector selector;
        selector.Set(&target, Member(&Target::Number), Word(number));
        return selector;
    }
    std::vector<intptr_t> Perform(const CAFunctionSelector& selector) {
        called.clear();
        selector.Perform();
        return called;
    }

    std::vector<intptr_t> called;
    Target target;
};

TEST_F(SelectorTest, PerformsTheFirstThatIsSet) {
    CAFunctionSelector selector;
    EXPECT_THAT(Perform(selector), ElementsAre());
    selector.arguments[0] = Word(7);
    selector.arguments[1] = Word(8);
    selector.arguments[2] = Word(9);
    selector.function3 = [](void* a, void* b, void* c) { Note({103, Value(a), Value(b), Value(c)}); };
    EXPECT_THAT(Perform(selector), ElementsAre(103, 7, 8, 9));
    selector.function2 = [](void* a, void* b) { Note({102, Value(a), Value(b)}); };
    EXPECT_THAT(Perform(selector), ElementsAre(102, 7, 8));
    selector.function1 = [](void* a) { Note({101, Value(a)}); };
    EXPECT_THAT(Perform(selector), ElementsAre(101, 7));
    selector.function0 = [] { Note({100}); };
    EXPECT_THAT(Perform(selector), ElementsAre(100));

    selector.target = &target;
    EXPECT_THAT(Perform(selector), ElementsAre(100)) << "a target without a member leaves it to the functions";
    selector.member3 = Member(&Target::Member3);
    EXPECT_THAT(Perform(selector), ElementsAre(3, 7, 8, 9));
    selector.Set(&target, Member(&Target::Member2), Word(4), Word(5));
    EXPECT_THAT(Perform(selector), ElementsAre(2, 4, 5));
    selector.Set(&target, Member(&Target::Member1), Word(6));
    EXPECT_THAT(Perform(selector), ElementsAre(1, 6));
    selector.Set(&target, Member(&Target::Member0));
    EXPECT_THAT(Perform(selector), ElementsAre(0));
    selector.target = nullptr;
    EXPECT_THAT(Perform(selector), ElementsAre(100));
}

TEST_F(SelectorTest, UpdatePerformsTwentyInOrder) {
    CSelectorManager manager;
    manager.Update();
    for (int i = 0; i < 25; ++i)
        manager.AddSelector(Number(i));
    manager.Update();
    ASSERT_EQ(called.size(), 20u);
    manager.Update();
    ASSERT_EQ(called.size(), 25u);
    for (int i = 0; i < 25; ++i)
        EXPECT_EQ(called[i], i);

    CAFunctionSelector selector = Number(1);
    EXPECT_FALSE(manager.Pop1stSelector(selector));
    EXPECT_EQ(selector.target, &target);
    manager.AddSelector(Number(2));
    EXPECT_TRUE(manager.Pop1stSelector(selector));
    EXPECT_EQ(selector.arguments[0], Word(2));
}

CSelectorManager* g_manager;

// Queues itself again: performed without a lock, against the same limit.
void Requeue(void* number) {
    g_called->push_back(Value(number));
    CAFunctionSelector selector;
    selector.function1 = Requeue;
    selector.arguments[0] = Word(Value(number) + 1);
    g_manager->AddSelector(selector);
}

TEST_F(SelectorTest, WhatASelectorAddsCountsAgainstTheLimit) {
    CSelectorManager manager;
    g_manager = &manager;
    Requeue(Word(0));
    manager.Update();
    EXPECT_EQ(called.size(), 21u);
    manager.Update();
    EXPECT_EQ(called.back(), 40);
}

TEST_F(SelectorTest, ASelectorMayDestroyTheManagerInsideAnUpdateWithinAnother) {
    target.EnableManualUpdate(true);
    ISelectorCollection* const own = target.GetSelectorCollection();
    CAFunctionSelector selector;
    selector.arguments[0] = &target;
    selector.function1 = [](void* object) { static_cast<Target*>(object)->UpdateByManual(); };
    own->AddSelector(selector);
    own->AddSelector(Number(1));
    selector.function1 = [](void* object) { static_cast<Target*>(object)->EnableManualUpdate(false); };
    own->AddSelector(selector);
    own->AddSelector(Number(2));
    target.UpdateByManual();
    EXPECT_FALSE(target.IsManualUpdateEnable());
    EXPECT_THAT(called, ElementsAre(1)) << "neither update goes on";
}

// Two pumps at once lose the order, but nothing else.
TEST_F(SelectorTest, TwoPumpsPerformEachSelectorOnce) {
    static std::atomic<int> performed;
    performed = 0;
    constexpr int kSelectors = 20000;
    auto manager = std::make_unique<CSelectorManager>();
    CAFunctionSelector selector;
    selector.function0 = [] { ++performed; };
    for (int i = 0; i < kSelectors; ++i)
        manager->AddSelector(selector);
    const auto pump = [&] {
        while (performed < kSelectors)
            manager->Update();
    };
    std::thread other(pump);
    pump();
    other.join();
    manager.reset();
    EXPECT_EQ(performed, kSelectors);
}

TEST_F(SelectorTest, ManualUpdateIsSwitched) {
    EXPECT_EQ(target.GetSelectorCollection(), nullptr);
    target.UpdateByManual();
    target.EnableManualUpdate(true);
    ISelectorCollection* const own = target.GetSelectorCollection();
    ASSERT_NE(own, nullptr);
    target.EnableManualUpdate(true);
    EXPECT_EQ(target.GetSelectorCollection(), own);
    own->AddSelector(Number(1));
    target.UpdateByManual();
    EXPECT_THAT(called, ElementsAre(1));
    own->AddSelector(Number(2));
    target.EnableManualUpdate(false);
    target.EnableManualUpdate(true);
    target.UpdateByManual();
    EXPECT_THAT(called, ElementsAre(1));
}

TEST_F(SelectorTest, KeepsTheOrderOfEachThreadThatPosts) {
    constexpr intptr_t kThreads = 4;
    constexpr intptr_t kEach = 250000;
    CSelectorManager manager;
    called.reserve(kThreads * kEach);
    const OrvaneTest::Threads threads(kThreads, [&](int thread) {
        for (intptr_t i = 0; i < kEach; ++i)
            manager.AddSelector(Number(i * kThreads + thread));
    });
    while (called.size() < kThreads * kEach)
        manager.Update();
    std::vector<intptr_t> next(kThreads, 0);
    for (const intptr_t number : called)
        ASSERT_EQ(number / kThreads, next[number % kThreads]++);
}

}  // namespace
}  // namespace Quern
