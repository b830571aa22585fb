// The loop's entry in the process's table of run-time classes; its reader is Orvane/MainRunLoop.h.
#ifndef ORVANE_SYSTEM_APPLICATION_MAIN_RUN_LOOP_CLASS_H
#define ORVANE_SYSTEM_APPLICATION_MAIN_RUN_LOOP_CLASS_H

namespace Quern {

// Registers the class "OrvaneMainRunLoop" with the class methods "run", "stop", "descriptor" and "runPending". Called
// once, while the library loads.
void RegisterMainRunLoopClass();

}  // namespace Quern

#endif
