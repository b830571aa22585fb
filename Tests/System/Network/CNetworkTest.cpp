#include "System/Network/CNetwork.h"

#include <array>

#include "Orvane/AppLifecycle.h"
#include "Orvane/IApplicationObserver.h"
#include "Orvane/NotificationCenter.h"
#include "Orvane/OrvaneCore.h"
#include "Storage/Bundle/BundleFactory.h"
#include "Support/FakeDevice.h"
#include "Support/FakeReachability.h"
#include "Support/Test.h"
#include "System/Application/MainRunLoop.h"
#include "System/Application/OrvaneAppLifecycle.h"
#include "System/Network/OrvaneCoreWifiChangeTimer.h"

namespace Quern {
namespace {

using OrvaneTest::FakeReachability;

// What was told since the last look, each behind the other.
std::string g_heard;
std::string Heard() {
    MainRunLoop::Current().RunPending();
    return std::exchange(g_heard, {});
}

struct Observer : CNetworkObserver {
    explicit Observer(std::string called, std::function<void()> act = nullptr) : name(called), action(act) {}
    void OnNetworkStateChanged(ANetworkState state) override {
        g_heard += name + std::to_string(state) + " ";
        if (action) action();
    }
    std::string name;
    std::function<void()> action;
};

class CNetworkTest : public testing::Test {
protected:
    std::shared_ptr<FakeReachability> network = FakeReachability::Install();
    std::shared_ptr<OrvaneTest::FakeWifi> wifi = OrvaneTest::FakeWifi::Install();
    std::shared_ptr<OrvaneTest::FakeDevice> device = OrvaneTest::FakeDevice::Install();
};

TEST_F(CNetworkTest, TellsEveryReportAndASwitchAsTwo) {
    network->flags = FakeReachability::kWifi;
    INetwork* const made = gs_OrvaneNetwork();
    EXPECT_EQ(network->Watches(), 1);
    Observer observer("");
    made->AddObserver(&observer);
    const std::pair<uint32_t, const char*> kChanges[] = {
        {FakeReachability::kCellular, "0 1 "}, {FakeReachability::kCellular, "1 "}, {FakeReachability::kNone, "0 "},
        {FakeReachability::kNone, "0 "},       {FakeReachability::kWifi, "2 "},     {FakeReachability::kWifi, "2 "}};
    for (const auto& [flags, told] : kChanges) {
        network->Change(flags);
        EXPECT_EQ(Heard(), told) << flags;
    }
    network->isFailing = true;
    network->Change(FakeReachability::kWifi);
    EXPECT_EQ(Heard(), "0 ") << "a failed read is no connection";
    EXPECT_EQ(made->GetNetworkState(), kANetworkNotReachable);
}

TEST_F(CNetworkTest, TellsObserversCallbackAndNotificationInOrder) {
    INetwork* const made = gs_OrvaneNetwork();
    Observer first("a");
    CNetworkObserver keeper;
    auto removed = std::make_unique<Observer>("c");
    Observer remover("b", [&] { removed.reset(); });
    CNetworkObserver* const order[] = {&first, &remover, &keeper, removed.get(), &first, nullptr};
    for (CNetworkObserver* observer : order)
        made->AddObserver(observer);
    made->SetCallback([](ANetworkState) { g_heard += "replaced "; });
    quern_network_SetNetworkChangedCallback(
        [](ANetworkState state) { g_heard += "callback" + std::to_string(state) + " "; });
    int token = 0;
    const char* const kName = "NetworkAReachabilityChangedNotification";
    gs_OrvaneAddNotificationObserver(
        &token, [](void*, const char*, void*) { g_heard += "posted "; }, kName);
    network->Change(FakeReachability::kWifi);
    EXPECT_EQ(Heard(), "posted a2 b2 callback2 ");
    ANetworkState state = kANetworkWWAN5G;
    EXPECT_EQ(keeper.CountOfChangedStates(), 1);
    EXPECT_TRUE(keeper.PopStateFromChangedList(state));
    EXPECT_EQ(state, kANetworkReachableViaWiFi);
    EXPECT_FALSE(keeper.PopStateFromChangedList(state));

    gs_OrvaneRemoveNotificationObserver(&token, nullptr);
    made->RemoveObserver(&remover);
    made->SetCallback(nullptr);
    network->Change(FakeReachability::kNone);
    EXPECT_EQ(Heard(), "a0 ");
}

TEST_F(CNetworkTest, TheReleaseDropsWhatIsNotToldYet) {
    auto gone = std::make_unique<Observer>("gone", [] { gs_OrvaneApplicationOnDestroy(); });
    Observer behind("behind");
    gs_OrvaneNetwork()->AddObserver(gone.get());
    gs_OrvaneNetwork()->AddObserver(&behind);
    network->Change(FakeReachability::kWifi);
    network->Change(FakeReachability::kNone);
    EXPECT_EQ(Heard(), "gone2 ") << "released by an observer, in the middle of it all";
    EXPECT_EQ(CNetwork::InstanceIfAny(), nullptr);
    network->Change(FakeReachability::kWifi);
    EXPECT_EQ(Heard(), "");
    gone.reset();
    EXPECT_EQ(CNetwork::InstanceIfAny(), nullptr) << "an observer that goes brings nothing to life";

    gs_OrvaneNetwork()->AddObserver(&behind);
    network->Change(FakeReachability::kCellular);
    Quern_EnableManualUpdate();
    network->Change(FakeReachability::kNone);
    OnApplicationQuit();
    Quern_UpdateUIThread();
    EXPECT_EQ(Heard(), "") << "neither queue holds a call to what is gone";
    EXPECT_EQ(CNetwork::InstanceIfAny(), nullptr);
    EXPECT_EQ(network->Watches(), 1) << "the shared watch stays";
}

TEST_F(CNetworkTest, IsReleasedWhileOthersAreInsideIt) {
    OrvaneTest::CapturedConsole console;
    Quern_EnableManualUpdate();
    network->flags = FakeReachability::kWifi;
    INetwork* const first = gs_OrvaneNetwork();
    std::atomic<bool> isOver{false};
    std::atomic<int> rounds{0};
    OrvaneTest::Threads threads(3, [&](int number) {
        while (number == 0 && !isOver)
            Quern_UpdateUIThread();
        for (; !isOver; ++rounds) {
            CNetworkObserver mine;
            gs_OrvaneNetwork()->AddObserver(&mine);
            quern_network_SetNetworkChangedCallback([](ANetworkState) {});
            EXPECT_NE(quern_network_GetNetworkState(), kANetworkNotReachable);
            gs_OrvaneNetwork()->RemoveObserver(&mine);
        }
    });
    while (rounds < 2000) {
        network->Change(rounds % 2 ? FakeReachability::kWifi : FakeReachability::kCellular);
        gs_OrvaneApplicationOnDestroy();
    }
    isOver = true;
    threads.Join();
    gs_OrvaneApplicationOnDestroy();
    MainRunLoop::Current().RunPending();

    Observer late("late");
    first->AddObserver(&late);
    EXPECT_NE(gs_OrvaneNetwork(), first);
    network->Change(FakeReachability::kWifi);
    static_cast<CNetwork*>(first)->OnNetworkStateChanged(kANetworkReachableViaWiFi);
    Quern_UpdateUIThread();
    EXPECT_EQ(Heard(), "") << "what was released takes nobody and tells nobody";
}

TEST_F(CNetworkTest, IsMadeOnceByManyThreadsAndReadsItsStartOnTheMainOne) {
    network->flags = FakeReachability::kWifi;
    OrvaneTest::CapturedConsole console;
    std::atomic<int> waiting{8};
    std::atomic<INetwork*> made{nullptr};
    OrvaneTest::Threads(8, [&](int) {
        for (--waiting; waiting > 0;) {
        }
        INetwork* const mine = gs_OrvaneNetwork();
        INetwork* expected = nullptr;
        EXPECT_TRUE(made.compare_exchange_strong(expected, mine) || expected == mine);
        EXPECT_EQ(mine->GetNetworkState(), kANetworkReachableViaWiFi);
    }).Join();
    Observer observer("");
    made.load()->AddObserver(&observer);
    EXPECT_THAT(console.Take(), IsEmpty());
    MainRunLoop::Current().RunPending();
    EXPECT_THAT(console.Take(), ElementsAre("initialize CNetwork in main queue"));
    network->Change(FakeReachability::kCellular);
    EXPECT_THAT(console.Take(), ElementsAre("Event OnNetworkStateChanged to:0", "Event OnNetworkStateChanged to:1"));
    EXPECT_EQ(Heard(), "0 1 ");
}

TEST_F(CNetworkTest, WritesTheDetailRecordAsItsBytes) {
    network->flags = FakeReachability::kWifi;
    wifi->info = {"ab", "02:00:00:00:00:01"};
    const std::string bytes(
        "\0\0\0\2\0\0\0\0\0\0\0\0\0\0\0\2ab\0\0\0\x11"
        "02:00:00:00:00:01\0\0\0\0",
        43);
    char buffer[44];
    OrvaneTest::CapturedConsole console;
    EXPECT_FALSE(quern_network_GetDetailNetworkInfo(buffer, 43));
    EXPECT_FALSE(quern_network_GetDetailNetworkInfo(nullptr, 100));
    EXPECT_THAT(console.Take(), Contains("Error network_GetDetailNetworkInfo data.size+1>size").Times(2));
    buffer[43] = 'x';
    EXPECT_TRUE(quern_network_GetDetailNetworkInfo(buffer, 44));
    EXPECT_EQ(std::string(buffer, 44), bytes + 'x');
    DetailNetworkInfo info;
    EXPECT_TRUE(gs_OrvaneDetailNetworkInfo(info));
    EXPECT_EQ(info.bssid, "02:00:00:00:00:01");
    EXPECT_FALSE(info.Decode(bytes.data(), 42));
    _tagADetailNetworkInfo read;
    read.Decode(bytes.data(), 43);
    EXPECT_STREQ(std::unique_ptr<_tagADetailNetworkInfo>(read.Clone())->ssid.c_str(), "ab");
}

TEST_F(CNetworkTest, FindsAnotherWifiAfterTheBackgroundByHand) {
    OrvaneTest::CacheFolder();
    network->flags = FakeReachability::kWifi;
    INetwork* const made = gs_OrvaneNetwork();
    Observer observer("");
    made->AddObserver(&observer);
    const auto lifecycle = Orvane::OrvaneAppLifecycle::sharedInstance();
    const std::array<const char*, 4> kCases[] = {{"13.0", "home", "work", "0 2 "}, {"13.0", "home", "home", ""},
                                                 {"13.0", "Wi-Fi", "work", ""},    {"13.0", "home", "WLAN", ""},
                                                 {"12.9", "", "work", ""},         {"12.9", "home", "", ""},
                                                 {"12.9", "Wi-Fi", "WLAN", "0 2 "}};
    const auto goAndCheck = [&](const std::string& before, const std::string& after) {
        wifi->info = {before, "one"};
        lifecycle->applicationDidEnterBackground(nullptr);
        wifi->info = {after, "two"};
        OrvaneCoreWifiChangeTimer().timefire();
        return Heard();
    };
    for (const auto& [version, before, after, told] : kCases) {
        device->systemVersion = version;
        EXPECT_EQ(goAndCheck(before, after), told) << version << before << after;
    }
    OrvaneTest::CapturedConsole console;
    EXPECT_EQ(goAndCheck("home", "work"), "0 2 ");
    const std::string kSays =
        "Info last ssid is home, current ssid is work, last bssid is one, current bssid is two\n;"
        "Info system has not callback, callback manually;"
        "Event OnNetworkStateChanged to:0;Event OnNetworkStateChanged to:2;";
    std::string said;
    for (const std::string& line : console.Take())
        if (!line.starts_with("Debug")) said += line + ";";
    EXPECT_EQ(said, kSays);
    network->Change(FakeReachability::kWifi);
    OrvaneCoreWifiChangeTimer().timefire();
    EXPECT_EQ(Heard(), "2 ") << "the platform did report";

    wifi->info = {"home", "one"};
    lifecycle->applicationDidEnterBackground(nullptr);
    wifi->info = {"work", "two"};
    const auto begin = std::chrono::steady_clock::now();
    lifecycle->applicationWillEnterForeground(nullptr);
    EXPECT_TRUE(OrvaneTest::WaitFor([] { return MainRunLoop::Current().RunPending(), g_heard == "0 2 "; }));
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::seconds(2));
    Heard();
    BundleFactory::GetInstance()->GetDefaultBundle()->Set("Orvane", "CheckWifiChange", 0);
    EXPECT_EQ(goAndCheck("home", "work"), "");
}

}  // namespace
}  // namespace Quern
