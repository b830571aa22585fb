#include "System/NetworkChecker/Traceroute.h"

#include "Support/FakeIcmp.h"
#include "Support/Test.h"
#include "System/NetworkChecker/TracerouteCommon.h"

namespace Quern {
namespace {

using namespace OrvaneTest;

// A router's message about a probe, and the target's reply to one; as sockets of either family give them.
Bytes Timeout(const Bytes& probe, bool isIPv6 = false) {
    Bytes message(48);
    message[0] = isIPv6 ? 3 : 0x45;
    message[9] = 1;
    if (!isIPv6) message[20] = 11;
    message.insert(message.end(), probe.begin(), probe.end());
    return message;
}

Bytes Reply(Bytes probe, bool isIPv6 = false) {
    probe[0] = isIPv6 ? 129 : 0;
    if (isIPv6) return probe;
    Bytes header(20);
    header[0] = 0x45;
    header[9] = 1;
    header.insert(header.end(), probe.begin(), probe.end());
    return header;
}

// The records, one a line with the numbers of milliseconds left out, and whether the target was reached.
std::string Trace(const FakeIcmp::OnSend& onSend, long maxTtl, const char* target = "9.9.9.9") {
    FakeResolver::Install({target});
    IcmpSockets::Use(std::make_shared<FakeIcmp>(onSend));
    std::string text, steps;
    Traceroute::startTracerouteWithHost_totalTTL_stepCallback_finish(
        "h", maxTtl, [&](const TracerouteRecord& record) { steps += std::to_string(record.ttl); },
        [&](const std::vector<TracerouteRecord>& records, bool succeed) {
            for (const TracerouteRecord& record : records) {
                text += record.ip.value_or("-");
                for (const auto& duration : record.recvDurations)
                    text += duration ? " t" : " *";
                text += ", ";
            }
            text += succeed ? "reached" : "not reached";
        });
    return text + " " + steps;
}

TEST(Traceroute, MakesProbesAndReadsPackets) {
    EXPECT_EQ(TracerouteCommon::makeICMPPacketWithID_sequence_isICMPv6(0x0201, 0x0304, false),
              (Bytes{8, 0, 0x90, 0xF9, 1, 2, 3, 4, 99, 0}));
    EXPECT_EQ(TracerouteCommon::makeICMPPacketWithID_sequence_isICMPv6(0x0201, 0x0304, true),
              (Bytes{128, 0, 0, 0, 0, 0, 0, 0, 99, 0}));
    EXPECT_EQ(TracerouteCommon::makeSockaddrWithAddress_port_isIPv6("1.2.3.4", 2002, false),
              (Bytes{16, 2, 7, 0xD2, 1, 2, 3, 4, 0, 0, 0, 0, 0, 0, 0, 0}));
    const Bytes none = TracerouteCommon::makeSockaddrWithAddress_port_isIPv6("no address", 2002, true);
    EXPECT_EQ(none.size(), 28u);
    EXPECT_EQ(AddressText(none), "::");

    Bytes packet = Reply(Bytes(10));
    EXPECT_EQ(TracerouteCommon::unpackICMPv4Packet_len(packet.data(), 30), packet.data() + 20);
    EXPECT_EQ(TracerouteCommon::unpackICMPv4Packet_len(packet.data(), 29), nullptr);
    packet[0] = 0x46;
    EXPECT_EQ(TracerouteCommon::unpackICMPv4Packet_len(packet.data(), 30), nullptr) << "header and ten bytes";
    packet[0] = 0x45;
    packet[20] = 3;
    EXPECT_TRUE(TracerouteCommon::isPortUnReachablePacket_len(packet.data(), 30));
    EXPECT_FALSE(TracerouteCommon::isTimeoutPacket_len_isIPv6(packet.data(), 30, false));
}

TEST(Traceroute, FindsHopsUntilTheTargetAnswers) {
    Bytes earlier;
    int sends = 0;
    const auto threeHops = [&](const Bytes& probe) -> FakeIcmp::Answers {
        Bytes stranger = Timeout(probe);
        stranger[52] ^= 1;
        switch (++sends) {
            case 1:
                return {{stranger, "8.8.8.8"}, {Timeout(probe), "1.1.1.1"}};
            case 2:
            case 3:
                earlier = probe;
                return {};
            case 4:
                return {{Timeout(earlier), "1.1.1.1"}, {Timeout(probe), "2.2.2.2"}};
            case 5:
                return {{Reply(probe), "8.8.8.8"}, {Bytes(1), "8.8.8.8"}, {Timeout(probe), "2.2.2.2"}};
            case 6:
                return {{Timeout(probe), "2.2.2.3"}};
            case 9:
                return {{Reply(probe), "9.9.9.9"}};
            default:
                return {};
        }
    };
    EXPECT_EQ(Trace(threeHops, 30), "1.1.1.1 t * *, 2.2.2.3 t t t, 9.9.9.9 * * t, reached 123");
    const auto silence = [](const Bytes&) { return FakeIcmp::Answers(); };
    EXPECT_EQ(Trace(silence, 1), "- * * *, not reached 1");
    EXPECT_EQ(Trace(silence, 0), "- * * *, not reached 1");
    sends = 0;
    const auto twoHops6 = [&](const Bytes& probe) -> FakeIcmp::Answers {
        return ++sends <= 3 ? FakeIcmp::Answers{{Timeout(probe, true), "fd09::1"}}
                            : FakeIcmp::Answers{{Reply(probe, true), "fd09::9"}};
    };
    EXPECT_EQ(Trace(twoHops6, 5, "fd09::9"), "fd09::1 t t t, fd09::9 t t t, reached 12");
}

TEST(Traceroute, FailsAsItSays) {
    CapturedConsole console;
    const auto icmp = std::make_shared<FakeIcmp>([](const Bytes&) { return FakeIcmp::Answers(); });
    const auto run = [&] {
        IcmpSockets::Use(icmp);
        size_t count = 0;
        Traceroute::startTracerouteWithHost_totalTTL_stepCallback_finish(
            "h", 1, nullptr, [&](const auto& records, bool succeed) { count = records.size() + (succeed ? 100 : 0); });
        return count;
    };
    FakeResolver::Install({"9.9.9.9"});
    icmp->sent = -1;
    icmp->hopsError = EINVAL;
    EXPECT_EQ(run(), 1u);
    EXPECT_THAT(console.Take(),
                ElementsAre("Error setsockopt失败", "TraceRoute send failed caused by: Network is unreachable",
                            "TraceRoute send failed caused by: Network is unreachable",
                            "TraceRoute send failed caused by: Network is unreachable"));
    icmp->timeoutError = EINVAL;
    EXPECT_EQ(run(), 0u) << "no callback";
    icmp->openError = EPERM;
    EXPECT_EQ(run(), 0u);
    EXPECT_THAT(console.Take(), ElementsAre("Error setsockopt失败", "Error 创建socket失败"));
    const auto resolver = FakeResolver::Install();
    resolver->answer.errorDomain = NameResolver::kErrorDomainNetDB;
    EXPECT_EQ(run(), 30u);
}

}  // namespace
}  // namespace Quern
