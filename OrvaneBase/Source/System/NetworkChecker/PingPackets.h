// The packets of one ping run: requests made, replies recognised.
//
//   offset  size
//        0     1  type: 8 for an IPv4 request, 128 for an IPv6 one; replies are 0 and 129
//        1     1  code: 0
//        2     2  checksum (RFC 1071); 0 in an IPv6 request, where the kernel fills it in
//        4     2  identifier, big-endian
//        6     2  sequence number, big-endian
//        8        payload
//
// RFC 792 and RFC 4443 tell more.
#ifndef ORVANE_SYSTEM_NETWORK_CHECKER_PING_PACKETS_H
#define ORVANE_SYSTEM_NETWORK_CHECKER_PING_PACKETS_H

#include <cstddef>
#include <cstdint>
#include <vector>

namespace Quern {

class PingPackets {
public:
    using Data = std::vector<uint8_t>;

    static constexpr uint8_t kTypeEchoRequest = 8;
    static constexpr uint8_t kTypeEchoReply = 0;
    static constexpr uint8_t kTypeEchoRequest6 = 128;
    static constexpr uint8_t kTypeEchoReply6 = 129;
    static constexpr size_t kHeaderSize = 8;
    static constexpr size_t kNotFound = INT64_MAX;

    explicit PingPackets(uint16_t itsIdentifier) : identifier(itsIdentifier) {}

    // A request with the next sequence number, which it does not use up.
    Data pingPacketWithType_payload_requiresChecksum(uint8_t type, const Data& payload, bool requiresChecksum) const;
    // Uses the sequence number up.
    void AdvanceSequenceNumber();

    // Where the ICMP header of an IPv4 packet begins; kNotFound if it is none, or too short for it.
    static size_t icmpHeaderOffsetInIPv4Packet(const Data& packet);

    // Whether a packet, as it came from the socket, is a reply to a request of this run. If so, sets the sequence
    // number, and an IPv4 packet loses its IP header; otherwise both are left as they are.
    bool validatePing4ResponsePacket_sequenceNumber(Data& packet, uint16_t& sequenceNumber) const;
    bool validatePing6ResponsePacket_sequenceNumber(const Data& packet, uint16_t& sequenceNumber) const;
    // Whether a request of that number may be still under way: any before the next one, and once the numbers have
    // wrapped, the 120 behind it.
    bool validateSequenceNumber(uint16_t sequenceNumber) const;

    const uint16_t identifier;
    uint16_t nextSequenceNumber = 0;
    bool nextSequenceNumberHasWrapped = false;

private:
    bool IsReplyOfOurs(const uint8_t* header, uint8_t type, uint16_t& sequenceNumber) const;
};

}  // namespace Quern

#endif
