// The outcome of a diagnostic as one text of fields, each ended by "#": what the engines hand to the main thread, where
// it is split by position. The fields and where they slip are relied on by readers of the results.
//
// clang-format off
//   ping        <id># # <host>(<address>)# <asked># <replies># <total># <least># <average># <most># <flag>#
//   traceroute  <id># <host># <count># and for each hop <address># <value># and behind the last <flag>#
//   lookup      <id># <host># and for each address <address># and behind the last <flag>#
//
// (without the blanks). The flag is 0, or 1 if no reply came, the host was not reached, there is no address. A "#" in the
// host shifts what follows it.
// clang-format on
#ifndef ORVANE_SYSTEM_NETWORK_CHECKER_RESULT_TEXT_H
#define ORVANE_SYSTEM_NETWORK_CHECKER_RESULT_TEXT_H

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "System/NetworkChecker/TracerouteRecord.h"

namespace Quern {

// Adds one field to a message; either may be null, which adds nothing but the "#". With both null there is no result.
std::unique_ptr<std::string> buildResult(const std::string* message, const char* field);

// `message` is what stands in front: "<id>#". Times are in milliseconds.
std::string PingText(const std::string& message, const std::string& ip, unsigned int asked, unsigned int replies,
                     uint64_t total, uint64_t minimum, uint64_t average, uint64_t maximum, unsigned int flag);

// A hop without an address reads "TimeOut", "-3". Else the value is the number of lost probes, negative, or, if none
// was, the mean time of three in whole milliseconds.
std::string TraceRouteText(int requestId, const char* host, const std::vector<TracerouteRecord>& records, bool succeed);

// Without addresses the lookup has failed.
std::string NSLookupText(int requestId, const char* host, const std::vector<std::string>& addresses);

// A copy with its terminator, as the checker's Notify operations take it over.
std::unique_ptr<char[]> HeapText(const std::string& text);
// The same for a result that nobody wants: Notify leaves that text where it is, for good.
char* LeaveBehind(const char* text);

}  // namespace Quern

#endif
