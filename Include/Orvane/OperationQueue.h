/// \file OperationQueue.h
/// The library's shared queue of background work, for code that does not link to it. Header-only: link
/// liborvaneruntime.so and nothing else. C++11.
#ifndef ORVANE_OPERATION_QUEUE_H
#define ORVANE_OPERATION_QUEUE_H

#include "Orvane/RunTime.h"

namespace Quern {
class Operation;
}

/// Queues a call of a function on a thread of the queue. Calls may overlap, those of one repeating operation never do.
/// When the library is taken down, a repetition ends with the call that is under way. Any thread.
/// \param function told the operation, which is opaque here, and `data`
/// \param data the caller's; must stay valid until the last call has returned
/// \param repeat whether the call is made again and again
/// \return false without the library
inline bool gs_OrvaneAddOperation(void (*function)(Quern::Operation* operation, void* data), void* data, bool repeat) {
    const orvane_class* cls = orvane_class_lookup("OrvaneOperationQueue");
    void* arguments[] = {reinterpret_cast<void*>(function), data, reinterpret_cast<void*>(uintptr_t(repeat))};
    return orvane_class_perform(cls, "addOperation:data:repeat:", arguments) != nullptr;
}

#endif
