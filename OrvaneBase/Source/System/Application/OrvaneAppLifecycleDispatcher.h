// Attaches the library to the application's delegate: exchanges the delegate's event methods in the run-time table, so
// that each event reaches the lifecycle object first and the delegate's own code then.
#ifndef ORVANE_SYSTEM_APPLICATION_ORVANE_APP_LIFECYCLE_DISPATCHER_H
#define ORVANE_SYSTEM_APPLICATION_ORVANE_APP_LIFECYCLE_DISPATCHER_H

#include "Orvane/OrvaneCore.h"
#include "Orvane/RunTime.h"

namespace Orvane {

// The class of the application's delegate: "AppDelegate", else "UnityAppController", else null.
orvane_class* GetDerivedUIApplicationDelegate();

// Main thread. There is no unhook.
class OrvaneAppLifecycleDispatcher {
public:
    // Tries the hook once, while the library loads.
    static void load();
    // Hooks the delegate's class, once in the process; a null class hooks nothing and leaves the hook open.
    static void manualSwizzle(orvane_class* delegate);
};

}  // namespace Orvane

#endif
