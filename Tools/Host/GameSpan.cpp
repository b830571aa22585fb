#include "GameSpan.h"

#include <sstream>

#include "Orvane/OrvaneCore.h"
#include "Orvane/RunTime.h"

namespace OrvaneHost {
namespace {

constexpr char kHere[] = "orvane-host";
constexpr char kNobody[] = "";  // whom the span asks
constexpr int kRoom = 256;      // for a text; ids of the server's may be longer than the device's own

void FlushTag(const char* context, const std::string& word) {
    const size_t equals = word.find('=');
    if (equals == std::string::npos || equals == 0) {
        orvane_console_log("orvane-host: no tag, KEY=VALUE: %s", word.c_str());
        return;
    }
    orvanecore_onetrace_SpanFlush(context, word.substr(0, equals).c_str(), word.c_str() + equals + 1);
}

}  // namespace

void TraceSpan(const std::string& words) {
    std::istringstream in(words);
    std::string name, word;
    in >> name;
    char context[kRoom], trace[kRoom];
    if (!orvanecore_onetrace_CreateContext(nullptr, nullptr, context, kRoom) || *context == '\0' ||
        !orvanecore_onetrace_GetTraceId(trace, kRoom)) {
        orvane_console_log("orvane-host: no tracing");
        return;
    }
    orvanecore_onetrace_SpanStart(context, name.c_str(), kHere, kNobody);
    while (in >> word)
        FlushTag(context, word);
    orvanecore_onetrace_SpanFinish(context, "0", "");
    orvane_console_log("orvane-host: span %s in trace %s", context, trace);
}

}  // namespace OrvaneHost
