// The lint: what the client will make of what it is to be sent, before any device has it.
#ifndef ORVANE_TOOLS_DEVSERVER_LINT_LINT_H
#define ORVANE_TOOLS_DEVSERVER_LINT_LINT_H

#include <json/json.h>

#include <string>

#include "DevServer/Lint/Finding.h"

namespace OrvaneDevServer {

// A module's keys. `inherited`: what the device is sent of the same module anyway, where `keys` are those for one
// device; null if there is nothing. Any thread.
Findings LintModule(const std::string& module, const Json::Value& keys, const Json::Value& inherited = {});

// The text of a module as a file has it; one that is no object of keys is a finding.
Findings LintModuleText(const std::string& module, const std::string& text, const Json::Value& inherited = {});

// A file, by what it holds: an answer of the configuration server ("biz_data"), one with trace ids ("result"), or a
// module, whose name is the file's. The text is of that file.
Findings LintText(const std::string& fileName, const std::string& text);

bool HasFault(const Findings& findings);  // beyond notes

}  // namespace OrvaneDevServer

#endif
