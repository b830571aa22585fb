#include "System/NetworkChecker/PingPackets.h"

#include <algorithm>
#include <cstring>

#include "System/NetworkChecker/InternetChecksum.h"

namespace Quern {
namespace {

constexpr size_t kIPv4HeaderSize = 20;
constexpr uint8_t kProtocolIcmp = 1;
constexpr uint16_t kAcceptedAfterWrap = 120;

uint16_t BigEndianAt(const uint8_t* bytes) {
    return static_cast<uint16_t>(bytes[0] << 8 | bytes[1]);
}

void PutBigEndian(uint8_t* bytes, uint16_t value) {
    bytes[0] = static_cast<uint8_t>(value >> 8);
    bytes[1] = static_cast<uint8_t>(value);
}

// Whether the checksum of a message is right. Leaves the message as it was.
bool HasRightChecksum(uint8_t* message, size_t length) {
    uint16_t received;
    memcpy(&received, message + 2, sizeof received);
    memset(message + 2, 0, sizeof received);
    const uint16_t calculated = in_cksum(message, length);
    memcpy(message + 2, &received, sizeof received);
    return received == calculated;
}

}  // namespace

PingPackets::Data PingPackets::pingPacketWithType_payload_requiresChecksum(uint8_t type, const Data& payload,
                                                                           bool requiresChecksum) const {
    Data packet(kHeaderSize + payload.size());
    packet[0] = type;
    PutBigEndian(packet.data() + 4, identifier);
    PutBigEndian(packet.data() + 6, nextSequenceNumber);
    std::copy(payload.begin(), payload.end(), packet.begin() + kHeaderSize);
    if (requiresChecksum) {
        const uint16_t checksum = in_cksum(packet.data(), packet.size());
        memcpy(packet.data() + 2, &checksum, sizeof checksum);
    }
    return packet;
}

void PingPackets::AdvanceSequenceNumber() {
    if (++nextSequenceNumber == 0) nextSequenceNumberHasWrapped = true;
}

size_t PingPackets::icmpHeaderOffsetInIPv4Packet(const Data& packet) {
    if (packet.size() < kIPv4HeaderSize + kHeaderSize) return kNotFound;
    if (packet[0] >> 4 != 4 || packet[9] != kProtocolIcmp) return kNotFound;
    const size_t offset = (packet[0] & 0x0Fu) * 4;
    return packet.size() >= offset + kHeaderSize ? offset : kNotFound;
}

bool PingPackets::validatePing4ResponsePacket_sequenceNumber(Data& packet, uint16_t& sequenceNumber) const {
    const size_t offset = icmpHeaderOffsetInIPv4Packet(packet);
    if (offset == kNotFound) return false;
    if (!HasRightChecksum(packet.data() + offset, packet.size() - offset)) return false;
    if (!IsReplyOfOurs(packet.data() + offset, kTypeEchoReply, sequenceNumber)) return false;
    packet.erase(packet.begin(), packet.begin() + static_cast<std::ptrdiff_t>(offset));
    return true;
}

bool PingPackets::validatePing6ResponsePacket_sequenceNumber(const Data& packet, uint16_t& sequenceNumber) const {
    return packet.size() >= kHeaderSize && IsReplyOfOurs(packet.data(), kTypeEchoReply6, sequenceNumber);
}

bool PingPackets::IsReplyOfOurs(const uint8_t* header, uint8_t type, uint16_t& sequenceNumber) const {
    if (header[0] != type || header[1] != 0) return false;
    if (BigEndianAt(header + 4) != identifier) return false;
    const uint16_t number = BigEndianAt(header + 6);
    if (!validateSequenceNumber(number)) return false;
    sequenceNumber = number;
    return true;
}

bool PingPackets::validateSequenceNumber(uint16_t sequenceNumber) const {
    if (!nextSequenceNumberHasWrapped) return sequenceNumber < nextSequenceNumber;
    return static_cast<uint16_t>(nextSequenceNumber - sequenceNumber) < kAcceptedAfterWrap;
}

}  // namespace Quern
