// An operation that calls a function.
#ifndef ORVANE_SYSTEM_OPERATION_STATIC_OPERATION_H
#define ORVANE_SYSTEM_OPERATION_STATIC_OPERATION_H

#include "System/Operation/Operation.h"

namespace Quern {

// The function is called on the queue's threads, with this operation, which it may let sleep or cancel.
class StaticOperation : public Operation {
public:
    using Function = void (*)(Operation* operation, void* data);

    // A null function makes a run that does nothing. `data` is handed to the function as it is, and never freed here.
    StaticOperation(Function function, void* data, bool repeat);

    void Run() override;
    Operation* Duplicate() const override;

private:
    Function _function;
    void* _data;
};

}  // namespace Quern

#endif
