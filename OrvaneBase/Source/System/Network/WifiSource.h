// The Wi-Fi network that the device is in, as the platform tells it.
#ifndef ORVANE_SYSTEM_NETWORK_WIFI_SOURCE_H
#define ORVANE_SYSTEM_NETWORK_WIFI_SOURCE_H

#include <string>
#include <vector>

#include "Base/Seam.h"

namespace Quern {

// Any thread.
class WifiSource : public Seam<WifiSource> {
public:
    // What the platform keeps under kCNNetworkInfoKeySSID and kCNNetworkInfoKeyBSSID; empty if it does not tell.
    struct NetworkInfo {
        std::string ssid;   // the network's name, up to 32 bytes of any encoding
        std::string bssid;  // the access point's id, as "02:00:00:00:00:01"
    };

    // The names of the wireless interfaces that can be in a network; none where there is no wireless hardware.
    virtual std::vector<std::string> CNCopySupportedInterfaces() = 0;
    // The network that an interface is in; empty if it is in none.
    virtual NetworkInfo CNCopyCurrentNetworkInfo(const std::string& interface) = 0;
};

template <>
std::shared_ptr<WifiSource> Seam<WifiSource>::MakeBuiltIn();

}  // namespace Quern

#endif
