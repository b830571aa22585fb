// What nl80211 tells of wireless interfaces and the networks in their reach. The attributes are those of
// <linux/nl80211.h>.
#ifndef ORVANE_SYSTEM_NETWORK_LINUX_NL80211_H
#define ORVANE_SYSTEM_NETWORK_LINUX_NL80211_H

#include <optional>
#include <string>

#include "System/Network/WifiSource.h"

struct nl_msg;

namespace Quern {

// The interface's name, from an answer to NL80211_CMD_GET_INTERFACE. Nothing if it is of another kind than a station.
std::optional<std::string> StationOf(nl_msg* message);

// The network, from an answer to NL80211_CMD_GET_SCAN. Nothing if the interface is not in it.
std::optional<WifiSource::NetworkInfo> AssociatedNetworkOf(nl_msg* message);

}  // namespace Quern

#endif
