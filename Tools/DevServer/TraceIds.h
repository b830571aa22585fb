// Trace ids: 192 bits as 32 characters of the tracing alphabet.
#ifndef ORVANE_TOOLS_DEVSERVER_TRACE_IDS_H
#define ORVANE_TOOLS_DEVSERVER_TRACE_IDS_H

#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>

namespace OrvaneDevServer {

constexpr size_t kTraceIdLength = 32;

// A new id: game id in bits 0 to 31, public type 1 from bit 48 on, the time in bits 80 to 111, and random bits 112 to
// 189. Bit 190 marks the ids that a device makes for itself and is clear. Character k holds the bits 6k to 6k+5, the
// lowest of them at its top. Any thread.
std::string MakeTraceId(uint32_t gameId, time_t now);

// Whether a text is an id that a server may issue: the length, the alphabet (which has no "-", the separator of a span
// context's text), and the two top bits clear.
bool IsIssuedTraceId(std::string_view text);

}  // namespace OrvaneDevServer

#endif
