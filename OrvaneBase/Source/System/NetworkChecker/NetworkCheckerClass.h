// The checker's entry in the process's table of run-time classes; its reader is Orvane/INetworkChecker.h.
#ifndef ORVANE_SYSTEM_NETWORK_CHECKER_NETWORK_CHECKER_CLASS_H
#define ORVANE_SYSTEM_NETWORK_CHECKER_NETWORK_CHECKER_CLASS_H

namespace Quern {

// Registers the class "OrvaneNetworkChecker". Called once, while the library loads.
void RegisterNetworkCheckerClass();

}  // namespace Quern

#endif
