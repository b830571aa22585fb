// The threaded operation queue: a few workers, and a manager thread that hands them work.
//
// New operations, and repeating ones between two runs, are in the waiting list. Every few milliseconds the manager
// moves those that may run to the ready list, wakes workers, and adds a worker when work has stood ready for about a
// second while nobody was idle. A worker rests 10 ms after each pass. Workers above the minimum leave after 101 empty
// passes.
//
// Two properties of the bookkeeping are part of the behaviour. A worker above the minimum raises the idle count in each
// empty pass and lowers it once, when it leaves: as long as one has been idle, no further worker is added, and more
// wake-ups are sent than there are sleepers. And its empty passes add up over its life; work in between does not reset
// them.
#ifndef ORVANE_SYSTEM_OPERATION_OPERATION_QUEUE_IMP_H
#define ORVANE_SYSTEM_OPERATION_OPERATION_QUEUE_IMP_H

#include <pthread.h>

#include <atomic>
#include <deque>
#include <vector>

#include "System/Operation/OperationQueue.h"
#include "System/Thread/Condition.h"
#include "System/Thread/Mutex.h"

namespace Quern {

class OperationQueueImp final : public OperationQueue {
public:
    static OperationQueueImp* GetInstance();
    // Ends the queue: workers finish the operation they run, and when the last has gone the manager deletes the object,
    // with every operation that is still queued. Wakes nobody: where a worker sleeps, the object stays. Entered among
    // the quit callbacks. GetInstance then makes a new queue.
    static void ReleaseInstance();

    // Taken up in the manager's next pass. After ReleaseInstance they drop the operation with a line.
    void AddOperation(OperationTargetBase* target, ObjectOperation::Member member, void* data, bool repeat) override;
    void AddOperation(StaticOperation::Function function, void* data, bool repeat) override;
    // Queues a copy.
    void AddOperation(const Operation& operation);

    // Takes the operation off a list without deleting it, if it is the list's first. With another one in front of a
    // list the call does not come back, and holds the queue: only for what is known to be at the head.
    void RemoveOperation(long long id);

private:
    OperationQueueImp();
    ~OperationQueueImp();

    // What came of making a worker: said once the lock is given up.
    struct Creation {
        void Log() const;
        enum { kNotTried, kAtMaximum, kFailed, kMade } result = kNotTried;
        int error = 0;
        pthread_t worker{};
    };

    template <typename Make>
    void addIfRunning(Make make);
    void createThreadList();
    Creation createThread() ORVANE_REQUIRES(_lock);

    static void* onThreadManageProc(void* queue);
    void manage() ORVANE_REQUIRES(_lock);
    int moveDueToReady() ORVANE_REQUIRES(_lock);
    void waitForWorkers();

    static void* onThreadProc(void* queue);
    void work();
    Operation* takeReady();
    void runOperation(Operation* operation);
    bool passIdle(int& idleTicks);

    static std::atomic<int> _intervalPerLoop;  // the manager's sleep between two passes, milliseconds

    std::deque<Operation*> _ready ORVANE_GUARDED_BY(_lock);     // may run now, oldest first; owned
    std::vector<Operation*> _waiting ORVANE_GUARDED_BY(_lock);  // owned
    CMutex _lock{true};                                         // nothing is logged, run or deleted under it
    CCondition _condition{&_lock, false};                       // where workers sleep that are not above the minimum
    int _idleCount ORVANE_GUARDED_BY(_lock) = 0;
    int maxThreadNum = 3;
    int minThreadNum = 2;
    int _threadCount ORVANE_GUARDED_BY(_lock) = 0;
    std::atomic<bool> _running{true};  // workers look at it between passes
    bool _stretch = true;
};

}  // namespace Quern

#endif
