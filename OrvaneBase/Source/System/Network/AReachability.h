// One target of the network: whether and by what it is reached, and the watch on it. And the one that the process
// shares, with those who hear of its changes.
#ifndef ORVANE_SYSTEM_NETWORK_A_REACHABILITY_H
#define ORVANE_SYSTEM_NETWORK_A_REACHABILITY_H

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "Orvane/NetworkState.h"
#include "System/Network/ReachabilitySource.h"

// Every question asks the platform anew; a read that fails counts as no connection. Any thread.
class AReachability {
public:
    // The internet, "InternetConnection"; the local network over Wi-Fi, "LocalWiFiConnection"; a host; an address,
    // whose text is the key. Null if the platform cannot.
    static std::unique_ptr<AReachability> reachabilityForInternetConnection();
    static std::unique_ptr<AReachability> reachabilityForLocalWiFi();
    static std::unique_ptr<AReachability> reachabilityWithHostName(const char* hostName);
    static std::unique_ptr<AReachability> reachabilityWithAddress(
        const Quern::ReachabilitySource::IPv4Address& address);
    // Ends the watch.
    ~AReachability();
    AReachability(const AReachability&) = delete;
    AReachability& operator=(const AReachability&) = delete;

    const std::string& key() const { return _key; }
    const std::shared_ptr<Quern::SCNetworkReachability>& reachabilityRef() const { return _reachabilityRef; }
    friend bool operator==(const AReachability& left, const AReachability& right) { return left._key == right._key; }

    // Watches the target: OrvaneCoreReachabilityCallback is called on the main run loop at each change. False if the
    // platform cannot.
    bool startNotifier();
    void stopNotifier();

    // The plain state that follows from the platform's bits; the key decides whether local Wi-Fi alone counts.
    Quern::ANetworkState networkStatusForFlags(uint32_t flags) const;
    Quern::ANetworkState currentReachabilityStatus() const;
    // With the generation in place of kANetworkReachableViaWWAN.
    Quern::ANetworkState currentDetailReachabilityStatus() const;

    bool isReachable() const { return currentReachabilityStatus() != Quern::kANetworkNotReachable; }
    bool isReachableViaWWAN() const { return currentReachabilityStatus() == Quern::kANetworkReachableViaWWAN; }
    bool isReachableViaWiFi() const { return currentReachabilityStatus() == Quern::kANetworkReachableViaWiFi; }
    // A connection would have to be made first; at the first traffic; by the user's hand.
    bool isConnectionRequired() const;
    bool connectionRequired() const { return isConnectionRequired(); }
    bool isConnectionOnDemand() const;
    bool isInterventionRequired() const;
    // 0 if the read fails.
    uint32_t reachabilityFlags() const;

    // The carrier's group: 0 without a code; 2 for 46000, 46002 and 46007; 3 for 46001 and 46006; 4 for 46003 and
    // 46005; 5 for 46004; 1 for any other.
    static int getCarrier(const std::optional<std::string>& code);
    static std::optional<std::string> getCarrierCode();
    // The name of the Wi-Fi network and the id of its access point; empty if there is none.
    static std::string getSSID();
    static std::string getBSSID();
    // Not told by the platform: always empty.
    static std::string getCurrentAPN();

private:
    AReachability(std::string key, std::shared_ptr<Quern::SCNetworkReachability> reachabilityRef);
    static std::unique_ptr<AReachability> Make(std::string key,
                                               std::shared_ptr<Quern::SCNetworkReachability> reference);

    const std::string _key;
    const std::shared_ptr<Quern::SCNetworkReachability> _reachabilityRef;
};

// The shared object, which watches the internet; made at the first call, with its watch, and never destroyed. Null as
// long as the platform cannot. Any thread.
AReachability* GetAReachablity();

// Those who hear of changes, in the order of their entry and each once; a null function is ignored. Any thread.
using ReachabilityChangedCallback = void (*)(AReachability* reachability);
void AddReachabilityChangedCallback(ReachabilityChangedCallback callback);
void RemoveReachabilityChangedCallback(ReachabilityChangedCallback callback);

// Tells them, with the shared object. Main thread.
void onReachabilityChanged();
// What the platform calls: onReachabilityChanged, then the notification "NetworkAReachabilityChangedNotification" with
// the shared object. Main thread.
void OrvaneCoreReachabilityCallback(uint32_t flags);

#endif
