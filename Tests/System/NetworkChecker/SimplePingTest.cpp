#include "System/NetworkChecker/SimplePing.h"

#include "Support/FakeIcmp.h"
#include "Support/Test.h"
#include "System/NetworkChecker/InternetChecksum.h"

namespace Quern {
namespace {

using namespace OrvaneTest;

// The reply to a request, as an IPv4 socket gives it.
PingPackets::Data ReplyTo(PingPackets::Data packet) {
    packet[0] = 0;
    packet[2] = packet[3] = 0;
    const uint16_t checksum = in_cksum(packet.data(), packet.size());
    memcpy(&packet[2], &checksum, 2);
    PingPackets::Data whole(20);
    whole[0] = 0x45;
    whole[9] = 1;
    whole.insert(whole.end(), packet.begin(), packet.end());
    return whole;
}

TEST(PingPackets, TellsWhichNumbersAreUnderWay) {
    PingPackets packets(1);
    EXPECT_FALSE(packets.validateSequenceNumber(0));
    packets.nextSequenceNumber = 65534;
    EXPECT_TRUE(packets.validateSequenceNumber(65533));
    EXPECT_FALSE(packets.validateSequenceNumber(65534));
    for (int i = 0; i < 3; ++i)
        packets.AdvanceSequenceNumber();
    EXPECT_EQ(packets.nextSequenceNumber, 1);
    EXPECT_TRUE(packets.validateSequenceNumber(65500));
    EXPECT_TRUE(packets.validateSequenceNumber(65418));
    EXPECT_FALSE(packets.validateSequenceNumber(65417));
    EXPECT_FALSE(packets.validateSequenceNumber(2));
}

TEST(PingPackets, KnowsItsReplies) {
    PingPackets packets(0xA1B2);
    packets.AdvanceSequenceNumber();
    packets.AdvanceSequenceNumber();
    PingPackets::Data request = packets.pingPacketWithType_payload_requiresChecksum(8, {7, 8, 9}, true);
    EXPECT_EQ(request, (PingPackets::Data{8, 0, 0x46, 0x43, 0xA1, 0xB2, 0, 2, 7, 8, 9}));
    packets.AdvanceSequenceNumber();
    const PingPackets::Data good = ReplyTo(request);
    PingPackets::Data packet = good;
    uint16_t number = 99;
    ASSERT_TRUE(packets.validatePing4ResponsePacket_sequenceNumber(packet, number));
    EXPECT_EQ(number, 2);
    EXPECT_EQ(packet, PingPackets::Data(good.begin() + 20, good.end()));

    // One byte changed each, with a checksum that fits where the byte is covered by it.
    const std::pair<size_t, uint8_t> changes[] = {{0, 0x65}, {0, 0x4F}, {9, 2}, {20, 8}, {21, 1}, {24, 0}, {27, 3}};
    for (const auto& [at, value] : changes) {
        packet = good;
        packet[at] = value;
        if (at >= 20) {
            const PingPackets::Data fitting = ReplyTo({packet.begin() + 20, packet.end()});
            std::copy(fitting.begin() + 22, fitting.begin() + 24, packet.begin() + 22);
            if (at == 20) packet[22] ^= 8;
        }
        EXPECT_FALSE(packets.validatePing4ResponsePacket_sequenceNumber(packet, number)) << at;
    }
    packet = good;
    packet[22] ^= 1;
    const PingPackets::Data wrong = packet;
    EXPECT_FALSE(packets.validatePing4ResponsePacket_sequenceNumber(packet, number)) << "checksum";
    EXPECT_EQ(packet, wrong) << "left as it was";
    packet.resize(27);
    EXPECT_EQ(PingPackets::icmpHeaderOffsetInIPv4Packet(packet), PingPackets::kNotFound);

    PingPackets::Data packet6(good.begin() + 20, good.end());
    EXPECT_FALSE(packets.validatePing6ResponsePacket_sequenceNumber(packet6, number));
    packet6[0] = 129;
    EXPECT_TRUE(packets.validatePing6ResponsePacket_sequenceNumber(packet6, number)) << "whatever the checksum";
    packet6.resize(7);
    EXPECT_FALSE(packets.validatePing6ResponsePacket_sequenceNumber(packet6, number));
}

struct Heard : SimplePingDelegate {
    void simplePing_didStartWithAddress(OrvaneCoreSimplePing& pinger, const SocketAddress& address) override {
        events.push_back("start " + AddressText(address));
        for (int i = 0; i < sends; ++i)
            pinger.sendPingWithData(nullptr);
    }
    void simplePing_didFailWithError(OrvaneCoreSimplePing& pinger, const PingError& error) override {
        events.push_back(std::string("fail ") + error.domain + " " + std::to_string(error.code) + " " +
                         std::to_string(error.getAddrInfoFailure));
        EXPECT_TRUE(pinger.hostAddress.empty()) << "stopped before";
    }
    void simplePing_didSendPacket_sequenceNumber(OrvaneCoreSimplePing&, const Data& packet, uint16_t number) override {
        events.push_back("sent " + std::to_string(number) + std::string(packet.begin() + 8, packet.end()));
    }
    void simplePing_didFailToSendPacket_sequenceNumber_error(OrvaneCoreSimplePing&, const Data&, uint16_t number,
                                                             const PingError& error) override {
        events.push_back("unsent " + std::to_string(number) + " " + error.Description());
    }
    void simplePing_didReceivePingResponsePacket_sequenceNumber(OrvaneCoreSimplePing& pinger, const Data& packet,
                                                                uint16_t number) override {
        events.push_back("reply " + std::to_string(number) + " of " + std::to_string(packet.size()));
        if (number + 1 == sends) pinger.stop();
    }
    void simplePing_didReceiveUnexpectedPacket(OrvaneCoreSimplePing&, const Data& packet) override {
        events.push_back("unexpected of " + std::to_string(packet.size()));
    }

    // Until the engine has stopped.
    std::vector<std::string> Run(OrvaneCoreSimplePing::AddressStyle style) {
        events.clear();
        const auto pinger = OrvaneCoreSimplePing::initWithHostName("h");
        pinger->addressStyle = style;
        pinger->delegate = this;
        pinger->start();
        RunLoop::Current()->RunUntil(RunLoop::Clock::now() + std::chrono::seconds(20));
        pinger->stop();
        return events;
    }

    int sends = 1;
    std::vector<std::string> events;
};

TEST(SimplePing, ChoosesAnAddressAndSends) {
    const auto resolver = FakeResolver::Install({"fd09::1", "1.2.3.4"});
    const auto icmp = std::make_shared<FakeIcmp>([](const Bytes& packet) {
        const auto reply = ReplyTo(packet);
        return FakeIcmp::Answers{{Bytes(27), "1.1.1.1"}, {reply, "1.2.3.4"}};
    });
    IcmpSockets::Use(icmp);
    Heard heard;
    const std::string bottles(26, ' ');
    EXPECT_THAT(heard.Run(OrvaneCoreSimplePing::kAddressStyleIPv4),
                ElementsAre("start 1.2.3.4", "sent 0" + bottles + "99 bottles of beer on the wall", "unexpected of 27",
                            "reply 0 of 64"));
    // One that stopped in the middle of what had come is told nothing more.
    heard.sends = 2;
    EXPECT_EQ(heard.Run(OrvaneCoreSimplePing::kAddressStyleIPv4).back(), "reply 1 of 64");

    resolver->answer.addresses = {Address("fd09::1")};
    EXPECT_THAT(heard.Run(OrvaneCoreSimplePing::kAddressStyleIPv4), ElementsAre("fail kCFErrorDomainCFNetwork 1 0"));
    icmp->openError = EACCES;
    EXPECT_THAT(heard.Run(OrvaneCoreSimplePing::kAddressStyleAny), ElementsAre("fail NSPOSIXErrorDomain 13 0"));
    resolver->answer = {NameResolver::kErrorDomainNetDB, -2, {}};
    EXPECT_THAT(heard.Run(OrvaneCoreSimplePing::kAddressStyleAny), ElementsAre("fail kCFErrorDomainCFNetwork 2 -2"));
}

TEST(SimplePing, TellsWhatFailsAfterTheStart) {
    FakeResolver::Install({"1.2.3.4"});
    const auto icmp = std::make_shared<FakeIcmp>([](const Bytes&) {
        return FakeIcmp::Answers{{{}, ""}};  // an error
    });
    icmp->receiveError = ENETDOWN;
    IcmpSockets::Use(icmp);
    Heard heard;
    EXPECT_EQ(heard.Run(OrvaneCoreSimplePing::kAddressStyleAny).back(),
              "fail NSPOSIXErrorDomain " + std::to_string(ENETDOWN) + " 0");
    for (const auto& [sent, text] :
         {std::pair<ssize_t, const char*>{-1, "Network is unreachable"}, {5, "No buffer space available"}}) {
        icmp->sent = sent;
        struct Stopping : Heard {
            void simplePing_didFailToSendPacket_sequenceNumber_error(OrvaneCoreSimplePing& pinger, const Data& packet,
                                                                     uint16_t number, const PingError& error) override {
                Heard::simplePing_didFailToSendPacket_sequenceNumber_error(pinger, packet, number, error);
                if (number == 1) pinger.stop();
            }
        } stopping;
        stopping.sends = 2;
        EXPECT_THAT(stopping.Run(OrvaneCoreSimplePing::kAddressStyleAny),
                    ElementsAre("start 1.2.3.4", std::string("unsent 0 ") + text, std::string("unsent 1 ") + text));
    }
}

}  // namespace
}  // namespace Quern
