#include "System/NetworkChecker/Linux/IcmpRepair.h"

#include <algorithm>
#include <cstring>

#include "System/NetworkChecker/InternetChecksum.h"

namespace Quern {
namespace {

constexpr size_t kEchoHeader = 8;
constexpr size_t kIPv4Header = 20;
constexpr size_t kIPv6Header = 40;
constexpr uint8_t kProtocolIcmp = 1;
constexpr uint8_t kProtocolIcmp6 = 58;

constexpr uint8_t kEchoReply = 0;
constexpr uint8_t kEchoRequest = 8;
constexpr uint8_t kEchoRequest6 = 128;
constexpr uint8_t kEchoReply6 = 129;

uint16_t WordAt(const uint8_t* bytes) {
    uint16_t word;
    memcpy(&word, bytes, sizeof word);
    return word;
}

void PutWord(uint8_t* bytes, uint16_t word) {
    memcpy(bytes, &word, sizeof word);
}

void PutBigEndian(uint8_t* bytes, size_t value, size_t count) {
    for (size_t i = 0; i < count; ++i)
        bytes[i] = static_cast<uint8_t>(value >> 8 * (count - 1 - i));
}

// The address alone.
Bytes AddressBytes(const SocketAddress& address) {
    switch (FamilyOf(address)) {
        case kFamilyIPv4:
            return Bytes(address).subspan(4, 4);
        case kFamilyIPv6:
            return address.size() < kSocketAddressSizeIPv6 ? Bytes() : Bytes(address).subspan(8, 16);
        default:
            return {};
    }
}

void PutAddress(uint8_t* bytes, const SocketAddress& address, size_t size) {
    const Bytes known = AddressBytes(address);
    if (known.size() == size) std::copy(known.begin(), known.end(), bytes);
}

void AppendIPv4Header(Packet& packet, size_t payload, const Route& route) {
    uint8_t header[kIPv4Header] = {0x45};
    PutBigEndian(header + 2, std::min<size_t>(kIPv4Header + payload, 0xFFFF), 2);
    header[8] = route.timeToLive;
    header[9] = kProtocolIcmp;
    PutAddress(header + 12, route.from, 4);
    PutAddress(header + 16, route.to, 4);
    PutWord(header + 10, in_cksum(header, sizeof header));
    packet.insert(packet.end(), header, header + sizeof header);
}

void AppendIPv6Header(Packet& packet, size_t payload, const Route& route) {
    uint8_t header[kIPv6Header] = {0x60};
    PutBigEndian(header + 4, std::min<size_t>(payload, 0xFFFF), 2);
    header[6] = kProtocolIcmp6;
    header[7] = route.timeToLive;
    PutAddress(header + 8, route.from, 16);
    PutAddress(header + 24, route.to, 16);
    packet.insert(packet.end(), header, header + sizeof header);
}

// The checksum as if the identifier had always been this one (RFC 1624): for where the rest of what it covers is not
// at hand.
void ReplaceIdentifier(uint8_t* echo, uint16_t identifier) {
    uint32_t sum = static_cast<uint16_t>(~WordAt(echo + 2)) + static_cast<uint16_t>(~WordAt(echo + 4)) + identifier;
    sum = (sum >> 16) + (sum & 0xFFFF);
    sum += sum >> 16;
    PutWord(echo + 2, static_cast<uint16_t>(~sum));
    PutWord(echo + 4, identifier);
}

bool IsErrorType(int family, uint8_t type) {
    // Destination unreachable, source quench, redirect, time exceeded, parameter problem; with IPv6 all below 128.
    if (family == kFamilyIPv6) return type >= 1 && type < 128;
    return type == 3 || type == 4 || type == 5 || type == 11 || type == 12;
}

// Whether the bytes are an IP packet, of a request that was sent, to where it was sent.
bool IsQuoteOfOurs(const SentRequests& sent, int family, Bytes quote) {
    if (family == kFamilyIPv6) {
        if (quote.size() < kIPv6Header + kEchoHeader || quote[6] != kProtocolIcmp6) return false;
        const uint8_t* const echo = quote.data() + kIPv6Header;
        return echo[0] == kEchoRequest6 && sent.IsDestination(quote.subspan(24, 16)) && sent.IsSent(echo);
    }
    if (quote.size() < kIPv4Header + kEchoHeader || quote[9] != kProtocolIcmp) return false;
    const size_t header = (quote[0] & 0x0Fu) * 4;
    if (header < kIPv4Header || quote.size() < header + kEchoHeader) return false;
    const uint8_t* const echo = quote.data() + header;
    return echo[0] == kEchoRequest && sent.IsDestination(quote.subspan(16, 4)) && sent.IsSent(echo);
}

}  // namespace

void SentRequests::Remember(Bytes message, const SocketAddress& to) {
    if (message.size() < kEchoHeader) return;
    const int identifier = message[4] << 8 | message[5];
    if (_identifiers.empty())
        _onlyIdentifier = identifier;
    else if (_onlyIdentifier != identifier)
        _onlyIdentifier = -1;
    _identifiers[WordAt(message.data() + 6)] = WordAt(message.data() + 4);
    _destination = to;
}

const uint16_t* SentRequests::IdentifierFor(const uint8_t* echo) const {
    const auto entry = _identifiers.find(WordAt(echo + 6));
    return entry == _identifiers.end() ? nullptr : &entry->second;
}

bool SentRequests::IsSent(const uint8_t* echo) const {
    const uint16_t* const identifier = IdentifierFor(echo);
    return identifier && *identifier == WordAt(echo + 4);
}

bool SentRequests::IsDestination(Bytes address) const {
    const Bytes known = AddressBytes(_destination);
    return std::equal(known.begin(), known.end(), address.begin(), address.end());
}

Packet RestoreReply(const SentRequests& sent, int family, Bytes message, const Route& route) {
    Packet packet;
    if (message.size() < kEchoHeader) return packet;
    const uint16_t* const identifier = sent.IdentifierFor(message.data());
    if (!identifier) return packet;
    packet.reserve(kIPv4Header + message.size());
    if (family == kFamilyIPv4) AppendIPv4Header(packet, message.size(), route);
    packet.insert(packet.end(), message.begin(), message.end());
    uint8_t* const echo = packet.data() + packet.size() - message.size();
    if (family == kFamilyIPv6) {
        ReplaceIdentifier(echo, *identifier);
        return packet;
    }
    // The kernel has checked the checksum. It is made anew, since zero has two forms of which the engine takes one.
    PutWord(echo + 4, *identifier);
    PutWord(echo + 2, 0);
    PutWord(echo + 2, in_cksum(echo, message.size()));
    return packet;
}

Packet RestoreError(const SentRequests& sent, int family, Bytes quote, const IcmpError& error, const Route& route,
                    const SocketAddress& destination) {
    Packet packet;
    if (quote.size() < kEchoHeader) return packet;
    const uint16_t* const identifier = sent.IdentifierFor(quote.data());
    if (!identifier) return packet;

    Route quoted;
    quoted.from = route.to;
    quoted.to = destination;
    quoted.timeToLive = 1;
    const bool isIPv6 = family == kFamilyIPv6;
    const size_t message = kEchoHeader + (isIPv6 ? kIPv6Header : kIPv4Header) + quote.size();
    packet.reserve(kIPv4Header + message);
    if (!isIPv6) AppendIPv4Header(packet, message, route);
    const size_t start = packet.size();
    packet.insert(packet.end(), {error.type, error.code, 0, 0});
    packet.resize(packet.size() + 4);
    PutBigEndian(packet.data() + start + 4, error.rest, 4);
    if (isIPv6)
        AppendIPv6Header(packet, quote.size(), quoted);
    else
        AppendIPv4Header(packet, quote.size(), quoted);
    packet.insert(packet.end(), quote.begin(), quote.end());
    ReplaceIdentifier(packet.data() + packet.size() - quote.size(), *identifier);
    if (!isIPv6) PutWord(packet.data() + start + 2, in_cksum(packet.data() + start, message));
    return packet;
}

bool IsForUs(const SentRequests& sent, int family, Bytes packet) {
    Bytes message = packet;
    if (family != kFamilyIPv6) {
        if (packet.size() < kIPv4Header || packet[0] >> 4 != 4 || packet[9] != kProtocolIcmp) return false;
        const size_t header = (packet[0] & 0x0Fu) * 4;
        if (header < kIPv4Header || packet.size() < header) return false;
        message = packet.subspan(header);
    }
    if (message.size() < kEchoHeader) return false;
    if (message[0] == (family == kFamilyIPv6 ? kEchoReply6 : kEchoReply)) return sent.IsSent(message.data());
    return IsErrorType(family, message[0]) && IsQuoteOfOurs(sent, family, message.subspan(kEchoHeader));
}

}  // namespace Quern
