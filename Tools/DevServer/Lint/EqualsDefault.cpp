// An int that equals the default that its reader gives counts as not there.
#include "DevServer/Lint/Rules.h"

namespace OrvaneDevServer {

void FindDefault(const LintedKey& key, Findings& findings) {
    if (!key.IsOfType(KeyType::kInt) || !key.stored.isFound || key.stored.text.empty()) return;
    if (std::to_string(IntOf(key.stored)) != key.known->defaultText) return;
    findings.push_back(key.Found(Severity::kWarning, "equals-default",
                                 std::string(key.known->defaultText) +
                                     " is the default and counts as not sent: a value in the manifest goes before it"));
}

}  // namespace OrvaneDevServer
