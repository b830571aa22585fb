// An operation that calls a function.
#ifndef ORVANE_SYSTEM_OPERATION_STATIC_OPERATION_H
#define ORVANE_SYSTEM_OPERATION_STATIC_OPERATION_H

#include "System/Operation/Operation.h"

namespace Quern {

class StaticOperation : public Operation {
public:
    using Function = void (*)(Operation* operation, void* data);

    // A null function makes a run that does nothing.
    StaticOperation(Function function, void* data, bool repeat);

    void Run() override;
    Operation* Duplicate() const override;

private:
    Function _function;
    void* _data;
};

}  // namespace Quern

#endif
