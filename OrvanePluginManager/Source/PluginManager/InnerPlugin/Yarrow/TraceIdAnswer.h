// What the trace id server answers:
//
//   {"retcode":0,"retmsg":"ok","result":{"count":2,"traceids":["..",".."]}}
#ifndef ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_YARROW_TRACE_ID_ANSWER_H
#define ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_YARROW_TRACE_ID_ANSWER_H

#include <string>
#include <vector>

namespace Orvane::Plugin {

struct TraceIdAnswer {
    enum class Fault {
        kNone,
        kNotJson,     // nested deeper than the JSON library bears, too
        kNotObject,   // JSON of another kind
        kNoEnvelope,  // "retcode", "retmsg" or "result" is missing, or one of the first two cannot be read
        kRetcode,     // the server's error
        kNoIds,       // "count" or "traceids" is missing or of another kind; so is an id
        kCountBelowOne,
        kCount,  // not as many ids as "count" says
    };

    Fault fault = Fault::kNotJson;
    // Each is set if the reading came so far.
    int retcode = 0;
    std::string retmsg;
    int count = 0;
    int size = 0;  // of "traceids"
    std::vector<std::string> traceIds;
};

// Any bytes; nothing throws. What stands behind the document is ignored.
TraceIdAnswer ReadTraceIdAnswer(const char* data, int length);

}  // namespace Orvane::Plugin

#endif
