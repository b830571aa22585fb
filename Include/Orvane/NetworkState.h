/// \file NetworkState.h
/// How the device is connected, in one number. C99 and C++11.
#ifndef ORVANE_NETWORK_STATE_H
#define ORVANE_NETWORK_STATE_H

#include <stdint.h>

/// The plain state is 0, 1 or 2; the `state` of the detail record is 0, 2 or 4 to 8. The numbers are a contract.
#ifdef __cplusplus
namespace Quern {
enum ANetworkState : int32_t {
#else
typedef enum ANetworkState {
#endif
    kANetworkNotReachable = 0,      ///< no connection
    kANetworkReachableViaWWAN = 1,  ///< cellular; the plain state does not tell the generation
    kANetworkReachableViaWiFi = 2,  ///< Wi-Fi, or a cable
    kANetworkWWANUnknown = 4,       ///< from here on in the detail record alone: cellular, of an unknown radio
    kANetworkWWAN2G = 5,
    kANetworkWWAN3G = 6,
    kANetworkWWAN4G = 7,
    kANetworkWWAN5G = 8
#ifdef __cplusplus
};
}  // namespace Quern
typedef Quern::ANetworkState quern_network_state;
#else
} ANetworkState;
typedef ANetworkState quern_network_state;
#endif

#endif
