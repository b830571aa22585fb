/// \file NetworkReports.h
/// The results of the network checker (Orvane/INetworkChecker.h) in plain structures. Header-only, C++11.
///
///     static void OnPing(Quern::PingResult& result) {
///         Quern::PingReport report;
///         if (gs_OrvanePingReport(result, report)) printf("%d of %d\n", report.replies, report.packets);
///     }
#ifndef ORVANE_NETWORK_REPORTS_H
#define ORVANE_NETWORK_REPORTS_H

#include <string>
#include <vector>

#include "Orvane/INetworkChecker.h"
#include "Orvane/RecordReader.h"

namespace Quern {

/// A ping's result by what its numbers mean. Times are whole milliseconds.
struct PingReport {
    PingReport() : requestId(0), packets(0), replies(0), total(0), least(0), mean(0), most(0) {}

    int32_t requestId;
    int32_t packets;  ///< asked for; 0 if the name was not resolved in time, or there was no socket
    int32_t replies;
    int32_t total;  ///< of all replies together; without any, the whole time-out
    int32_t least;
    int32_t mean;
    int32_t most;
};

/// One hop of a traceroute.
struct TraceRouteHop {
    std::string address;  ///< "TimeOut" for a silent one
    std::string value;    ///< mean milliseconds of three probes; "-1" to "-3": so many were lost
};

struct TraceRouteReport {
    TraceRouteReport() : requestId(0) {}

    int32_t requestId;
    std::string host;
    std::vector<TraceRouteHop> hops;  ///< the last is the host, if it was reached
};

struct NSLookupReport {
    NSLookupReport() : requestId(0) {}

    int32_t requestId;
    std::string host;
    std::vector<std::string> addresses;  ///< none if the lookup failed; "0.0.0.0" for one of IPv6
};

}  // namespace Quern

/// The largest result, a traceroute over 255 hops, has a quarter of this, beside its host.
enum { kOrvaneNetworkRecordCapacity = 65536 };

/// Takes a result's fields. Call these in its callback.
/// \return false, with `report` undefined, without the library, or for a result over kOrvaneNetworkRecordCapacity
inline bool gs_OrvanePingReport(const Quern::PingResult& result, Quern::PingReport& report) {
    std::vector<char> bytes(kOrvaneNetworkRecordCapacity);
    int size = kOrvaneNetworkRecordCapacity;
    if (!gs_OrvaneEncodePingResult(result, bytes.data(), &size)) return false;
    Quern::RecordReader reader(bytes.data(), size);
    report.requestId = reader.Integer();
    reader.Text();     // the host's place, which is empty
    reader.Integer();  // that of the host as a number
    int32_t* const numbers[] = {&report.packets, &report.replies, &report.total,
                                &report.least,   &report.mean,    &report.most};
    for (size_t i = 0; i < sizeof numbers / sizeof numbers[0]; ++i)
        *numbers[i] = reader.Integer();
    return reader.IsWhole();
}

inline bool gs_OrvaneTraceRouteReport(const Quern::TraceRouteResult& result, Quern::TraceRouteReport& report) {
    std::vector<char> bytes(kOrvaneNetworkRecordCapacity);
    int size = kOrvaneNetworkRecordCapacity;
    if (!gs_OrvaneEncodeTraceRouteResult(result, bytes.data(), &size)) return false;
    Quern::RecordReader reader(bytes.data(), size);
    report.requestId = reader.Integer();
    report.host = reader.Text();
    reader.Integer();  // the count as the engine told it
    report.hops.resize(static_cast<size_t>(reader.Count()));
    for (size_t i = 0; i < report.hops.size(); ++i) {
        report.hops[i].address = reader.Text();
        report.hops[i].value = reader.Text();
    }
    return reader.IsWhole();
}

inline bool gs_OrvaneNSLookupReport(const Quern::NSLookupResult& result, Quern::NSLookupReport& report) {
    std::vector<char> bytes(kOrvaneNetworkRecordCapacity);
    int size = kOrvaneNetworkRecordCapacity;
    if (!gs_OrvaneEncodeNSLookupResult(result, bytes.data(), &size)) return false;
    Quern::RecordReader reader(bytes.data(), size);
    report.requestId = reader.Integer();
    report.host = reader.Text();
    report.addresses.resize(static_cast<size_t>(reader.Count()));
    for (size_t i = 0; i < report.addresses.size(); ++i)
        report.addresses[i] = reader.Text();
    if (!report.addresses.empty()) report.addresses.pop_back();  // "0" or "1": whether there are any
    return reader.IsWhole();
}

#endif
