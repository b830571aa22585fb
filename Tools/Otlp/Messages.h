// The bodies of requests and answers: OTLP 1.x in its JSON encoding. Names are in lowerCamelCase, ids hexadecimal,
// enums numbers, integers of 64 bits decimal texts. Bytes that are no UTF-8 become U+FFFD, since a receiver would
// refuse the whole request. Any thread.
#ifndef ORVANE_TOOLS_OTLP_MESSAGES_H
#define ORVANE_TOOLS_OTLP_MESSAGES_H

#include <string>
#include <vector>

#include "Otlp/Signals.h"

namespace OrvaneOtlp {

// An ExportTraceServiceRequest. All spans have one scope.
std::string TracesMessage(const Attributes& resource, const std::string& scope, const std::vector<Span>& spans);

// An ExportLogsServiceRequest; the records are put together by their scopes, each in its order.
std::string LogsMessage(const Attributes& resource, const std::vector<LogRecord>& records);

// What the receiver says of a request that it took.
struct PartialSuccess {
    // Items of the request that the receiver would not have; 0 for none.
    uint64_t rejected = 0;
    std::string message;  // for people; may come without any rejected, as a warning
};

// Reads the "partialSuccess" of an answer. Whatever is no such thing counts as a full success.
PartialSuccess ReadPartialSuccess(const std::string& answer);

// The "message" of a google.rpc.Status, the body of a refusal; else the first line of that body; not long.
std::string ReadRefusal(const std::string& answer);

}  // namespace OrvaneOtlp

#endif
