// Both validators of the ping engine: whatever comes, what passes is a reply to a request that may be under way, and
// what does not pass is left as it was.
#include <cstdlib>

#include "System/NetworkChecker/InternetChecksum.h"
#include "System/NetworkChecker/PingPackets.h"

namespace {

void Require(bool condition) {
    if (!condition) abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size < 2) return 0;
    Quern::PingPackets packets(0x1234);
    packets.nextSequenceNumber = static_cast<uint16_t>(data[0] << 8 | data[1]);
    packets.nextSequenceNumberHasWrapped = data[0] & 1;
    const Quern::PingPackets::Data input(data + 2, data + size);

    uint16_t number = 0;
    Quern::PingPackets::Data packet = input;
    const size_t offset = Quern::PingPackets::icmpHeaderOffsetInIPv4Packet(packet);
    if (packets.validatePing4ResponsePacket_sequenceNumber(packet, number)) {
        Require(offset + packet.size() == input.size() && packet.size() >= 8);
        Require(packet[0] == 0 && packet[1] == 0 && packet[4] == 0x12 && packet[5] == 0x34);
        Require(packets.validateSequenceNumber(number));
    } else {
        Require(packet == input);
    }
    if (packets.validatePing6ResponsePacket_sequenceNumber(input, number)) {
        Require(input[0] == 129 && input[4] == 0x12 && input[5] == 0x34 && packets.validateSequenceNumber(number));
    }
    return 0;
}
