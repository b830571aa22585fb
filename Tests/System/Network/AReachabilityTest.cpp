#include "System/Network/AReachability.h"

#include "Orvane/RunTime.h"
#include "Orvane/TelephonyNetworkInfo.h"
#include "Support/FakeDevice.h"
#include "Support/FakeReachability.h"
#include "Support/Test.h"
#include "System/Network/SystemVersion.h"
#include "System/Network/Telephony.h"

namespace Quern {
namespace {

using OrvaneTest::FakeReachability;

TEST(AReachability, TellsTheStateOfEverySetOfFlags) {
    FakeReachability::Install();
    const auto internet = AReachability::reachabilityForInternetConnection();
    const auto wifi = AReachability::reachabilityForLocalWiFi();
    // Of a reachable target off cellular, by the bits 1, 4, 8, 0x10 and 0x20, the lowest first.
    constexpr char kStates[] = "22200222022202220222022202220222";
    for (uint32_t set = 0; set < 512; ++set) {
        const uint32_t low = set & 0x3F, flags = low | (set >> 6) << 16, rest = (low & 1) | (low & 0x3C) >> 1;
        const bool isReachable = flags & 2, isCellular = flags & 0x40000, isDirect = flags & 0x20000;
        EXPECT_EQ(wifi->networkStatusForFlags(flags), isReachable && isDirect ? 2 : 0) << flags;
        EXPECT_EQ(internet->networkStatusForFlags(flags), !isReachable ? 0
                                                          : isCellular ? 1
                                                                       : kStates[rest] - '0')
            << flags;
    }
}

TEST(AReachability, AnswersForItsTargetAndFlags) {
    const auto source = FakeReachability::Install();
    const auto internet = AReachability::reachabilityForInternetConnection();
    const auto wifi = AReachability::reachabilityForLocalWiFi();
    const auto host = AReachability::reachabilityWithHostName("10.1.0.255");
    const auto address = AReachability::reachabilityWithAddress({10, 1, 0, 255});
    EXPECT_THAT(source->made, ElementsAre("0.0", "169.254", "10.1.0.255", "10.1"));
    EXPECT_EQ(AReachability::reachabilityWithHostName(nullptr), nullptr);
    EXPECT_EQ(internet->key(), "InternetConnection");
    EXPECT_TRUE(*host == *address && !(*host == *wifi)) << "the key is what makes two the same";

    source->flags = 2 | 4 | 0x20;
    EXPECT_TRUE(internet->isReachable() && internet->isReachableViaWiFi() && !internet->isReachableViaWWAN());
    EXPECT_TRUE(internet->isConnectionRequired() && internet->connectionRequired() && internet->isConnectionOnDemand());
    EXPECT_FALSE(internet->isInterventionRequired());
    source->flags = 0x10 | 4 | 0x40000 | 2;
    EXPECT_TRUE(internet->isReachableViaWWAN() && internet->isInterventionRequired() &&
                !internet->isConnectionOnDemand());
    source->flags = 8 | 0x10;
    EXPECT_FALSE(internet->isConnectionOnDemand() || internet->isInterventionRequired());
    EXPECT_EQ(internet->reachabilityFlags(), 0x18u);
    source->isFailing = true;
    EXPECT_EQ(internet->reachabilityFlags(), 0u);
    EXPECT_TRUE(internet->startNotifier());
    EXPECT_EQ(source->Watches(), 1);
    internet->stopNotifier();
    EXPECT_EQ(source->Watches(), 0);
}

// Classes whose instances answer what the test says.
std::map<std::string, const void*> g_answers;
void Answer(orvane_class* cls, const char* selector, const void* answer) {
    g_answers[selector] = answer;
    orvane_class_add_method(cls, selector, [](orvane_object*, const char* selector, void* const*) {
        return const_cast<void*>(g_answers[selector]);
    });
}

TEST(AReachability, TellsTheGenerationAsTheSystemsVersionHasIt) {
    const auto source = FakeReachability::Install();
    const auto device = OrvaneTest::FakeDevice::Install();
    const auto internet = AReachability::reachabilityForInternetConnection();
    const auto in = [&](const char* version) {
        return device->systemVersion = version, internet->currentDetailReachabilityStatus();
    };
    source->flags = FakeReachability::kWifi;
    EXPECT_EQ(in("12"), kANetworkReachableViaWiFi);
    source->flags = FakeReachability::kCellular;
    EXPECT_EQ(in("12"), kANetworkWWANUnknown) << "no telephony in this process";
    EXPECT_EQ(AReachability::getCarrierCode(), std::nullopt);

    orvane_class* const parts = orvane_class_allocate("Parts");
    orvane_class* const telephony = orvane_class_allocate("CTTelephonyNetworkInfo");
    orvane_class_register(telephony);
    orvane_object part = {parts, nullptr};
    Answer(telephony, "currentRadioAccessTechnology", ORVANE_RADIO_LTE);
    EXPECT_EQ(in("13.0"), kANetworkWWANUnknown) << "neither a map nor a key";
    Answer(telephony, "serviceCurrentRadioAccessTechnology", &part);
    Answer(parts, "objectForKey:", ORVANE_RADIO_NR);
    EXPECT_EQ(in("13.0"), kANetworkWWANUnknown) << "no key";
    Answer(telephony, "dataServiceIdentifier", "0000000100000001");
    EXPECT_EQ(in("13.0"), kANetworkWWAN5G);
    EXPECT_EQ(in("12.9"), kANetworkWWAN4G);
    EXPECT_EQ(in("7.0"), kANetworkWWAN4G);
    EXPECT_EQ(in("6.9"), kANetworkWWANUnknown);
    source->isFailing = true;
    EXPECT_EQ(in("12"), kANetworkNotReachable);

    Answer(telephony, "subscriberCellularProvider", &part);
    Answer(parts, "mobileCountryCode", "460");
    EXPECT_EQ(AReachability::getCarrierCode(), std::nullopt);
    Answer(parts, "mobileNetworkCode", "07");
    EXPECT_EQ(AReachability::getCarrierCode(), "46007");
}

TEST(AReachability, KnowsRadiosCarriersAndVersions) {
    const std::pair<const char*, int> kRadios[] = {
        {"Edge", 5},         {"GPRS", 5},         {"WCDMA", 6}, {"CDMA1x", 6}, {"CDMAEVDORev0", 6},
        {"CDMAEVDORevA", 6}, {"CDMAEVDORevB", 6}, {"HSDPA", 6}, {"HSUPA", 6},  {"LTE", 7},
        {"eHRPD", 7},        {"NR", 8},           {"NRNSA", 8}, {"nr", 4},     {"", 4}};
    for (const auto& [name, state] : kRadios)
        EXPECT_EQ(GenerationOfRadio(std::string("CTRadioAccessTechnology") + name), state) << name;
    EXPECT_EQ(GenerationOfRadio(std::nullopt), 4);
    std::string carriers;
    for (const char* code : {"46000", "46001", "46002", "46003", "46004", "46005", "46006", "46007", "46008", ""})
        carriers += static_cast<char>('0' + AReachability::getCarrier(code));
    EXPECT_EQ(carriers, "2324543211");
    EXPECT_EQ(AReachability::getCarrier(std::nullopt), 0);
    const std::pair<const char*, float> kVersions[] = {{"13.4.1", 13.4f}, {" 12", 12}, {"7,5", 7}, {"", 0}, {"nan", 0}};
    for (const auto& [text, version] : kVersions)
        EXPECT_EQ(ParseSystemVersion(text), version) << text;
}

}  // namespace
}  // namespace Quern
