// The replies of the library's network checker. The checker takes a plain function as its callback, and the number of
// the request comes back in the result; here the two are joined to an object that waits for its own reply.
//
// All of this runs on the main thread, so the tables have no lock.
#ifndef ORVANE_TOOLS_NET_CHECKER_REPLY_H
#define ORVANE_TOOLS_NET_CHECKER_REPLY_H

#include <functional>
#include <map>
#include <string>

#include "Orvane/NetworkReports.h"

namespace OrvaneNet {

// Takes one report. The callback's object dies when it returns, so the report is a copy. Main thread.
template <typename Report>
using TakeReport = std::function<void(const Report& report)>;

// Who takes the report of which request: one table for each kind of report.
template <typename Report>
std::map<int, TakeReport<Report>>& Expected() {
    static std::map<int, TakeReport<Report>> expected;
    return expected;
}

// Remembers who takes the report. Gives the request's id, for the checker; ids begin with 1 for each kind. `take` is
// called once at most, and must stay callable until then.
template <typename Report>
int Expect(TakeReport<Report> take) {
    static int lastId = 0;
    Expected<Report>()[++lastId] = std::move(take);
    return lastId;
}

// A callback for the checker: hands the report to whoever expects it, once. `ReportOf` turns the checker's result into
// a report. A result that cannot be read, or that nobody expects any more, is dropped.
template <typename Report, typename Result, bool (*ReportOf)(const Result&, Report&)>
void OnResult(Result& result) {
    Report report;
    if (!ReportOf(result, report)) return;
    const auto found = Expected<Report>().find(report.requestId);
    if (found == Expected<Report>().end()) return;
    const TakeReport<Report> take = found->second;
    Expected<Report>().erase(found);
    take(report);
}
// What the checker is given as its callback, one for each kind of question.
inline constexpr auto OnPing = OnResult<Quern::PingReport, Quern::PingResult, gs_OrvanePingReport>;
inline constexpr auto OnTraceRoute =
    OnResult<Quern::TraceRouteReport, Quern::TraceRouteResult, gs_OrvaneTraceRouteReport>;
inline constexpr auto OnNSLookup = OnResult<Quern::NSLookupReport, Quern::NSLookupResult, gs_OrvaneNSLookupReport>;

// Why this process may use no ICMP, in words for the user that begin with `command`; empty if it may.
std::string WhyNoIcmp(const std::string& command);

}  // namespace OrvaneNet

#endif
