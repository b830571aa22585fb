#include "System/Operation/OperationTargetBase.h"

#include "System/Operation/ObjectOperation.h"

namespace Quern {

OperationTargetBase::~OperationTargetBase() {
    ObjectOperation* const operation = _operation.load(std::memory_order_relaxed);
    if (!operation) return;
    operation->ClearTarget();
    _operation.store(nullptr, std::memory_order_relaxed);
}

void OperationTargetBase::Sleep(int milliseconds) {
    if (ObjectOperation* const operation = _operation.load(std::memory_order_relaxed)) operation->Sleep(milliseconds);
}

void OperationTargetBase::Cancel(bool deleteTarget) {
    if (ObjectOperation* const operation = _operation.load(std::memory_order_relaxed)) operation->Cancel(deleteTarget);
}

}  // namespace Quern
