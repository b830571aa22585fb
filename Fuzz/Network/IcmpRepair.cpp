// What the kernel hands up on ICMP sockets: the first byte says of which kind, the rest is a message, a quote or a
// packet. What was repaired is accepted where a raw socket's packets are sorted, and reads as the engine expects it.
#include "System/NetworkChecker/Linux/IcmpRepair.h"

#include <algorithm>
#include <cstdlib>

#include "System/NetworkChecker/InternetChecksum.h"
#include "System/NetworkChecker/PingPackets.h"

namespace {

using namespace Quern;

constexpr uint16_t kIdentifier = 0x1234;
constexpr uint8_t kBytes4[] = {10, 0, 0, 1};
constexpr uint8_t kBytes6[16] = {0xFD, 9};

void Require(bool condition) {
    if (!condition) abort();
}

SentRequests Sent(bool isIPv6, const SocketAddress& target, PingPackets& requests) {
    SentRequests sent;
    for (int i = 0; i < 3; ++i) {
        const auto packet = requests.pingPacketWithType_payload_requiresChecksum(isIPv6 ? 128 : 8, {1, 2}, !isIPv6);
        sent.Remember(packet, target);
        requests.AdvanceSequenceNumber();
    }
    return sent;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const bool isIPv6 = data[0] & 1;
    const int family = isIPv6 ? kFamilyIPv6 : kFamilyIPv4;
    const SocketAddress target = MakeSocketAddress(family, isIPv6 ? kBytes6 : kBytes4, 0);
    PingPackets requests(kIdentifier);
    const SentRequests sent = Sent(isIPv6, target, requests);
    // A block of its own, so that the first byte too far is seen.
    const std::vector<uint8_t> input(data + 1, data + size);
    Route route;
    route.from = target;

    IsForUs(sent, family, input);
    if (Packet reply = RestoreReply(sent, family, input, route); !reply.empty()) {
        Require(reply.size() == input.size() + (isIPv6 ? 0 : 20));
        const size_t header = isIPv6 ? 0 : 20;
        Require(input.size() < 8 || reply[header] == input[0]);
        uint16_t number = 0;
        const bool isValid = isIPv6 ? requests.validatePing6ResponsePacket_sequenceNumber(reply, number)
                                    : requests.validatePing4ResponsePacket_sequenceNumber(reply, number);
        Require(isValid == (input[0] == (isIPv6 ? 129 : 0) && input[1] == 0 && input.size() <= 0xFFFF));
        Require(!isValid || number < 3);
    }
    const IcmpError error{static_cast<uint8_t>(isIPv6 ? 3 : 11), 0, 0};
    if (const Packet message = RestoreError(sent, family, input, error, route, target); !message.empty()) {
        const size_t quote = 48;  // in front of it come 20, 8 and 20 bytes, or 8 and 40
        Require(message.size() == input.size() + quote);
        Require(message[quote + 4] == kIdentifier >> 8 && message[quote + 5] == (kIdentifier & 0xFF));
        const bool isRequest = input[0] == (isIPv6 ? 128 : 8);
        Require(IsForUs(sent, family, message) == isRequest);
        if (!isIPv6 && message.size() < 0xFFFF) Require(in_cksum(message.data() + 20, message.size() - 20) == 0);
    }
    return 0;
}
