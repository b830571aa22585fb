// The Internet checksum (RFC 1071).
#ifndef ORVANE_SYSTEM_NETWORK_CHECKER_INTERNET_CHECKSUM_H
#define ORVANE_SYSTEM_NETWORK_CHECKER_INTERNET_CHECKSUM_H

#include <cstddef>
#include <cstdint>

namespace Quern {

// Of the 16-bit words as they lie in memory, so that the result goes into the packet as it is, unswapped. The packet's
// own checksum field is 0 meanwhile. A last odd byte counts as if a zero followed.
uint16_t in_cksum(const void* data, size_t length);

}  // namespace Quern

#endif
