// Names of modules and keys become parts of lines too.
#include "DevServer/Lint/Rules.h"

namespace OrvaneDevServer {
namespace {

bool HasBlankEnds(const std::string& name) {
    return name.starts_with(' ') || name.ends_with(' ');
}

}  // namespace

void FindOddKeyName(const LintedKey& key, Findings& findings) {
    constexpr char kRule[] = "odd-name";
    const std::string& name = key.key;
    const bool isHeader = name.starts_with('[') && (name + key.stored.written).find(']') != std::string::npos;
    if (name.empty() || name.find_first_of("=\r\n") != std::string::npos || isHeader || HasBlankEnds(name))
        findings.push_back(key.Found(Severity::kError, kRule,
                                     "no read finds a key of this name: it is kept as \"KEY=VALUE\", without blanks "
                                     "around, and a line that begins with \"[\" is a module's"));
    const std::string& module = key.module;
    if (module.find_first_of("]\r\n") != std::string::npos || HasBlankEnds(module))
        findings.push_back({Severity::kError, kRule, module, key.key, "no read finds a module of this name"});
}

}  // namespace OrvaneDevServer
