/// \file MainRunLoop.h
/// How a host gives the library its main thread.
///
/// The library performs calls, timers and events of the network on the process's main thread: the one that ran main. A
/// host lets it do so in one of two ways:
///
/// - It has no loop of its own and calls gs_OrvaneMainRunLoopRun, which returns after gs_OrvaneMainRunLoopStop.
/// - It has a loop (an engine's tick, an event loop): it adds gs_OrvaneMainRunLoopDescriptor to what it polls, for
///   reading, and calls gs_OrvaneMainRunLoopRunPending when that is ready; or it calls the latter once a frame.
///
/// The host does not link to the library for this: the functions find it by the run-time class "OrvaneMainRunLoop", and
/// give a neutral value in a process without it. C99 and C++11.
#ifndef ORVANE_MAIN_RUN_LOOP_H
#define ORVANE_MAIN_RUN_LOOP_H

#include <stdbool.h>

#include "Orvane/RunTime.h"

/// Runs the main run loop until gs_OrvaneMainRunLoopStop.
/// \return true after it has run; false at once without the library, on another thread than the main one, or from
///         inside the loop
ORVANE_RUNTIME_INLINE bool gs_OrvaneMainRunLoopRun(void) {
    return orvane_class_perform(orvane_class_lookup("OrvaneMainRunLoop"), "run", NULL) != NULL;
}

/// Ends gs_OrvaneMainRunLoopRun, or the next one if none is under way, after the calls that were posted before. Any
/// thread. Does nothing without the library.
ORVANE_RUNTIME_INLINE void gs_OrvaneMainRunLoopStop(void) {
    orvane_class_perform(orvane_class_lookup("OrvaneMainRunLoop"), "stop", NULL);
}

/// The descriptor that is ready for reading whenever gs_OrvaneMainRunLoopRunPending has something to do, timers
/// included. Always the same; the library owns it: poll it, but do not read from it or close it. Main thread.
/// \return the descriptor; -1 without the library or if the system has no descriptors left
ORVANE_RUNTIME_INLINE int gs_OrvaneMainRunLoopDescriptor(void) {
    const orvane_class* cls = orvane_class_lookup("OrvaneMainRunLoop");
    if (!orvane_class_get_class_method(cls, "descriptor")) return -1;
    return orvane_result_int(orvane_class_perform(cls, "descriptor", NULL));
}

/// Does what is due and returns without waiting. Does nothing without the library, on another thread than the main one,
/// or from inside the loop. Main thread.
ORVANE_RUNTIME_INLINE void gs_OrvaneMainRunLoopRunPending(void) {
    orvane_class_perform(orvane_class_lookup("OrvaneMainRunLoop"), "runPending", NULL);
}

#endif
