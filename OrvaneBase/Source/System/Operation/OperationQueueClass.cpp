// The shared queue as games and siblings reach it: by the name of a run-time class.
#include "Base/RunTimeClass.h"
#include "System/Operation/OperationQueue.h"

namespace Quern {
namespace {

void* AddOperation(orvane_object*, const char*, void* const* arguments) {
    if (!arguments) return nullptr;
    const auto function = reinterpret_cast<StaticOperation::Function>(arguments[0]);
    OperationQueue* const queue = OperationQueue::GetInstance();
    queue->AddOperation(function, arguments[1], arguments[2] != nullptr);
    return queue;
}

}  // namespace

void RegisterOperationQueueClass() {
    RegisterRunTimeClass("OrvaneOperationQueue", {}, {{"addOperation:data:repeat:", AddOperation}});
}

}  // namespace Quern
