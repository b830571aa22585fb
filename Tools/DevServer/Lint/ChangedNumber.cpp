// A text that is a number reaches the game as the client prints that number.
#include "DevServer/Lint/Rules.h"

namespace OrvaneDevServer {

void FindChangedNumber(const LintedKey& key, Findings& findings) {
    constexpr char kRule[] = "changed-number";
    if (key.value.type() == Json::uintValue && key.value.asUInt64() > INT64_MAX) {
        findings.push_back(key.Found(
            Severity::kError, kRule,
            key.value.asString() + " arrives as " + key.stored.text + ": what is 2^63 or more turns negative"));
        return;
    }
    if (!key.value.isString() || !IsNumberText(key.value.asString())) return;
    const std::string text = key.value.asString();
    if (key.stored.written == text || key.IsOfType(KeyType::kInt)) return;  // an int is the same by either spelling
    findings.push_back(key.Found(Severity::kWarning, kRule,
                                 "\"" + text + "\" arrives as \"" + key.stored.written +
                                     "\": a text that must stay as it is holds something that is no number, as \"v" +
                                     text + "\" does"));
}

}  // namespace OrvaneDevServer
