// The loop's entry in the process's table of run-time classes; its reader is Orvane/MainRunLoop.h.
#ifndef ORVANE_SYSTEM_APPLICATION_MAIN_RUN_LOOP_CLASS_H
#define ORVANE_SYSTEM_APPLICATION_MAIN_RUN_LOOP_CLASS_H

namespace Quern {

// Registers the class "OrvaneMainRunLoop" with the class methods "run", "stop", "descriptor" and "runPending". Runs
// while the library loads; a further call does nothing.
void RegisterMainRunLoopClass();

}  // namespace Quern

#endif
