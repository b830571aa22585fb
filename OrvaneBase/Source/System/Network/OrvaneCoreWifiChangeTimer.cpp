#include "System/Network/OrvaneCoreWifiChangeTimer.h"

#include <cstring>
#include <memory>

#include "Base/XLog.h"
#include "Storage/Bundle/BundleFactory.h"
#include "System/Application/MainRunLoop.h"
#include "System/Network/DetailNetworkInfo.h"
#include "System/Network/NetworkChange.h"
#include "System/Network/SystemVersion.h"

namespace Quern {
namespace {

constexpr long long kDelay = 2000;  // milliseconds: time for the platform to report by itself
constexpr float kVersionThatWithholds = 13.0f;

_tagADetailNetworkInfo* g_beforeEnterBackgroundDetailNetworkInfo = nullptr;  // never destroyed

}  // namespace

bool IsValidSSID(const char* name) {
    if (!name || !*name) return false;
    if (SystemVersion() < kVersionThatWithholds) return true;
    return strcmp(name, "Wi-Fi") != 0 && strcmp(name, "WLAN") != 0;
}

void OrvaneCoreWifiChangeTimer::MakeSnapshot() {
    g_beforeEnterBackgroundDetailNetworkInfo = new _tagADetailNetworkInfo;
}

void OrvaneCoreWifiChangeTimer::RememberBeforeBackground() {
    *g_beforeEnterBackgroundDetailNetworkInfo = ReadDetailNetworkInfo();
    ForgetReports();
}

void OrvaneCoreWifiChangeTimer::Start() {
    const auto timer = std::make_shared<OrvaneCoreWifiChangeTimer>();
    MainRunLoop::Current().StartTimer(kDelay, [timer] { timer->timefire(); });
}

void OrvaneCoreWifiChangeTimer::timefire() {
    const int isWanted = BundleFactory::GetInstance()->GetDefaultBundle()->Get("Orvane", "CheckWifiChange", 1);
    if (isWanted != 1 || HasPlatformReported()) return;
    const AString ssid = ReadDetailNetworkInfo().ssid;
    const AString bssid = ReadDetailNetworkInfo().bssid;
    const _tagADetailNetworkInfo& last = *g_beforeEnterBackgroundDetailNetworkInfo;
    ORVANE_LOG_INFO("last ssid is %s, current ssid is %s, last bssid is %s, current bssid is %s\n", last.ssid.c_str(),
                    ssid.c_str(), last.bssid.c_str(), bssid.c_str());
    if (!IsValidSSID(last.ssid.c_str()) || !IsValidSSID(ssid.c_str()) || last.ssid == ssid) {
        ORVANE_LOG_INFO("last or current is NULL or wifi is same, wifi has not changed");
        return;
    }
    ORVANE_LOG_INFO("system has not callback, callback manually");
    DeliverNetworkState(kANetworkNotReachable);
    DeliverNetworkState(kANetworkReachableViaWiFi);
}

}  // namespace Quern
