#include "GameSpan.h"

#include <sstream>

#include "Orvane/OrvaneCore.h"
#include "Orvane/RunTime.h"

namespace OrvaneHost {
namespace {

constexpr char kHere[] = "orvane-host";
constexpr char kNobody[] = "";  // whom the span asks
constexpr int kRoom = 256;      // for a text; ids of the server's may be longer than the device's own

bool FlushTag(const char* context, const std::string& word) {
    const size_t equals = word.find('=');
    if (equals == std::string::npos || equals == 0) {
        orvane_console_log("orvane-host: no tag, KEY=VALUE: %s", word.c_str());
        return false;
    }
    orvanecore_onetrace_SpanFlush(context, word.substr(0, equals).c_str(), word.c_str() + equals + 1);
    return true;
}

}  // namespace

bool TraceSpan(const std::string& words) {
    std::istringstream in(words);
    std::string name, word;
    in >> name;
    char context[kRoom], trace[kRoom];
    // A span whose text does not fit is made all the same, and stays: without its text nobody can end it.
    if (!orvanecore_onetrace_CreateContext(nullptr, nullptr, context, kRoom)) {
        orvane_console_log("orvane-host: the server's trace id is too long for a span's text of %d bytes", kRoom);
        return false;
    }
    if (*context == '\0' || !orvanecore_onetrace_GetTraceId(trace, kRoom)) {
        orvane_console_log("orvane-host: no tracing");
        return true;
    }
    orvanecore_onetrace_SpanStart(context, name.c_str(), kHere, kNobody);
    bool isWhole = true;
    while (in >> word)
        isWhole = FlushTag(context, word) && isWhole;
    orvanecore_onetrace_SpanFinish(context, "0", "");
    orvane_console_log("orvane-host: span %s in trace %s", context, trace);
    return isWhole;
}

}  // namespace OrvaneHost
