#include "System/NetworkChecker/Linux/IcmpRepair.h"

#include "Support/FakeIcmp.h"
#include "Support/Test.h"
#include "System/NetworkChecker/InternetChecksum.h"
#include "System/NetworkChecker/PingPackets.h"

namespace Quern {
namespace {

using OrvaneTest::Address;

constexpr uint16_t kKernels = 0x7777;  // the identifier that the kernel puts in the place of ours

Packet Echo(uint8_t type, uint16_t identifier, int sequence) {
    PingPackets packets(identifier);
    for (int i = 0; i < sequence; ++i)
        packets.AdvanceSequenceNumber();
    return packets.pingPacketWithType_payload_requiresChecksum(type, Packet{1, 2, 3}, true);
}

Packet Part(const Packet& packet, size_t from) {
    return {packet.begin() + static_cast<std::ptrdiff_t>(from), packet.end()};
}

TEST(IcmpRepair, GivesARepliesHeaderAndIdentifierBack) {
    SentRequests sent;
    sent.Remember(Echo(8, 0x0102, 5), Address("1.2.3.4"));
    Route route;
    route.from = Address("1.2.3.4");
    route.to = Address("9.8.7.6");
    route.timeToLive = 61;
    const Packet packet = RestoreReply(sent, kFamilyIPv4, Echo(0, kKernels, 5), route);
    Packet header(packet.begin(), packet.begin() + 20);
    EXPECT_EQ(in_cksum(header.data(), header.size()), 0);
    header[10] = header[11] = 0;
    EXPECT_EQ(header, (Packet{0x45, 0, 0, 31, 0, 0, 0, 0, 61, 1, 0, 0, 1, 2, 3, 4, 9, 8, 7, 6}));
    EXPECT_EQ(Part(packet, 20), Echo(0, 0x0102, 5));
    EXPECT_TRUE(RestoreReply(sent, kFamilyIPv4, Echo(0, kKernels, 6), route).empty()) << "not asked for";
    EXPECT_TRUE(RestoreReply(sent, kFamilyIPv4, Packet(7), route).empty());
    EXPECT_EQ(RestoreReply(sent, kFamilyIPv6, Echo(129, kKernels, 5), route), Echo(129, 0x0102, 5));

    // All zero: of the two forms of the checksum the engine takes one.
    sent.Remember(Packet(9), Address("1.2.3.4"));
    Packet zero = {0, 0, 0x88, 0x88, 0x77, 0x77, 0, 0, 0};
    EXPECT_EQ(Part(RestoreReply(sent, kFamilyIPv4, zero, route), 20), (Packet{0, 0, 0xFF, 0xFF, 0, 0, 0, 0, 0}));
}

TEST(IcmpRepair, RebuildsARoutersMessage) {
    SentRequests sent;
    sent.Remember(Echo(8, 0x0102, 5), Address("1.2.3.4"));
    Route route;
    route.from = Address("10.0.0.1");
    const SocketAddress to = Address("1.2.3.4");
    const Packet packet = RestoreError(sent, kFamilyIPv4, Echo(8, kKernels, 5), {11, 0, 0}, route, to);
    EXPECT_EQ(Packet(packet.begin() + 12, packet.begin() + 16), (Packet{10, 0, 0, 1}));
    EXPECT_EQ(packet[20], 11);
    EXPECT_EQ(in_cksum(packet.data() + 20, packet.size() - 20), 0);
    EXPECT_EQ(packet[28], 0x45);
    EXPECT_EQ(Packet(packet.begin() + 44, packet.begin() + 48), (Packet{1, 2, 3, 4}));
    EXPECT_EQ(Part(packet, 48), Echo(8, 0x0102, 5)) << "so that the identifier is at byte 52";
    EXPECT_TRUE(RestoreError(sent, kFamilyIPv4, Echo(8, kKernels, 4), {11, 0, 0}, route, to).empty());

    // What the repair made is what a raw socket gives, and is known there; that of others is not.
    EXPECT_TRUE(IsForUs(sent, kFamilyIPv4, packet));
    for (size_t byte : {0u, 9u, 20u, 28u, 37u, 47u, 48u, 53u, 55u}) {
        Packet other = packet;
        other[byte] ^= 1;
        if (byte == 0) other[byte] = 0x65;
        EXPECT_FALSE(IsForUs(sent, kFamilyIPv4, other)) << byte;
    }
    for (size_t size = 0; size < 56; ++size)
        EXPECT_FALSE(IsForUs(sent, kFamilyIPv4, Packet(packet.begin(), packet.begin() + size))) << size;

    SentRequests sent6;
    sent6.Remember(Echo(128, 0, 0), Address("fd09::1"));
    route.from = Address("fd09::2");
    const Packet packet6 =
        RestoreError(sent6, kFamilyIPv6, Echo(128, kKernels, 0), {3, 0, 0}, route, Address("fd09::1"));
    EXPECT_EQ(packet6[0], 3);
    EXPECT_EQ(Part(packet6, 48), Echo(128, 0, 0));
    EXPECT_TRUE(IsForUs(sent6, kFamilyIPv6, packet6));
    sent6.Remember(Echo(128, 0, 0), Address("fd09::3"));
    EXPECT_FALSE(IsForUs(sent6, kFamilyIPv6, packet6)) << "another's, of the same numbers";
}

}  // namespace
}  // namespace Quern
