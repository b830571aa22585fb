// A text without a number in front reads as the int 0, and not as the default.
#include "DevServer/Lint/Rules.h"

namespace OrvaneDevServer {

void FindTextForInt(const LintedKey& key, Findings& findings) {
    if (!key.IsOfType(KeyType::kInt) || !key.stored.isFound || key.stored.text.empty()) return;
    const std::string read = std::to_string(IntOf(key.stored));
    if (read == key.stored.text) return;
    findings.push_back(
        key.Found(Severity::kWarning, "text-for-int", "\"" + key.stored.text + "\" reads as the int " + read));
}

}  // namespace OrvaneDevServer
