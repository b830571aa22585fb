// A level that is no level changes nothing, in silence.
#include <strings.h>

#include "DevServer/Lint/Rules.h"

namespace OrvaneDevServer {

void FindOddLogLevel(const LintedKey& key, Findings& findings) {
    if (key.key != "LogLevel" || !key.stored.isFound || key.stored.text.empty()) return;
    for (const char* word : {"Debug", "Info", "Warning", "Event", "Error", "None"})
        if (strcasecmp(key.stored.text.c_str(), word) == 0) return;
    findings.push_back(key.Found(
        Severity::kError, "odd-log-level",
        "\"" + key.stored.text + "\" changes nothing: the levels are Debug, Info, Warning, Event, Error, None"));
}

}  // namespace OrvaneDevServer
