// Socket addresses in the layout of the home platform, in which the engines read them byte by byte. The seams that give
// and take them translate to and from the system's own.
#ifndef ORVANE_SYSTEM_NETWORK_CHECKER_SOCKET_ADDRESS_H
#define ORVANE_SYSTEM_NETWORK_CHECKER_SOCKET_ADDRESS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace Quern {

// The family numbers of the home platform.
constexpr int kFamilyUnspecified = 0;
constexpr int kFamilyIPv4 = 2;
constexpr int kFamilyIPv6 = 30;

// The length in byte 0, the family in byte 1, the port in bytes 2 and 3, big-endian. Then, with IPv4, the address at
// byte 4, 16 bytes in all; with IPv6 the flow, the address at byte 8 and the scope, 28 bytes in all.
using SocketAddress = std::vector<uint8_t>;

constexpr size_t kSocketAddressSizeIPv4 = 16;
constexpr size_t kSocketAddressSizeIPv6 = 28;

// `address` is 4 or 16 bytes in network order, by the family, which is one of the two above.
SocketAddress MakeSocketAddress(int family, const void* address, uint16_t port);

// The family; unspecified for an address that is too short to be one.
int FamilyOf(const SocketAddress& address);

// The address in dotted or colon form; empty unless it is a whole one of the two families.
std::string AddressText(const SocketAddress& address);

}  // namespace Quern

#endif
