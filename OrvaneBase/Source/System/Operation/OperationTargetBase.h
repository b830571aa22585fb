// The base of objects whose members run as operations.
//
// An operation does not own its target. A target that dies clears itself from its operation, which then runs as a
// no-op. It knows of one operation only, the one that was constructed last for it: a target that is going to be
// destroyed keeps at most one queued. Nothing here guards against a target that dies on one thread while its operation
// enters a run on another: its owner ends the work first (Cancel), or never destroys the target. The one way for a
// target to end itself from within its work is Cancel(true): the queue destroys the operation after the run, and the
// operation the target.
#ifndef ORVANE_SYSTEM_OPERATION_OPERATION_TARGET_BASE_H
#define ORVANE_SYSTEM_OPERATION_OPERATION_TARGET_BASE_H

#include <atomic>

namespace Quern {

class ObjectOperation;

class OperationTargetBase {
public:
    OperationTargetBase() = default;
    virtual ~OperationTargetBase();
    OperationTargetBase(const OperationTargetBase&) = delete;
    OperationTargetBase& operator=(const OperationTargetBase&) = delete;

    // What an operation without a member runs.
    virtual void DoOperation(ObjectOperation* operation, void* data) {}

    // Those of the operation that was constructed last, if it still is.
    void Sleep(int milliseconds);
    void Cancel(bool deleteTarget);

    // From the first run of an operation of this target to the end of one.
    bool IsRunning() const { return _running.load(std::memory_order_relaxed); }

private:
    friend class ObjectOperation;

    std::atomic<bool> _running{false};
    std::atomic<ObjectOperation*> _operation{nullptr};  // the one constructed last; not owned
};

}  // namespace Quern

#endif
