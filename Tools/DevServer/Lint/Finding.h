// What the lint says.
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

struct Finding {
    Severity severity = Severity::kNote;
    std::string rule;  // its short name, which stays
    std::string module;
    std::string key;  // empty where it is about the whole
    std::string text;
};

using Findings = std::vector<Finding>;

}  // namespace OrvaneDevServer

#endif
