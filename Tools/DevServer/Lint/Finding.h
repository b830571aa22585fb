// What the lint says of what a device is to be sent. A finding is for the developer who wrote it; scripts go by the
// rule.
#ifndef ORVANE_TOOLS_DEVSERVER_LINT_FINDING_H
#define ORVANE_TOOLS_DEVSERVER_LINT_FINDING_H

#include <string>
#include <vector>

namespace OrvaneDevServer {

enum class Severity {
    kNote,     // right, and worth knowing
    kWarning,  // perhaps not what was meant
    kError,    // does not do what it says
};

// "note", "warning", "error".
const char* SeverityWord(Severity severity);

// One fault, or one thing worth knowing, at one place.
struct Finding {
    Severity severity = Severity::kNote;
    std::string rule;    // its short name, which stays; Docs/DevServer.md lists them
    std::string module;  // empty where there is none, as in an answer with trace ids
    std::string key;     // empty where it is about the whole
    std::string text;    // what the client makes of it, without a full stop
};

// In the order in which the rules found them.
using Findings = std::vector<Finding>;

}  // namespace OrvaneDevServer

#endif
