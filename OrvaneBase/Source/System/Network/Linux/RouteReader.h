// The way to a target as the kernel's routes and links have it, in the platform's bits.
#ifndef ORVANE_SYSTEM_NETWORK_LINUX_ROUTE_READER_H
#define ORVANE_SYSTEM_NETWORK_LINUX_ROUTE_READER_H

#include <cstdint>
#include <string>

namespace Quern {

// Two ways are the same if a connection over the one would live on over the other.
struct Way {
    uint32_t flags = 0;     // SCNetworkReachabilityFlags; all else is empty while there is no way
    std::string interface;  // by name
    std::string gateway;    // empty for a neighbour
    std::string source;     // the address from which connections go out

    bool operator==(const Way&) const = default;
};

// Each asks the kernel anew, in the calling thread's network namespace. False, and `way` untouched, if it does not
// answer.

// To the internet: the default route of lowest metric in the main table, of either family, whose link is up and has a
// carrier.
bool ReadDefaultWay(Way& way);
// To an address, in text, of either family: what the kernel would do with a packet.
bool ReadWayTo(const char* address, Way& way);
// To the local network over Wi-Fi: a wireless link that is up, has a carrier and an IPv4 address.
bool ReadWifiWay(Way& way);

// Whether the text is an address of either family.
bool IsNumericAddress(const char* text);

}  // namespace Quern

#endif
