#include "System/Network/AReachability.h"

#include <cstdio>
#include <utility>

#include "System/Network/Telephony.h"
#include "System/Network/WifiSource.h"

using namespace Quern;

namespace {

constexpr char kInternetConnection[] = "InternetConnection";
constexpr char kLocalWiFiConnection[] = "LocalWiFiConnection";
constexpr ReachabilitySource::IPv4Address kAnyAddress = {0, 0, 0, 0};
constexpr ReachabilitySource::IPv4Address kLinkLocalNetwork = {169, 254, 0, 0};

// The first text that an interface's network has there.
std::string CurrentWifi(std::string WifiSource::NetworkInfo::*field) {
    WifiSource& source = WifiSource::Current();
    for (const std::string& interface : source.CNCopySupportedInterfaces()) {
        std::string text = source.CNCopyCurrentNetworkInfo(interface).*field;
        if (!text.empty()) return text;
    }
    return {};
}

}  // namespace

AReachability::AReachability(std::string key, std::shared_ptr<SCNetworkReachability> reachabilityRef)
    : _key(std::move(key)), _reachabilityRef(std::move(reachabilityRef)) {}

AReachability::~AReachability() {
    stopNotifier();
}

std::unique_ptr<AReachability> AReachability::Make(std::string key, std::shared_ptr<SCNetworkReachability> reference) {
    if (!reference) return nullptr;
    return std::unique_ptr<AReachability>(new AReachability(std::move(key), std::move(reference)));
}

std::unique_ptr<AReachability> AReachability::reachabilityForInternetConnection() {
    return Make(kInternetConnection, ReachabilitySource::Current().CreateWithAddress(kAnyAddress));
}

std::unique_ptr<AReachability> AReachability::reachabilityForLocalWiFi() {
    return Make(kLocalWiFiConnection, ReachabilitySource::Current().CreateWithAddress(kLinkLocalNetwork));
}

std::unique_ptr<AReachability> AReachability::reachabilityWithHostName(const char* hostName) {
    return Make(hostName ? hostName : "", ReachabilitySource::Current().CreateWithName(hostName));
}

std::unique_ptr<AReachability> AReachability::reachabilityWithAddress(const ReachabilitySource::IPv4Address& address) {
    char key[sizeof "255.255.255.255"];
    snprintf(key, sizeof key, "%d.%d.%d.%d", address[0], address[1], address[2], address[3]);
    return Make(key, ReachabilitySource::Current().CreateWithAddress(address));
}

bool AReachability::startNotifier() {
    _reachabilityRef->SetCallback(OrvaneCoreReachabilityCallback);
    return _reachabilityRef->ScheduleWithRunLoop();
}

void AReachability::stopNotifier() {
    _reachabilityRef->UnscheduleFromRunLoop();
}

ANetworkState AReachability::networkStatusForFlags(uint32_t flags) const {
    constexpr uint32_t kMasked = kSCNetworkReachabilityFlagsReachable | kSCNetworkReachabilityFlagsIsLocalAddress |
                                 kSCNetworkReachabilityFlagsIsDirect;
    constexpr uint32_t kDormant =
        kSCNetworkReachabilityFlagsTransientConnection | kSCNetworkReachabilityFlagsConnectionRequired;
    const auto wifiIf = [](bool holds) { return holds ? kANetworkReachableViaWiFi : kANetworkNotReachable; };

    if (!(flags & kSCNetworkReachabilityFlagsReachable)) return kANetworkNotReachable;
    if (_key == kLocalWiFiConnection) return wifiIf(flags & kSCNetworkReachabilityFlagsIsDirect);
    if (flags & kSCNetworkReachabilityFlagsIsWWAN) return kANetworkReachableViaWWAN;
    const uint32_t rest = flags & ~kMasked;
    if (rest == kDormant) return kANetworkNotReachable;
    if ((flags & kSCNetworkReachabilityFlagsTransientConnection) || rest == 0) return kANetworkReachableViaWiFi;
    return wifiIf(flags & kSCNetworkReachabilityFlagsConnectionRequired);
}

ANetworkState AReachability::currentReachabilityStatus() const {
    return networkStatusForFlags(reachabilityFlags());
}

ANetworkState AReachability::currentDetailReachabilityStatus() const {
    const ANetworkState state = currentReachabilityStatus();
    return state == kANetworkReachableViaWWAN ? CellularGeneration() : state;
}

bool AReachability::isConnectionRequired() const {
    return reachabilityFlags() & kSCNetworkReachabilityFlagsConnectionRequired;
}

bool AReachability::isConnectionOnDemand() const {
    const uint32_t flags = reachabilityFlags();
    return (flags & kSCNetworkReachabilityFlagsConnectionRequired) &&
           (flags & (kSCNetworkReachabilityFlagsConnectionOnTraffic | kSCNetworkReachabilityFlagsConnectionOnDemand));
}

bool AReachability::isInterventionRequired() const {
    const uint32_t flags = reachabilityFlags();
    return (flags & kSCNetworkReachabilityFlagsConnectionRequired) &&
           (flags & kSCNetworkReachabilityFlagsInterventionRequired);
}

uint32_t AReachability::reachabilityFlags() const {
    uint32_t flags = 0;
    return _reachabilityRef->GetFlags(flags) ? flags : 0;
}

int AReachability::getCarrier(const std::optional<std::string>& code) {
    static constexpr struct {
        const char* code;
        int carrier;
    } kCarriers[] = {{"46000", 2}, {"46002", 2}, {"46007", 2}, {"46001", 3},
                     {"46006", 3}, {"46003", 4}, {"46005", 4}, {"46004", 5}};
    if (!code) return 0;
    for (const auto& carrier : kCarriers)
        if (*code == carrier.code) return carrier.carrier;
    return 1;
}

std::optional<std::string> AReachability::getCarrierCode() {
    return CarrierCode();
}

std::string AReachability::getSSID() {
    return CurrentWifi(&WifiSource::NetworkInfo::ssid);
}

std::string AReachability::getBSSID() {
    return CurrentWifi(&WifiSource::NetworkInfo::bssid);
}

std::string AReachability::getCurrentAPN() {
    return {};
}
