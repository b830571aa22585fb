// What holds calls until the right thread performs them.
#ifndef ORVANE_SYSTEM_THREAD_I_SELECTOR_COLLECTION_H
#define ORVANE_SYSTEM_THREAD_I_SELECTOR_COLLECTION_H

#include "System/Thread/FunctionSelector.h"

namespace Quern {

// Thread rule: Update belongs to one thread, that on which the calls are meant to run; the rest may be called from any.
class ISelectorCollection {
public:
    virtual ~ISelectorCollection() = default;
    // Takes a copy of the call, to be performed by a later Update.
    virtual void AddSelector(const CAFunctionSelector& selector) = 0;
    // Performs waiting calls; how many is the collection's choice.
    virtual void Update() = 0;
    // Drops the waiting calls to that target, which is about to die. The pointer is not looked into.
    virtual void IgnoreTarget(void* target) = 0;
};

}  // namespace Quern

#endif
