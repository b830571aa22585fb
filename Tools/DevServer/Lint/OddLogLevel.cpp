// A level that is no level changes nothing, in silence.
#include <strings.h>

#include "Base/LogLevelWords.h"
#include "DevServer/Lint/Rules.h"

namespace OrvaneDevServer {

void FindOddLogLevel(const LintedKey& key, Findings& findings) {
    if (key.key != "LogLevel" || !key.stored.isFound || key.stored.text.empty()) return;
    std::string words;
    for (const char* word : Quern::kLogLevelWords) {
        if (strcasecmp(key.stored.text.c_str(), word) == 0) return;
        words += (words.empty() ? "" : ", ") + std::string(word);
    }
    findings.push_back(key.Found(Severity::kError, "odd-log-level",
                                 "\"" + key.stored.text + "\" changes nothing: the levels are " + words));
}

}  // namespace OrvaneDevServer
