#include "System/NetworkChecker/TracerouteCommon.h"

#include <arpa/inet.h>

#include <cstring>

#include "Base/ConsoleSink.h"
#include "System/NetworkChecker/InternetChecksum.h"
#include "System/NetworkChecker/NameResolver.h"

namespace Quern {
namespace {

constexpr size_t kProbeSize = 10;
constexpr size_t kIPv4HeaderSize = 20;
constexpr uint8_t kProtocolIcmp = 1;
constexpr uint16_t kProbeMark = 99;

// In a router's message, where the identifier of the quoted probe is: behind two IP headers of 20 bytes, an ICMP header
// and half of another; with IPv6 behind one of 40, since the message comes without its own.
constexpr size_t kQuotedIdentifier = 52;
// In a probe, and in the reply to it.
constexpr size_t kIdentifier = 4;
constexpr size_t kIdentifierSize = 2;

// -1, which no type is, for what is no ICMP packet.
int TypeOf(const uint8_t* packet, size_t length, bool isIPv6) {
    const uint8_t* const icmp = isIPv6 ? TracerouteCommon::unpackICMPv6Packet_len(packet, length)
                                       : TracerouteCommon::unpackICMPv4Packet_len(packet, length);
    return icmp ? icmp[0] : -1;
}

}  // namespace

uint16_t TracerouteCommon::makeChecksumFor_len(const void* data, size_t length) {
    return in_cksum(data, length);
}

SocketAddress TracerouteCommon::makeSockaddrWithAddress_port_isIPv6(const std::string& address, int port, bool isIPv6) {
    uint8_t bytes[16] = {};
    if (inet_pton(isIPv6 ? AF_INET6 : AF_INET, address.c_str(), bytes) < 0) {
        PlatformLog("创建sockaddr结构体失败");
        return {};
    }
    return MakeSocketAddress(isIPv6 ? kFamilyIPv6 : kFamilyIPv4, bytes, static_cast<uint16_t>(port));
}

std::vector<uint8_t> TracerouteCommon::makeICMPPacketWithID_sequence_isICMPv6(uint16_t identifier, uint16_t sequence,
                                                                              bool isICMPv6) {
    std::vector<uint8_t> packet(kProbeSize);
    packet[0] = isICMPv6 ? 128 : 8;
    memcpy(&packet[8], &kProbeMark, sizeof kProbeMark);
    if (isICMPv6) return packet;
    memcpy(&packet[4], &identifier, sizeof identifier);
    packet[6] = static_cast<uint8_t>(sequence >> 8);
    packet[7] = static_cast<uint8_t>(sequence);
    const uint16_t checksum = makeChecksumFor_len(packet.data(), packet.size());
    memcpy(&packet[2], &checksum, sizeof checksum);
    return packet;
}

std::vector<std::string> TracerouteCommon::resolveHost(const std::string& host) {
    std::vector<SocketAddress> addresses;
    std::vector<std::string> texts;
    if (!ResolveHost(host, addresses)) return texts;
    for (const SocketAddress& address : addresses) {
        if (FamilyOf(address) == kFamilyIPv4)
            texts.push_back(formatIPv4Address(address));
        else if (FamilyOf(address) == kFamilyIPv6)
            texts.push_back(formatIPv6Address(address));
    }
    return texts;
}

bool TracerouteCommon::isEchoReplyPacket_len_isIPv6(const uint8_t* packet, size_t length, bool isIPv6) {
    return TypeOf(packet, length, isIPv6) == (isIPv6 ? 129 : 0);
}

bool TracerouteCommon::isTimeoutPacket_len_isIPv6(const uint8_t* packet, size_t length, bool isIPv6) {
    return TypeOf(packet, length, isIPv6) == (isIPv6 ? 3 : 11);
}

bool TracerouteCommon::isPortUnReachablePacket_len(const uint8_t* packet, size_t length) {
    return TypeOf(packet, length, false) == 3;
}

const uint8_t* TracerouteCommon::unpackICMPv4Packet_len(const uint8_t* packet, size_t length) {
    if (length < kIPv4HeaderSize + kProbeSize) return nullptr;
    if (packet[0] >> 4 != 4 || packet[9] != kProtocolIcmp) return nullptr;
    const size_t header = (packet[0] & 0x0Fu) * 4;
    return header + kProbeSize > length ? nullptr : packet + header;
}

const uint8_t* TracerouteCommon::unpackICMPv6Packet_len(const uint8_t* packet, size_t length) {
    return length == 0 ? nullptr : packet;
}

bool IsTimeoutOf(const std::vector<uint8_t>& probe, const uint8_t* buffer, size_t length, bool isIPv6) {
    return TracerouteCommon::isTimeoutPacket_len_isIPv6(buffer, length, isIPv6) &&
           memcmp(buffer + kQuotedIdentifier, probe.data() + kIdentifier, kIdentifierSize) == 0;
}

bool IsEchoReplyTo(const std::vector<uint8_t>& probe, const uint8_t* buffer, size_t length, bool isIPv6) {
    if (!TracerouteCommon::isEchoReplyPacket_len_isIPv6(buffer, length, isIPv6)) return false;
    const uint8_t* const icmp = isIPv6 ? TracerouteCommon::unpackICMPv6Packet_len(buffer, kTracerouteBufferSize)
                                       : TracerouteCommon::unpackICMPv4Packet_len(buffer, kTracerouteBufferSize);
    return icmp && memcmp(icmp + kIdentifier, probe.data() + kIdentifier, kIdentifierSize) == 0;
}

}  // namespace Quern
