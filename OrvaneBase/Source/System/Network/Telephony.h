// What the run-time class "CTTelephonyNetworkInfo" tells (Orvane/TelephonyNetworkInfo.h), read by name at each
// question.
#ifndef ORVANE_SYSTEM_NETWORK_TELEPHONY_H
#define ORVANE_SYSTEM_NETWORK_TELEPHONY_H

#include <optional>
#include <string>

#include "Orvane/NetworkState.h"

namespace Quern {

// The generation of the cellular connection: kANetworkWWANUnknown to kANetworkWWAN5G. Any thread.
ANetworkState CellularGeneration();

// kANetworkWWANUnknown for a name that is not known, and for none. CDMA1x counts as 3G and eHRPD as 4G.
ANetworkState GenerationOfRadio(const std::optional<std::string>& radioName);

// The provider's mobile country code with its mobile network code behind it; nothing if either is unknown. Any thread.
std::optional<std::string> CarrierCode();

}  // namespace Quern

#endif
