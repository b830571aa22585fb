// An id of a trace is put into the texts of its spans, with "-" between the parts.
#include "DevServer/JsonText.h"
#include "DevServer/Lint/Rules.h"
#include "DevServer/TraceIds.h"

namespace OrvaneDevServer {

void FindOddTraceIds(const Json::Value& ids, Findings& findings) {
    constexpr char kRule[] = "odd-trace-id";
    constexpr size_t kMost = 20;
    const auto add = [&](Severity severity, const std::string& text) {
        findings.push_back({severity, kRule, "", "traceids", text});
    };
    if (!ids.isArray()) return add(Severity::kError, std::string("is ") + KindOf(ids) + ", not an array");
    for (const Json::Value& id : ids) {
        if (findings.size() >= kMost) return;
        if (!id.isString())
            add(Severity::kError, std::string("one of the ids is ") + KindOf(id));
        else if (id.asString().find('-') != std::string::npos)
            add(Severity::kError,
                "\"" + id.asString() + "\" holds a \"-\": every span of the run that takes it is lost");
        else if (!IsIssuedTraceId(id.asString()))
            add(Severity::kWarning, "\"" + id.asString() + "\" is no id of 32 characters that a server issues");
    }
}

}  // namespace OrvaneDevServer
