// The trace id protocol: what a client must send, and the answer's shape.
//
//     GET /traceids?buzid=GAMEID&setid=0&pritype=0&pubtype=1&count=N
//
// The values are sent as they are, without any encoding. The path is this server's choice: the client takes it from the
// setting "YarrowUrl".
#ifndef ORVANE_TOOLS_DEVSERVER_TRACE_ID_PROTOCOL_H
#define ORVANE_TOOLS_DEVSERVER_TRACE_ID_PROTOCOL_H

#include <cstdint>
#include <ctime>
#include <string>
#include <vector>

#include "DevServer/Message.h"
#include "DevServer/Query.h"

namespace OrvaneDevServer {

constexpr char kTraceIdPath[] = "/traceids";
constexpr uint64_t kMostTraceIds = 10000;  // in one batch

struct TraceIdRequest {
    Problems problems;
    std::string gameId;
    uint64_t count = 0;  // 0 if it cannot be read, or is more than one batch holds
};

// Any thread.
TraceIdRequest CheckTraceIdRequest(const Request& request, const Target& target);

// A batch of new ids of that game. A game id that is no number of 32 bits counts as 0.
std::vector<std::string> IssueTraceIds(const TraceIdRequest& request, time_t now);

// {"retcode":0,"retmsg":"ok","result":{"count":N,"traceids":["..",..]}}
std::string TraceIdAnswer(const std::vector<std::string>& ids);
// {"retcode":..,"retmsg":"..","result":{"count":0,"traceids":[]}}
std::string TraceIdError(int64_t code, const std::string& message);

}  // namespace OrvaneDevServer

#endif
