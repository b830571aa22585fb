// The client keeps texts and integers. Everything else is as if it had not been sent.
#include "DevServer/JsonText.h"
#include "DevServer/Lint/Rules.h"

namespace OrvaneDevServer {

void FindDroppedValue(const LintedKey& key, Findings& findings) {
    constexpr char kRule[] = "dropped-value";
    if (key.stored.isKept) {
        if (!key.stored.isFound)
            findings.push_back(key.Found(Severity::kWarning, kRule,
                                         "an empty text counts as not sent: the manifest or the default answers"));
        return;
    }
    std::string hint = "send a text or an integer";
    if (key.value.isBool()) hint = key.value.asBool() ? "send the text \"true\"" : "send the text \"false\"";
    if (key.value.isDouble()) hint = "send it as a text";
    findings.push_back(
        key.Found(Severity::kError, kRule, std::string(KindOf(key.value)) + ", which the client drops: " + hint));
}

}  // namespace OrvaneDevServer
