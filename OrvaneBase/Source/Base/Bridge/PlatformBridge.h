// The bridge's entry in the process's table of run-time classes; its reader is Orvane/PlatformObject.h.
#ifndef ORVANE_BASE_BRIDGE_PLATFORM_BRIDGE_H
#define ORVANE_BASE_BRIDGE_PLATFORM_BRIDGE_H

namespace Quern {

// Registers the class "OrvanePlatformBridge" with the class method "getNativeBridge". Called once, while the library
// loads.
void RegisterPlatformBridgeClass();

}  // namespace Quern

#endif
