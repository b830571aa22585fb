// The library reads its own texts into a buffer, and what does not fit reads as the default.
#include "DevServer/Lint/Rules.h"

namespace OrvaneDevServer {

void FindLongText(const LintedKey& key, Findings& findings) {
    const size_t length = key.stored.text.size();
    // Log levels and orders are read whole, whatever their length.
    const bool isReadWhole = key.module == "Upload" || key.key == "LogLevel";
    if (length < kCoreTextRoom || isReadWhole) return;
    const std::string size = "a text of " + std::to_string(length) + " bytes ";
    if (key.module == kCoreModule)
        findings.push_back(
            key.Found(Severity::kError, "long-text",
                      size + "reads as the default: " + std::to_string(kCoreTextRoom - 1) + " are the most"));
    else
        findings.push_back(key.Found(Severity::kWarning, "long-text",
                                     size + "is not read at all by a plugin whose buffer has no more than that"));
}

}  // namespace OrvaneDevServer
