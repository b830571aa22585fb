#include "System/Operation/ObjectOperation.h"

#include "Base/XLog.h"

namespace Quern {

ObjectOperation::ObjectOperation(OperationTargetBase* target, Member member, void* data, bool repeat)
    : _target(target), _member(member), _data(data) {
    SetRepeat(repeat);
    if (target) target->_operation.store(this, std::memory_order_relaxed);
}

ObjectOperation::ObjectOperation(const ObjectOperation& other)
    : Operation(other),
      _target(other._target.load(std::memory_order_relaxed)),
      _member(other._member),
      _deleteTarget(other._deleteTarget.load(std::memory_order_relaxed)),
      _data(other._data) {}

ObjectOperation& ObjectOperation::operator=(const ObjectOperation& other) {
    Operation::operator=(other);
    _target.store(other._target.load(std::memory_order_relaxed), std::memory_order_relaxed);
    _member = other._member;
    _deleteTarget.store(other._deleteTarget.load(std::memory_order_relaxed), std::memory_order_relaxed);
    _data = other._data;
    return *this;
}

ObjectOperation::~ObjectOperation() {
    ORVANE_LOG_INFO("ObjectOperation::~ObjectOperation():%p", static_cast<void*>(this));
    OperationTargetBase* const target = _target.load(std::memory_order_relaxed);
    if (!target) return;
    // The target forgets this operation first, or its destructor would come back here.
    target->_operation.store(nullptr, std::memory_order_relaxed);
    target->_running.store(false, std::memory_order_relaxed);
    if (_deleteTarget.load(std::memory_order_relaxed)) {
        delete target;
        ClearTarget();
    }
}

void ObjectOperation::Run() {
    OperationTargetBase* const target = _target.load(std::memory_order_relaxed);
    if (!target) return;
    target->_running.store(true, std::memory_order_relaxed);
    if (_member)
        (target->*_member)(this, _data);
    else
        target->DoOperation(this, _data);
}

Operation* ObjectOperation::Duplicate() const {
    return new ObjectOperation(*this);
}

void ObjectOperation::Cancel(bool deleteTarget) {
    if (deleteTarget) _deleteTarget.store(true, std::memory_order_relaxed);
    Operation::Cancel();
}

}  // namespace Quern
