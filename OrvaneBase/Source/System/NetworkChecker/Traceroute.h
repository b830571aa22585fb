// The traceroute engine: finds the hops towards a host with echo requests of a growing time to live, three for each.
#ifndef ORVANE_SYSTEM_NETWORK_CHECKER_TRACEROUTE_H
#define ORVANE_SYSTEM_NETWORK_CHECKER_TRACEROUTE_H

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "System/NetworkChecker/IcmpSocket.h"
#include "System/NetworkChecker/TracerouteRecord.h"
#include "System/NetworkChecker/WorkerPool.h"

namespace Quern {

// One run is blocking and single-threaded; its callbacks run on its thread. A hop that never answers costs nine
// seconds, and a name up to 30.
class Traceroute {
public:
    using StepCallback = std::function<void(const TracerouteRecord& record)>;
    // `succeed`: the target was reached.
    using FinishCallback = std::function<void(const std::vector<TracerouteRecord>& results, bool succeed)>;

    // Runs, on a thread of the queue if there is one; without, it blocks until the end. Either callback may be empty.
    // `finish` is not called if there is no socket to be had, or its time-out cannot be set: both are logged.
    static std::shared_ptr<Traceroute> startTracerouteWithHost_totalTTL_queue_stepCallback_finish(
        const std::string& host, long maxTtl, WorkerPool* queue, StepCallback stepCallback, FinishCallback finish);
    static std::shared_ptr<Traceroute> startTracerouteWithHost_totalTTL_stepCallback_finish(const std::string& host,
                                                                                            long maxTtl,
                                                                                            StepCallback stepCallback,
                                                                                            FinishCallback finish);

    // maxTtl: how many hops at most; one is tried even with 0.
    Traceroute(std::string host, long maxTtl, StepCallback stepCallback, FinishCallback finish);

    void run();

private:
    // One hop. True if any of the three probes reached the target.
    bool sendAndRecv_addr_ttl(IcmpSocket& socket, const SocketAddress& addr, long ttl);
    // One probe: how long its answer took, or nothing if it is lost.
    std::optional<double> Probe(IcmpSocket& socket, const SocketAddress& addr, const std::vector<uint8_t>& packet,
                                TracerouteRecord& record, bool& isReached);
    void Finish(const std::vector<TracerouteRecord>& records, bool succeed) const;

    std::string ipAddress;       // the target's, as a text; empty before the lookup
    const std::string hostname;  // as it was given
    const long maxTtl;
    std::vector<TracerouteRecord> results;  // of the hops so far
    const StepCallback stepCallback;
    const FinishCallback finishCallback;
    bool _isIPv6 = false;
};

}  // namespace Quern

#endif
