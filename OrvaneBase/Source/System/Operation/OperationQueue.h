// The queue that runs the library's background work.
#ifndef ORVANE_SYSTEM_OPERATION_OPERATION_QUEUE_H
#define ORVANE_SYSTEM_OPERATION_OPERATION_QUEUE_H

#include "System/Operation/ObjectOperation.h"
#include "System/Operation/StaticOperation.h"

namespace Quern {

// Any thread. Runs may overlap, also of operations added one after the other.
class OperationQueue {
public:
    // Queues a call of the target's member, of DoOperation with a null member. The target is not owned.
    virtual void AddOperation(OperationTargetBase* target, ObjectOperation::Member member, void* data, bool repeat) = 0;
    // Queues a call of a function.
    virtual void AddOperation(StaticOperation::Function function, void* data, bool repeat) = 0;

    // The process's queue: by the setting "OperationMode", read at the first call, the pool queue (2) or the threaded
    // queue (anything else).
    static OperationQueue* GetInstance();

protected:
    ~OperationQueue() = default;  // not virtual: the table holds the two operations alone
};

}  // namespace Quern

#endif
