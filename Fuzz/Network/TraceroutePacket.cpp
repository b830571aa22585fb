// What the traceroute reads of a packet: the first byte is the family, the rest comes into its buffer as a socket would
// put it there. A packet is never both a router's message and the target's reply.
#include <algorithm>
#include <cstdlib>

#include "Base/ConsoleSink.h"
#include "System/NetworkChecker/NameResolver.h"
#include "System/NetworkChecker/TracerouteCommon.h"

// Units that the readers do not enter.
void Quern::PlatformLog(const char*, ...) {}
bool Quern::ResolveHost(const std::string&, std::vector<SocketAddress>&) {
    return false;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    using namespace Quern;
    if (size == 0) return 0;
    const bool isIPv6 = data[0] & 1;
    const auto probe = TracerouteCommon::makeICMPPacketWithID_sequence_isICMPv6(0x0201, 1, isIPv6);
    const size_t length = std::min(size - 1, kTracerouteBufferSize);
    std::vector<uint8_t> buffer(kTracerouteBufferSize);
    std::copy_n(data + 1, length, buffer.begin());
    const bool isTimeout = IsTimeoutOf(probe, buffer.data(), length, isIPv6);
    const bool isReply = IsEchoReplyTo(probe, buffer.data(), length, isIPv6);
    if (isTimeout && isReply) abort();

    // A block of just the packet, so that the first byte too far is seen.
    const std::vector<uint8_t> packet(data + 1, data + size);
    const uint8_t* const icmp = TracerouteCommon::unpackICMPv4Packet_len(packet.data(), packet.size());
    if (icmp && icmp + 10 > packet.data() + packet.size()) abort();
    TracerouteCommon::isPortUnReachablePacket_len(packet.data(), packet.size());
    TracerouteCommon::isEchoReplyPacket_len_isIPv6(packet.data(), packet.size(), isIPv6);
    TracerouteCommon::isTimeoutPacket_len_isIPv6(packet.data(), packet.size(), isIPv6);
    return 0;
}
