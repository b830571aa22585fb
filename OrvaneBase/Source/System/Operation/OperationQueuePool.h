// The operation queue on an elastic thread pool.
//
// A repeating operation holds one worker for its whole life and sleeps on it between its runs.
#ifndef ORVANE_SYSTEM_OPERATION_OPERATION_QUEUE_POOL_H
#define ORVANE_SYSTEM_OPERATION_OPERATION_QUEUE_POOL_H

#include <atomic>

#include "System/Operation/OperationQueue.h"
#include "System/Operation/ThreadPool.h"

namespace Quern {

class OperationQueuePool final : public OperationQueue {
public:
    static OperationQueuePool* GetInstance();
    // Ends the queue and waits for its workers: what is queued still runs, repeating operations end after the run that
    // is under way, a sleeping one when its sleep is over. Entered among the quit callbacks.
    static void ReleaseInstance();

    // May block for as long as workers take that the pool sends away.
    void AddOperation(OperationTargetBase* target, ObjectOperation::Member member, void* data, bool repeat) override;
    void AddOperation(StaticOperation::Function function, void* data, bool repeat) override;

private:
    OperationQueuePool();
    ~OperationQueuePool();

    void Push(Operation* operation);
    void _Run(Operation* operation);

    ThreadPool* _pool;  // owned; operations that still run may push to it while it drains
    std::atomic<bool> _running{true};
};

}  // namespace Quern

#endif
