// The built-in sources, on links that really come and go and on messages of the kernel's making.
#include <linux/nl80211.h>
#include <netlink/genl/genl.h>
#include <sys/resource.h>

#include "Support/FakeReachability.h"
#include "Support/NetworkNamespace.h"
#include "Support/Test.h"
#include "System/Application/MainRunLoop.h"
#include "System/Network/AReachability.h"
#include "System/Network/CNetwork.h"
#include "System/Network/Linux/Netlink.h"
#include "System/Network/Linux/Nl80211.h"
#include "System/Network/Linux/RouteReader.h"

namespace Quern {
namespace {

using namespace OrvaneTest;

struct Told : CNetworkObserver {
    void OnNetworkStateChanged(ANetworkState state) override { states += std::to_string(state); }
    std::string states;
};

// Runs the main loop until the states have come; one too many comes with the next.
std::string Await(Told& told, size_t count) {
    WaitFor([&] { return MainRunLoop::Current().RunPending(), told.states.size() >= count; });
    return std::exchange(told.states, {});
}

uint32_t FlagsOf(const std::unique_ptr<AReachability>& target) {
    return target->reachabilityFlags();
}

TEST(RoutingSockets, TellEachChangeOnce) {
    if (!EnterOwnNetwork()) GTEST_SKIP() << "needs the right to make network namespaces";
    INetwork* const network = gs_OrvaneNetwork();
    Told told;
    network->AddObserver(&told);
    EXPECT_EQ(network->GetNetworkState(), kANetworkNotReachable);
    // Of a kind that libnl cannot parse, on a kernel that has such: it stands throughout and changes nothing.
    RunIp("route add 10.98.0.0/24 encap ip id 5 dst 1.2.3.4 dev lo\n");
    const struct {
        std::string change;
        std::string told;
    } kSteps[] = {
        {Cable("eth0", 1) + DefaultRoute("eth0", 1, 100), "2"},
        {"link set eth0far down\n", "0"},
        {"link set eth0far up\n", "2"},
        {"address add 10.1.0.9/24 dev eth0\nroute replace default via 10.1.0.1 dev eth0 metric 100 src 10.1.0.9\n",
         "2"},
        {"route replace default via 10.1.0.7 dev eth0 metric 100 src 10.1.0.9\n", "2"},
        {"link add dummy0 type veth peer name dummy1\nlink set dummy0 up\naddress add 10.9.0.1/24 dev dummy0\n", ""},
        {Cable("wwan0", 2) + DefaultRoute("wwan0", 2, 200), ""},
        {"link set eth0far down\n", "01"},
        {"link set eth0far up\n", "02"},
        {"route add default via 10.2.0.1 dev wwan0 metric 1 table 77\n", ""},
        {DefaultRoute("wwan0", 2, 50), "01"},
        {"link set wwan0 down\n", "02"},
        {"link set wwan0 up\n" + DefaultRoute("wwan0", 2, 50), "01"},
        {"link delete eth0\n", ""},
        {"link delete wwan0\n", "0"},
        {"route add unreachable default\n", ""},
        {Cable("eth1", 3) + "address add fd09::2/64 dev eth1 nodad\nroute add default via fd09::1 dev eth1\n", "2"},
        {"address del fd09::2/64 dev eth1\n", "2"},
    };
    for (const auto& step : kSteps) {
        ASSERT_TRUE(RunIp(step.change)) << step.change;
        if (step.told.empty()) {  // what must not be told has its quiet period to itself
            WaitFor([] { return MainRunLoop::Current().RunPending(), false; }, std::chrono::milliseconds(600));
        }
        EXPECT_EQ(Await(told, step.told.size()), step.told) << step.change;
    }
    ASSERT_TRUE(RunIp("link delete eth1\n"));
    const std::string other = "address add 10.8.0.1/32 dev lo\naddress delete 10.8.0.1/32 dev lo\n";
    EXPECT_TRUE(WaitFor([&] { return RunIp(other) && Await(told, 0) == "0"; }))
        << "other changes without end do not hold this one up";
}

TEST(RoutingSockets, TellNothingWhileTheyCannotRead) {
    if (!EnterOwnNetwork()) GTEST_SKIP() << "needs the right to make network namespaces";
    Told told;
    gs_OrvaneNetwork()->AddObserver(&told);
    ASSERT_TRUE(RunIp(Cable("eth0", 1) + DefaultRoute("eth0", 1, 100)));
    ASSERT_EQ(Await(told, 1), "2");
    ASSERT_TRUE(RunIp("route replace default via 10.1.0.7 dev eth0 metric 100\n"));
    rlimit before{};
    ASSERT_EQ(getrlimit(RLIMIT_NOFILE, &before), 0);
    const int next = dup(STDERR_FILENO);
    close(next);
    const rlimit none{static_cast<rlim_t>(next), before.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
    Way way;
    EXPECT_FALSE(ReadDefaultWay(way));
    WaitFor([] { return MainRunLoop::Current().RunPending(), false; }, std::chrono::milliseconds(600));
    EXPECT_EQ(Await(told, 0), "") << "a failed read is no loss";
    ASSERT_EQ(setrlimit(RLIMIT_NOFILE, &before), 0);
    EXPECT_EQ(Await(told, 1), "2") << "the change is read once it can be";
}

TEST(RoutingSockets, TellTheWayToEachTarget) {
    if (!EnterOwnNetwork()) GTEST_SKIP() << "needs the right to make network namespaces";
    const auto wifi = FakeWifi::Install();
    const auto local = AReachability::reachabilityForLocalWiFi();
    EXPECT_EQ(FlagsOf(local), 0u);
    EXPECT_EQ(FlagsOf(AReachability::reachabilityWithHostName("nowhere.invalid")), 0u);
    ASSERT_TRUE(RunIp(Cable("wlan1", 1) + Cable("ppp0", 2) + DefaultRoute("ppp0", 2, 9)));
    EXPECT_EQ(FlagsOf(local), 0x20002u);
    EXPECT_EQ(local->currentDetailReachabilityStatus(), 2);
    EXPECT_EQ(FlagsOf(AReachability::reachabilityWithAddress({10, 1, 0, 77})), 0x20002u);
    EXPECT_EQ(FlagsOf(AReachability::reachabilityWithAddress({10, 1, 0, 2})), 0x30002u);
    EXPECT_EQ(FlagsOf(AReachability::reachabilityWithAddress({198, 51, 100, 1})), 0x40002u);
    EXPECT_EQ(FlagsOf(AReachability::reachabilityWithHostName("2001:db8::1")), 0u);
    EXPECT_EQ(FlagsOf(AReachability::reachabilityWithHostName("localhost")), 0x30002u);
    Way way;
    EXPECT_TRUE(ReadDefaultWay(way));
    EXPECT_EQ(way, (Way{0x40002, "ppp0", "10.2.0.1", "10.2.0.2"}));
    ASSERT_TRUE(RunIp("link set wlan1far down\nroute add blackhole 10.7.0.0/16\n"));
    EXPECT_TRUE(WaitFor([&] { return FlagsOf(local) == 0; }));
    EXPECT_EQ(FlagsOf(AReachability::reachabilityWithAddress({10, 7, 0, 1})), 0u);

    FakeWifi::Use(nullptr);
    EXPECT_TRUE(WifiSource::Current().CNCopySupportedInterfaces().empty()) << "cables are no wireless interfaces";
    EXPECT_EQ(WifiSource::Current().CNCopyCurrentNetworkInfo("wlan1").ssid, "");
}

NetlinkMessage Message() {
    NetlinkMessage message(nlmsg_alloc());
    genlmsg_put(message.get(), 0, 0, 16, 0, 0, 0, 0);
    return message;
}

NetlinkMessage Bss(uint32_t status, const std::string& elements) {
    NetlinkMessage message = Message();
    nlattr* const nest = nla_nest_start(message.get(), NL80211_ATTR_BSS);
    nla_put(message.get(), NL80211_BSS_BSSID, 6, "\x02\xAB\0\0\0\1");
    nla_put(message.get(), NL80211_BSS_INFORMATION_ELEMENTS, static_cast<int>(elements.size()), elements.data());
    nla_put_u32(message.get(), NL80211_BSS_STATUS, status);
    nla_nest_end(message.get(), nest);
    return message;
}

TEST(Nl80211, ReadsStationsAndTheirNetwork) {
    const NetlinkMessage station = Message(), monitor = Message();
    for (const auto& [message, type] :
         {std::pair(&station, NL80211_IFTYPE_STATION), std::pair(&monitor, NL80211_IFTYPE_MONITOR)}) {
        nla_put_string(message->get(), NL80211_ATTR_IFNAME, "wlp2s0");
        nla_put_u32(message->get(), NL80211_ATTR_IFTYPE, type);
    }
    EXPECT_EQ(StationOf(station.get()), "wlp2s0");
    EXPECT_EQ(StationOf(monitor.get()), std::nullopt);
    EXPECT_EQ(StationOf(Message().get()), std::nullopt);

    const std::string elements("\x01\x02xy\0\5home ", 11);
    const auto network = AssociatedNetworkOf(Bss(NL80211_BSS_STATUS_ASSOCIATED, elements).get());
    ASSERT_TRUE(network);
    EXPECT_EQ(network->ssid, "home ");
    EXPECT_EQ(network->bssid, "02:ab:00:00:00:01");
    EXPECT_FALSE(AssociatedNetworkOf(Bss(NL80211_BSS_STATUS_AUTHENTICATED, elements).get()));
    EXPECT_FALSE(AssociatedNetworkOf(Message().get()));
    EXPECT_EQ(AssociatedNetworkOf(Bss(NL80211_BSS_STATUS_ASSOCIATED, elements.substr(0, 10)).get())->ssid, "")
        << "cut short";
    EXPECT_EQ(AssociatedNetworkOf(Bss(NL80211_BSS_STATUS_ASSOCIATED, std::string("\0", 1)).get())->ssid, "");
}

}  // namespace
}  // namespace Quern
