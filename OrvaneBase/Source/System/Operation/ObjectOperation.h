// An operation that calls a member of a target.
#ifndef ORVANE_SYSTEM_OPERATION_OBJECT_OPERATION_H
#define ORVANE_SYSTEM_OPERATION_OBJECT_OPERATION_H

#include <atomic>

#include "System/Operation/Operation.h"
#include "System/Operation/OperationTargetBase.h"

namespace Quern {

class ObjectOperation : public Operation {
public:
    using Member = void (OperationTargetBase::*)(ObjectOperation* operation, void* data);

    // A null target makes a run that does nothing; a null member stands for DoOperation. The target remembers this
    // operation in place of any earlier one.
    ObjectOperation(OperationTargetBase* target, Member member, void* data, bool repeat);
    // The target goes on to remember the operation copied from.
    ObjectOperation(const ObjectOperation& other);
    ObjectOperation& operator=(const ObjectOperation& other);
    ~ObjectOperation() override;

    void Run() override;
    Operation* Duplicate() const override;

    // As Operation::Cancel; with `deleteTarget` the operation also deletes its target when it is destroyed, which
    // cannot be taken back.
    void Cancel(bool deleteTarget);
    // Called by a target that dies.
    void ClearTarget() { _target.store(nullptr, std::memory_order_relaxed); }

private:
    std::atomic<OperationTargetBase*> _target;  // not owned, but for _deleteTarget; null once it has died
    Member _member;
    std::atomic<bool> _deleteTarget{false};
    void* _data;
};

}  // namespace Quern

#endif
