// The library reads its own texts into 1024 bytes, and what does not fit reads as the default.
#include "DevServer/Lint/Rules.h"

namespace OrvaneDevServer {

void FindLongText(const LintedKey& key, Findings& findings) {
    constexpr size_t kRoom = 1024;  // with the terminator
    const size_t length = key.stored.text.size();
    // Log levels and orders are read whole, whatever their length.
    const bool isReadWhole = key.module == "Upload" || key.key == "LogLevel";
    if (length < kRoom || isReadWhole) return;
    const std::string size = "a text of " + std::to_string(length) + " bytes ";
    if (key.module == "OrvaneCore")
        findings.push_back(key.Found(Severity::kError, "long-text", size + "reads as the default: 1023 are the most"));
    else
        findings.push_back(key.Found(Severity::kWarning, "long-text",
                                     size + "is not read at all by a plugin whose buffer has no more than that"));
}

}  // namespace OrvaneDevServer
