// The state, and what the library makes of the platform's reports of a change. Main thread, but for ReadNetworkState.
#ifndef ORVANE_SYSTEM_NETWORK_NETWORK_CHANGE_H
#define ORVANE_SYSTEM_NETWORK_NETWORK_CHANGE_H

#include "Orvane/NetworkState.h"

class AReachability;

namespace Quern {

// Asks the platform anew: 0, 1 or 2. Any thread.
ANetworkState ReadNetworkState();

// Takes the present state for the one that the next report is compared with.
void ReadFirstNetworkState();

// The change rule, entered among the reachability's callbacks. Every report is delivered, one that leaves the state as
// it is too; a direct switch between kinds of connection is delivered as the loss of the old and the coming of the new.
void onReachabilityChangedCallback(AReachability* reachability);

// Delivers one state through the network's singleton, if there is one.
void DeliverNetworkState(ANetworkState state);

// Whether the platform has reported a change since the last ForgetReports.
bool HasPlatformReported();
void ForgetReports();

}  // namespace Quern

#endif
