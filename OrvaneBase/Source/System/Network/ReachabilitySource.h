// What the platform tells about whether, and by what, a target can be reached.
#ifndef ORVANE_SYSTEM_NETWORK_REACHABILITY_SOURCE_H
#define ORVANE_SYSTEM_NETWORK_REACHABILITY_SOURCE_H

#include <array>
#include <cstdint>
#include <functional>
#include <memory>

#include "Base/Seam.h"

namespace Quern {

// The platform's bits.
enum SCNetworkReachabilityFlags : uint32_t {
    kSCNetworkReachabilityFlagsTransientConnection = 0x1,
    kSCNetworkReachabilityFlagsReachable = 0x2,
    kSCNetworkReachabilityFlagsConnectionRequired = 0x4,
    kSCNetworkReachabilityFlagsConnectionOnTraffic = 0x8,
    kSCNetworkReachabilityFlagsInterventionRequired = 0x10,
    kSCNetworkReachabilityFlagsConnectionOnDemand = 0x20,
    kSCNetworkReachabilityFlagsIsLocalAddress = 0x10000,
    kSCNetworkReachabilityFlagsIsDirect = 0x20000,
    kSCNetworkReachabilityFlagsIsWWAN = 0x40000,
};

// One target. Dropping the last pointer ends a watch as Unschedule does.
class SCNetworkReachability {
public:
    // On the main run loop, whenever something about the way to the target may have changed.
    using Callback = std::function<void(uint32_t flags)>;

    virtual ~SCNetworkReachability() = default;

    // Asks the platform anew. False, and `flags` untouched, if it does not answer. Any thread. For a host's name this
    // may wait for its resolution.
    virtual bool GetFlags(uint32_t& flags) = 0;
    // REQUIRES: not scheduled.
    virtual void SetCallback(Callback callback) = 0;
    // Watches from now on; the callback is made on the main run loop. False if the platform cannot. Any thread.
    virtual bool ScheduleWithRunLoop() = 0;
    // On the main thread no callback is made after this; on another, none once a call posted afterwards to the main run
    // loop has been performed.
    virtual void UnscheduleFromRunLoop() = 0;
};

class ReachabilitySource : public Seam<ReachabilitySource> {
public:
    using IPv4Address = std::array<uint8_t, 4>;

    // 0.0.0.0 stands for the internet, 169.254.0.0 for the local network over Wi-Fi. Null if the platform cannot.
    virtual std::shared_ptr<SCNetworkReachability> CreateWithAddress(const IPv4Address& address) = 0;
    // A host's name or a numeric address of either family. Null for a null or empty one.
    virtual std::shared_ptr<SCNetworkReachability> CreateWithName(const char* name) = 0;
};

template <>
std::shared_ptr<ReachabilitySource> Seam<ReachabilitySource>::MakeBuiltIn();

}  // namespace Quern

#endif
