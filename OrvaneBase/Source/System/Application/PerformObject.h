// The object that the main run loop is asked to perform.
#ifndef ORVANE_SYSTEM_APPLICATION_PERFORM_OBJECT_H
#define ORVANE_SYSTEM_APPLICATION_PERFORM_OBJECT_H

#include "System/Thread/FunctionSelector.h"

namespace Quern {

// The caller owns the selector and keeps it until the call is over.
struct PerformObject {
    CAFunctionSelector* sel = nullptr;

    // Performs the selector. Without one it performs the first calls that wait in the main selector manager. Main
    // thread.
    void perform() const;
};

}  // namespace Quern

#endif
