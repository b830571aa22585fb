#include "System/Operation/OperationQueuePool.h"

#include "Orvane/OrvaneCore.h"
#include "Support/FakeCoreSettings.h"
#include "Support/Test.h"
#include "System/Operation/Gate.h"
#include "System/Operation/OperationQueueImp.h"

namespace Quern {
namespace {

using namespace OrvaneTest;
using Clock = std::chrono::steady_clock;

class OperationQueuePoolTest : public testing::Test {
protected:
    CapturedConsole console;
    FakeCoreSettings settings;
};

TEST_F(OperationQueuePoolTest, IsChosenByTheMode) {
    settings.values["OperationMode"] = 0;
    EXPECT_EQ(OperationQueue::GetInstance(), OperationQueueImp::GetInstance());
    settings.values["OperationMode"] = 2;
    OperationQueue* const pool = OperationQueue::GetInstance();
    EXPECT_EQ(pool, OperationQueuePool::GetInstance()) << "a mode of 0 is no choice and read again";
    EXPECT_TRUE(console.Has("Info", "Operation mode is 2"));
    settings.values["OperationMode"] = 1;
    EXPECT_EQ(OperationQueue::GetInstance(), pool) << "a choice stays";
    EXPECT_EQ(console.Count("Operation mode is"), 2);
    OperationQueuePool::ReleaseInstance();
}

TEST_F(OperationQueuePoolTest, ReadsItsSettings) {
    settings.values["OperationQueueMaxThreadNum"] = 8;
    OperationQueuePool::GetInstance();
    EXPECT_THAT(settings.reads, ElementsAre("OperationQueueMinThreadNum=3", "OperationQueueMaxThreadNum=6",
                                            "OperationQueueShrinkInterval=5", "OperaionQueueShrinkStep=2",
                                            "OperationQueueStrechStep=1"));
    EXPECT_TRUE(console.Has("Info",
                            "OperationQueuePool minThreadNum 3, maxThreadNum 8, shrinkInterval 5, shrinkStep 2, "
                            "stretchStep 1"));
    OperationQueuePool::ReleaseInstance();
    OperationQueuePool::ReleaseInstance();
}

// Sleeps after its first run only.
struct Napper : OperationTargetBase {
    explicit Napper(std::vector<Clock::time_point>* times) : runs(times) {}
    void Work(ObjectOperation* operation, void*) {
        runs->push_back(Clock::now());
        if (runs->size() == 1) Sleep(200);
        if (runs->size() == 4) operation->Cancel(true);
    }
    std::vector<Clock::time_point>* runs;
};

TEST_F(OperationQueuePoolTest, ARepeatingOperationSleepsOnItsWorkerAsOftenAsItAsks) {
    std::vector<Clock::time_point> runs;
    OperationQueuePool::GetInstance()->AddOperation(new Napper(&runs),
                                                    static_cast<ObjectOperation::Member>(&Napper::Work), nullptr, true);
    ASSERT_NE(console.WaitForWriter("ObjectOperation::~ObjectOperation()"), 0);
    OperationQueuePool::ReleaseInstance();
    ASSERT_EQ(runs.size(), 4u);
    EXPECT_GE(runs[1] - runs[0], std::chrono::milliseconds(199));
    EXPECT_LT(runs[3] - runs[1], std::chrono::milliseconds(199)) << "back to back from the second run on";
}

TEST_F(OperationQueuePoolTest, ReleaseWaitsForEveryOperation) {
    settings.values["OperationQueueMinThreadNum"] = 1;
    settings.values["OperationQueueMaxThreadNum"] = 1;
    static std::atomic<int> runs;
    static Gate gate;
    const StaticOperation::Function count = [](Operation*, void*) { ++runs; };
    OperationQueue* const queue = OperationQueuePool::GetInstance();
    queue->AddOperation(
        [](Operation*, void*) {
            gate.Pass();
            OperationQueuePool::GetInstance()->AddOperation([](Operation*, void*) { ++runs; }, nullptr, false);
        },
        nullptr, true);
    queue->AddOperation(count, nullptr, false);
    queue->AddOperation(count, nullptr, true);
    queue->AddOperation(nullptr, nullptr, false);
    ASSERT_TRUE(gate.WaitForEntered(1));
    std::atomic<pid_t> releasing{0};
    std::thread release([&] {
        releasing = gettid();
        OnApplicationQuit();
    });
    ASSERT_TRUE(WaitFor([&] { return releasing != 0; }));
    ASSERT_TRUE(WaitUntilAsleep(releasing)) << "it waits for the run that is under way";
    gate.Open();
    release.join();
    EXPECT_EQ(gate.Entered(), 1) << "a repetition ends with that run";
    EXPECT_EQ(runs, 3) << "what was queued runs once, and so does what was queued by the last run";
    OperationQueuePool::GetInstance()->AddOperation(count, nullptr, false);
    OnApplicationQuit();
    EXPECT_EQ(runs, 4) << "a new queue serves, and is ended with the next take-down";
    EXPECT_EQ(console.Count("OperationQueuePool minThreadNum 1"), 2);
}

}  // namespace
}  // namespace Quern
