#include "System/NetworkChecker/SocketAddress.h"

#include <arpa/inet.h>

#include <cstring>

namespace Quern {

SocketAddress MakeSocketAddress(int family, const void* address, uint16_t port) {
    const bool isIPv6 = family == kFamilyIPv6;
    SocketAddress made(isIPv6 ? kSocketAddressSizeIPv6 : kSocketAddressSizeIPv4);
    made[0] = static_cast<uint8_t>(made.size());
    made[1] = static_cast<uint8_t>(family);
    made[2] = static_cast<uint8_t>(port >> 8);
    made[3] = static_cast<uint8_t>(port);
    memcpy(made.data() + (isIPv6 ? 8 : 4), address, isIPv6 ? 16 : 4);
    return made;
}

int FamilyOf(const SocketAddress& address) {
    return address.size() < kSocketAddressSizeIPv4 ? kFamilyUnspecified : address[1];
}

std::string AddressText(const SocketAddress& address) {
    char text[INET6_ADDRSTRLEN] = "";
    const int family = FamilyOf(address);
    // The family is told by this system's number to these functions alone: the address has the home platform's.
    if (family == kFamilyIPv4)
        inet_ntop(AF_INET, address.data() + 4, text, sizeof text);
    else if (family == kFamilyIPv6 && address.size() >= kSocketAddressSizeIPv6)
        inet_ntop(AF_INET6, address.data() + 8, text, sizeof text);
    return text;
}

}  // namespace Quern
