// `orvane-devserver lint`: the lint over files, for a developer's desk and for a build server.
#ifndef ORVANE_TOOLS_DEVSERVER_LINT_LINT_COMMAND_H
#define ORVANE_TOOLS_DEVSERVER_LINT_LINT_COMMAND_H

#include <string>
#include <vector>

namespace OrvaneDevServer {

struct LintReport {
    std::vector<std::string> lines;     // one a finding: "FILE: KEY: warning: .. [rule]"
    std::vector<std::string> problems;  // what could not be read
    bool hasFault = false;              // a finding beyond notes
    size_t files = 0;
};

// Lints files, and of each folder what a server over it would send: modules/ and devices/, or, where it has neither,
// its own "*.json".
LintReport LintPaths(const std::vector<std::string>& paths);

}  // namespace OrvaneDevServer

#endif
