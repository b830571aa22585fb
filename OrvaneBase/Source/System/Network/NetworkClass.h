// The network's entry in the process's table of run-time classes; its reader is Orvane/INetwork.h.
#ifndef ORVANE_SYSTEM_NETWORK_NETWORK_CLASS_H
#define ORVANE_SYSTEM_NETWORK_NETWORK_CLASS_H

namespace Quern {

// Registers the class "OrvaneNetwork" with the class methods "getNativeNetwork", "removeObserver:" and
// "encodeDetailNetworkInfo:context:". Called once, while the library loads.
void RegisterNetworkClass();

}  // namespace Quern

#endif
