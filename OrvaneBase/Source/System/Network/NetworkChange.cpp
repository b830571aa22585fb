#include "System/Network/NetworkChange.h"

#include "System/Network/AReachability.h"
#include "System/Network/CNetwork.h"

namespace Quern {
namespace {

ANetworkState g_preNetworkState = kANetworkNotReachable;
bool g_alreadycallback = false;

}  // namespace

ANetworkState ReadNetworkState() {
    const AReachability* const reachability = GetAReachablity();
    return reachability ? reachability->currentReachabilityStatus() : kANetworkNotReachable;
}

void ReadFirstNetworkState() {
    g_preNetworkState = ReadNetworkState();
}

void onReachabilityChangedCallback(AReachability*) {
    g_alreadycallback = true;
    const ANetworkState current = ReadNetworkState();
    const ANetworkState old = g_preNetworkState;
    // What was connected over the old kind is lost with it, so observers hear of a loss in between.
    const bool isSwitch = current != old && current != kANetworkNotReachable && old != kANetworkNotReachable;
    if (isSwitch) DeliverNetworkState(kANetworkNotReachable);
    DeliverNetworkState(current);
    g_preNetworkState = current;
}

void DeliverNetworkState(ANetworkState state) {
    if (CNetwork* const network = CNetwork::InstanceIfAny()) network->OnNetworkStateChanged(state);
}

bool HasPlatformReported() {
    return g_alreadycallback;
}

void ForgetReports() {
    g_alreadycallback = false;
}

}  // namespace Quern
