// What both queues promise about the objects that operations run on: who deletes what, and who forgets whom.
#include "System/Operation/OperationQueue.h"

#include "Orvane/OperationQueue.h"
#include "Support/FakeCoreSettings.h"
#include "Support/Test.h"
#include "System/Operation/Gate.h"
#include "System/Operation/OperationQueueImp.h"
#include "System/Operation/OperationQueuePool.h"

namespace Quern {
namespace {

using namespace OrvaneTest;

class OperationQueueTest : public testing::TestWithParam<int> {
protected:
    // One worker, so that what is queued runs one after the other.
    OperationQueueTest() {
        settings.values = {
            {"OperationMode", GetParam()}, {"OperationQueueMinThreadNum", 1}, {"OperationQueueMaxThreadNum", 1}};
        queue = OperationQueue::GetInstance();
    }
    void Block() {
        queue->AddOperation([](Operation*, void* gate) { static_cast<Gate*>(gate)->Pass(); }, &gate, false);
        ASSERT_TRUE(gate.WaitForEntered(1));
    }
    // Until everything that was queued before has run.
    void RunAll() {
        gate.Open();
        static std::atomic<bool> reached;
        reached = false;
        gs_OrvaneAddOperation([](Operation*, void*) { reached = true; }, nullptr, false);
        ASSERT_TRUE(WaitFor([] { return reached.load(); }));
    }

    CapturedConsole console;
    FakeCoreSettings settings;
    OperationQueue* queue;
    Gate gate;
};

struct Counts {
    std::atomic<int> runs{0};
    std::atomic<int> deleted{0};
};

class Target : public OperationTargetBase {
public:
    explicit Target(Counts* counts) : _counts(counts) {}
    ~Target() override { ++_counts->deleted; }
    void DoOperation(ObjectOperation*, void* cancelAt) override {
        if (++_counts->runs == reinterpret_cast<intptr_t>(cancelAt)) Cancel(true);
    }

private:
    Counts* _counts;
};

TEST_P(OperationQueueTest, ATargetEndsItselfFromWithinItsWork) {
    Counts counts;
    queue->AddOperation(new Target(&counts), nullptr, reinterpret_cast<void*>(3), true);
    ASSERT_TRUE(WaitFor([&] { return counts.deleted == 1; }));
    RunAll();
    EXPECT_EQ(counts.runs, 3);
    EXPECT_EQ(counts.deleted, 1);
}

TEST_P(OperationQueueTest, ATargetThatDiesFirstIsNotTouched) {
    Counts counts;
    auto target = std::make_unique<Target>(&counts);
    Block();
    queue->AddOperation(target.get(), nullptr, nullptr, false);
    target.reset();
    queue->AddOperation(static_cast<OperationTargetBase*>(nullptr), nullptr, nullptr, false);
    RunAll();
    EXPECT_EQ(counts.runs, 0);
    ASSERT_TRUE(WaitFor([&] { return console.Count("ObjectOperation::~ObjectOperation():0x") == 2; }));
}

INSTANTIATE_TEST_SUITE_P(Modes, OperationQueueTest, testing::Values(1, 2),
                         [](const auto& mode) { return mode.param == 2 ? "Pool" : "Threaded"; });

}  // namespace
}  // namespace Quern
