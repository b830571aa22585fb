// The packets and addresses of a traceroute.
#ifndef ORVANE_SYSTEM_NETWORK_CHECKER_TRACEROUTE_COMMON_H
#define ORVANE_SYSTEM_NETWORK_CHECKER_TRACEROUTE_COMMON_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "System/NetworkChecker/SocketAddress.h"

namespace Quern {

// Thread-safe. A packet is `length` bytes at `packet`, IPv4 ones with their IP header; none of these reads past that.
class TracerouteCommon {
public:
    static uint16_t makeChecksumFor_len(const void* data, size_t length);

    // Of 16 or 28 bytes. A text that is no address gives one of zeros; empty if there can be no address at all.
    static SocketAddress makeSockaddrWithAddress_port_isIPv6(const std::string& address, int port, bool isIPv6);

    // A probe, an echo request of ten bytes (RFC 792, RFC 4443): type, code 0, checksum, identifier in the order of
    // this machine, sequence number big-endian, and 99 in the order of this machine. With IPv6 the checksum, which the
    // kernel makes, the identifier and the sequence number are 0.
    static std::vector<uint8_t> makeICMPPacketWithID_sequence_isICMPv6(uint16_t identifier, uint16_t sequence,
                                                                       bool isICMPv6);

    // The addresses of a name as texts, in order; none if it is not resolved within 30 seconds. Blocks.
    static std::vector<std::string> resolveHost(const std::string& host);

    static bool isEchoReplyPacket_len_isIPv6(const uint8_t* packet, size_t length, bool isIPv6);
    static bool isTimeoutPacket_len_isIPv6(const uint8_t* packet, size_t length, bool isIPv6);
    static bool isPortUnReachablePacket_len(const uint8_t* packet, size_t length);

    // The ICMP header, and at least ten bytes from there; null if it is no such packet.
    static const uint8_t* unpackICMPv4Packet_len(const uint8_t* packet, size_t length);
    // The packet itself, which has no header in front; null if it is empty.
    static const uint8_t* unpackICMPv6Packet_len(const uint8_t* packet, size_t length);

    // The address of a socket address as text.
    static std::string formatIPv6Address(const SocketAddress& address) { return AddressText(address); }
    static std::string formatIPv4Address(const SocketAddress& address) { return AddressText(address); }
};

// What the engine receives into, zeroed first, so that what a short packet lacks reads as zeros.
constexpr size_t kTracerouteBufferSize = 200;

// Whether a packet of `length` bytes in a buffer of kTracerouteBufferSize is a router's message that quotes this probe,
// or the target's reply to it. The identifiers are compared as they lie in the probe.
bool IsTimeoutOf(const std::vector<uint8_t>& probe, const uint8_t* buffer, size_t length, bool isIPv6);
bool IsEchoReplyTo(const std::vector<uint8_t>& probe, const uint8_t* buffer, size_t length, bool isIPv6);

}  // namespace Quern

#endif
