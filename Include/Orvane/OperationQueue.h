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
/// When the library is taken down, a repetition ends with the call that is under way; a call that has not begun is made
/// (the pool queue) or dropped (the threaded queue).
///
/// Any thread, an operation's own too, but not from a callback of the log: the queue may log, or wait for a thread that
/// does. During the take-down, and with the pool queue (the setting "OperationMode" is 2), only the queue's own
/// operations may queue: another thread would use a queue that is being deleted. Not before the launch: the queue reads
/// the library's own settings, and these are then at their defaults for as long as the process lives.
/// \param function told the operation, which is opaque here, and `data`
/// \param data the caller's; must stay valid until the last call has returned
/// \param repeat whether the call is made again and again
/// \return false without the library; true also for a call that a queue at its end drops
inline bool gs_OrvaneAddOperation(void (*function)(Quern::Operation* operation, void* data), void* data, bool repeat) {
    const orvane_class* cls = orvane_class_lookup("OrvaneOperationQueue");
    void* arguments[] = {reinterpret_cast<void*>(function), data, reinterpret_cast<void*>(uintptr_t(repeat))};
    return orvane_class_perform(cls, "addOperation:data:repeat:", arguments) != nullptr;
}

#endif
