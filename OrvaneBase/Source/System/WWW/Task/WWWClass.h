// The factory's entry in the process's table of run-time classes; its reader is Orvane/WWW.h.
#ifndef ORVANE_SYSTEM_WWW_TASK_WWW_CLASS_H
#define ORVANE_SYSTEM_WWW_TASK_WWW_CLASS_H

namespace Quern {

// Makes the set of live tasks and registers the class "OrvaneWWW" with the class methods that Orvane/WWW.h performs.
// Called once, while the library loads.
void RegisterWWWClass();

}  // namespace Quern

#endif
