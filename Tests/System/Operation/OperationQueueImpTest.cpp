#include "System/Operation/OperationQueueImp.h"

#include "Base/ConsoleSink.h"
#include "Orvane/OrvaneCore.h"
#include "Support/FakeCoreSettings.h"
#include "Support/Test.h"
#include "System/Operation/Gate.h"
#include "System/Thread/Sleep.h"
#include "System/Thread/ThreadName.h"

namespace Quern {
namespace {

using namespace OrvaneTest;
using Clock = std::chrono::steady_clock;

class OperationQueueImpTest : public testing::Test {
protected:
    OperationQueueImp* Queue() { return OperationQueueImp::GetInstance(); }
    bool WaitForLine(const std::string& text) { return console.WaitForWriter(text) != 0; }
    static void PassGate(Operation*, void* gate) { static_cast<Gate*>(gate)->Pass(); }
    // Adds so many operations that hold a worker each, and waits until so many have begun.
    void Occupy(Gate& gate, int operations, int begun, bool isRepeating = false) {
        while (operations-- > 0)
            Queue()->AddOperation(PassGate, &gate, isRepeating);
        ASSERT_TRUE(gate.WaitForEntered(begun));
    }
    static void Count(Operation*, void* count) { ++*static_cast<std::atomic<int>*>(count); }

    CapturedConsole console;
    FakeCoreSettings settings;
};

// Written to by a worker, read once the flag behind it is set.
struct Seen {
    static void Look(Operation*, void* data) {
        Seen* const self = static_cast<Seen*>(data);
        self->threadName = get_thread_name();
        self->done = true;
    }
    std::string threadName;
    std::atomic<bool> done{false};
};

TEST_F(OperationQueueImpTest, ReadsItsSettingsAndRunsWork) {
    Seen seen;
    Queue()->AddOperation(Seen::Look, &seen, false);
    EXPECT_THAT(settings.reads, ElementsAre("OperationQueueStretch=1", "OperationQueueMaxThreadNum=3",
                                            "OperationQueueMinThreadNum=2", "OperationIntervalPerLoop=10"));
    EXPECT_THAT(console.Messages(gettid()),
                IsSupersetOf({StartsWith("OperationQueueImp(0x"), StartsWith("check _intervalPerLoop 10"),
                              StartsWith("pthread_create onThreadProc:0x"),
                              StartsWith("pthread_create onThreadManageProc:0x")}));
    EXPECT_EQ(console.Count("pthread_create onThreadProc:"), 2);
    ASSERT_TRUE(WaitFor([&] { return seen.done.load(); }));
    EXPECT_EQ(seen.threadName, "OperationQueue.ThreadProcess");
    EXPECT_EQ(Queue(), Queue());
}

// An object that its operation deletes.
struct Sleeper : OperationTargetBase {
    explicit Sleeper(std::vector<Clock::time_point>* runs) : runs(runs) {}
    ~Sleeper() override { ++deleted; }
    void Work(ObjectOperation*, void*) {
        runs->push_back(Clock::now());
        Sleep(500);
        if (runs->size() == 2) Cancel(true);
    }
    std::vector<Clock::time_point>* runs;
    static inline std::atomic<int> deleted{0};
};

TEST_F(OperationQueueImpTest, WaitsForTheNextRun) {
    std::vector<Clock::time_point> runs;
    Queue()->AddOperation(new Sleeper(&runs), static_cast<ObjectOperation::Member>(&Sleeper::Work), nullptr, true);
    ASSERT_TRUE(WaitFor([] { return Sleeper::deleted == 1; }));
    ASSERT_EQ(runs.size(), 2u);
    EXPECT_GE(runs[1] - runs[0], std::chrono::milliseconds(499));
    EXPECT_LE(runs[1] - runs[0], std::chrono::milliseconds(1500));
}

TEST_F(OperationQueueImpTest, AddsAWorkerAfterASecondOfBacklogAndLetsItGo) {
    Gate gate;
    Occupy(gate, 2, 2);
    const Clock::time_point begin = Clock::now();
    Occupy(gate, 2, 3);
    EXPECT_GE(Clock::now() - begin, std::chrono::milliseconds(1001));
    EXPECT_EQ(console.Count("pthread_create onThreadProc:"), 3);
    EXPECT_EQ(console.Count("thread num is max"), 0);
    ASSERT_TRUE(WaitForLine("thread num is max"));
    EXPECT_TRUE(console.Has("Debug", "thread num is max"));
    EXPECT_EQ(gate.Entered(), 3);
    gate.Open();
    ASSERT_TRUE(gate.WaitForLeft(4));
    // Its empty passes add up: work for everybody, ten times in the second that it stays, does not keep it.
    std::atomic<int> ran{0};
    Clock::time_point next = Clock::now();
    ASSERT_TRUE(WaitFor([&] {
        if (Clock::now() >= next) {
            for (int i = 0; i < 3; ++i)
                Queue()->AddOperation(Count, &ran, false);
            next += std::chrono::milliseconds(100);
        }
        return console.Count("Destroy thread") == 1;
    }));
    EXPECT_TRUE(console.Has("Info", "Destroy thread"));

    // What it left in the count of idle workers keeps further ones away.
    Gate again;
    Occupy(again, 3, 2);
    SleepMS(1500);  // longer than the backlog that would bring a worker
    EXPECT_EQ(again.Entered(), 2);
    EXPECT_EQ(console.Count("pthread_create onThreadProc:"), 3);
    EXPECT_EQ(console.Count("Destroy thread"), 1) << "the minimum stays";
    again.Open();
    EXPECT_TRUE(again.WaitForLeft(3));
}

TEST_F(OperationQueueImpTest, AddsNoWorkerWithoutStretch) {
    settings.values["OperationQueueStretch"] = 0;
    Gate gate;
    Occupy(gate, 3, 2);
    SleepMS(1500);  // longer than the backlog that would bring a worker
    EXPECT_EQ(gate.Entered(), 2);
    EXPECT_EQ(console.Count("pthread_create onThreadProc:"), 2);
    gate.Open();
    EXPECT_TRUE(gate.WaitForLeft(3));
}

TEST_F(OperationQueueImpTest, AMinimumAboveTheMaximumMakesTheMaximum) {
    settings.values["OperationQueueMinThreadNum"] = 4;
    settings.values["OperationQueueMaxThreadNum"] = 1;
    Queue();
    EXPECT_EQ(console.Count("pthread_create onThreadProc:"), 1);
    EXPECT_EQ(console.Count("thread num is max"), 3);
}

TEST_F(OperationQueueImpTest, ReleaseEndsRepetitionDropsTheRestAndDeletesTheQueue) {
    std::vector<Clock::time_point> runs;
    auto* const sleeper = new Sleeper(&runs);
    Gate gate;
    std::atomic<int> count{0};
    OperationQueueImp* const queue = Queue();
    Occupy(gate, 2, 2, true);
    queue->AddOperation(sleeper, static_cast<ObjectOperation::Member>(&Sleeper::Work), nullptr, false);
    sleeper->Cancel(true);
    queue->AddOperation(Count, &count, false);
    OnApplicationQuit();
    EXPECT_EQ(console.Count("OperationQueueImp::ReleaseInstance"), 1);
    queue->AddOperation(Count, &count, false);
    queue->AddOperation(StaticOperation(Count, &count, false));
    EXPECT_TRUE(console.Has("Info", "AddOperation _running has been false"));
    EXPECT_EQ(Sleeper::deleted, 0);

    gate.Open();
    ASSERT_TRUE(WaitForLine("~OperationQueueImp("));
    ASSERT_TRUE(WaitFor([] { return Sleeper::deleted == 1; })) << "operations are destroyed without a run";
    EXPECT_THAT(runs, ElementsAre());
    EXPECT_TRUE(console.Has("Event", "onThreadManageProc threads have been destroyed, starting delete queue"));
    EXPECT_TRUE(console.Has("Debug", "Destroy Thread"));
    EXPECT_EQ(gate.Entered(), 2) << "nothing runs again after the release";
    EXPECT_EQ(count, 0);

    Queue()->AddOperation(Count, &count, false);
    EXPECT_TRUE(WaitFor([&] { return count == 1; })) << "a new queue takes its place";
}

// How often a thread has gone to sleep so far.
std::string SleepsOf(pid_t thread) {
    std::ifstream status("/proc/self/task/" + std::to_string(thread) + "/status");
    for (std::string line; std::getline(status, line);)
        if (line.starts_with("voluntary_ctxt_switches")) return line;
    return "";
}

// Waits until the thread sleeps for longer than a worker's rest between two passes: on the condition.
bool WaitUntilIdle(pid_t worker) {
    return WaitFor([&] {
        const std::string before = SleepsOf(worker);
        SleepMS(100);
        return !before.empty() && SleepsOf(worker) == before;
    });
}

TEST_F(OperationQueueImpTest, ReleaseWakesNobodyAndLeavesTheQueueToItsSleepers) {
    struct Worker {
        Gate gate;
        std::atomic<pid_t> thread{0};
    } workers[2];
    for (Worker& worker : workers) {
        Queue()->AddOperation(
            [](Operation*, void* data) {
                static_cast<Worker*>(data)->thread = gettid();
                static_cast<Worker*>(data)->gate.Pass();
            },
            &worker, false);
        ASSERT_TRUE(worker.gate.WaitForEntered(1));
    }
    workers[0].gate.Open();
    ASSERT_TRUE(WaitUntilIdle(workers[0].thread));
    OperationQueueImp::ReleaseInstance();
    OperationQueueImp::ReleaseInstance();
    workers[1].gate.Open();
    ASSERT_TRUE(WaitUntilGone(workers[1].thread)) << "one that is awake leaves";

    std::atomic<int> count{0};
    Queue()->AddOperation(Count, &count, false);
    ASSERT_TRUE(WaitFor([&] { return count == 1; }));  // many looks of the old manager later
    EXPECT_EQ(ThreadState(workers[0].thread), 'S');
    EXPECT_EQ(console.Count("Destroy Thread"), 1);
    EXPECT_EQ(console.Count("~OperationQueueImp("), 0);
}

// Counts its live copies.
class Counted : public Operation {
public:
    explicit Counted(std::atomic<int>* alive) : _alive(alive) {}
    Counted(const Counted& other) : Operation(other), _alive(other._alive) { ++*_alive; }
    ~Counted() override { --*_alive; }
    void Run() override {}
    Operation* Duplicate() const override {
        last = new Counted(*this);
        return last;
    }
    mutable Counted* last = nullptr;

private:
    std::atomic<int>* _alive;
};

TEST_F(OperationQueueImpTest, RemovesTheHeadWithoutDeletingIt) {
    settings.values["OperationQueueMinThreadNum"] = 0;  // nobody takes it away
    std::atomic<int> alive{1};
    Counted operation(&alive);
    Queue()->AddOperation(operation);
    EXPECT_EQ(alive, 2);
    OperationQueueImp* const queue = Queue();
    queue->RemoveOperation(operation.GetId());
    queue->RemoveOperation(operation.GetId());
    OperationQueueImp::ReleaseInstance();
    ASSERT_TRUE(WaitForLine("starting delete queue"));
    ASSERT_TRUE(WaitForLine("~OperationQueueImp("));
    EXPECT_EQ(alive, 2);
    delete operation.last;
}

TEST_F(OperationQueueImpTest, AQueueThatComesBackDuringTheTakeDownIsEndedToo) {
    static OperationQueueImp* cameBack;
    OperationQueueImp* const first = Queue();
    AddApplicationQuitCallback([] { cameBack = OperationQueueImp::GetInstance(); });
    OnApplicationQuit();
    ASSERT_TRUE(cameBack != nullptr && cameBack != first);
    cameBack->AddOperation(nullptr, nullptr, false);
    EXPECT_EQ(console.Count("AddOperation _running has been false"), 1);
}

// A console that queues work, as a log callback does.
class QueueingConsole : public ConsoleSink {
public:
    void Write(const char* text, size_t length) override {
        const std::lock_guard guard(logLock);
        const std::string_view line(text, length);
        madeWorker = madeWorker || line.find("pthread_create onThreadProc:") != line.npos;
        hasAllWorkers = hasAllWorkers || line.find("thread num is max") != line.npos;
        if (line.find("~ObjectOperation") != line.npos)
            OperationQueueImp::GetInstance()->AddOperation(nullptr, nullptr, false);
    }
    std::atomic<bool> madeWorker{false}, hasAllWorkers{false};
    std::recursive_mutex logLock;
};

TEST_F(OperationQueueImpTest, LogsNothingUnderItsLock) {
    settings.values["OperationQueueMinThreadNum"] = 1;
    const auto queueing = std::make_shared<QueueingConsole>();
    ConsoleSink::Use(queueing);
    Gate gate;
    Occupy(gate, 1, 1);
    std::atomic<bool> stop{false};
    std::thread logging([&] {
        while (!stop)
            ObjectOperation(nullptr, nullptr, nullptr, false);
    });
    EXPECT_TRUE(WaitFor([&] { return queueing->madeWorker && queueing->hasAllWorkers; }));
    gate.Open();
    stop = true;
    logging.join();
}

}  // namespace
}  // namespace Quern
