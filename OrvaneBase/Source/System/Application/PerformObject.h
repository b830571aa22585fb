// Carries a selector to the main run loop.
#ifndef ORVANE_SYSTEM_APPLICATION_PERFORM_OBJECT_H
#define ORVANE_SYSTEM_APPLICATION_PERFORM_OBJECT_H

#include "System/Thread/FunctionSelector.h"

namespace Quern {

struct PerformObject {
    CAFunctionSelector* sel = nullptr;  // not owned; null stands for whatever waits in the main manager

    // Main thread.
    void perform() const;
};

}  // namespace Quern

#endif
