// A flag is on by the text "true" alone.
#include <strings.h>

#include "DevServer/Lint/Rules.h"

namespace OrvaneDevServer {

void FindUnreadFlag(const LintedKey& key, Findings& findings) {
    if (!key.IsOfType(KeyType::kBool) || !key.stored.isFound) return;
    const std::string& text = key.stored.text;
    for (const char* right : {"true", "false", "0"})
        if (strcasecmp(text.c_str(), right) == 0) return;
    findings.push_back(key.Found(Severity::kError, "unread-flag",
                                 text.empty()
                                     ? "reads as the default: a flag is on by the text \"true\" alone"
                                     : "\"" + text + "\" reads as false: a flag is on by the text \"true\" alone"));
}

}  // namespace OrvaneDevServer
