// An int that equals the default that its reader gives counts as not there.
#include "DevServer/Lint/Rules.h"

namespace OrvaneDevServer {

void FindDefault(const LintedKey& key, Findings& findings) {
    if (!key.IsOfType(KeyType::kInt) || !key.stored.isFound || key.stored.text.empty()) return;
    const std::string number = std::to_string(IntOf(key.stored));
    for (const KnownKey& known : KnownKeys()) {
        if (known.name != key.key || !known.IsOf(key.module) || known.defaultText != number) continue;
        findings.push_back(
            key.Found(Severity::kWarning, "equals-default",
                      number + " is the default and counts as not sent: a value in the manifest goes before it"));
        return;
    }
}

}  // namespace OrvaneDevServer
