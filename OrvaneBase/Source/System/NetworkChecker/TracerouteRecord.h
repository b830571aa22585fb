// What a traceroute found out about one hop.
#ifndef ORVANE_SYSTEM_NETWORK_CHECKER_TRACEROUTE_RECORD_H
#define ORVANE_SYSTEM_NETWORK_CHECKER_TRACEROUTE_RECORD_H

#include <optional>
#include <string>
#include <vector>

namespace Quern {

struct TracerouteRecord {
    // "<ttl>", the address or a blank, then each duration as "10.00 ms" or "*": each followed by a tab.
    std::string description() const;

    std::optional<std::string> ip;                     // of the last answer; none if no probe was answered
    std::vector<std::optional<double>> recvDurations;  // of the probes, in seconds; none for a lost one
    long total = 0;                                    // part of the record; nothing sets it
    long ttl = 0;
};

}  // namespace Quern

#endif
