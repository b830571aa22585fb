// The rules of the lint, one a file: each file begins with the reason of its rule, and Docs/DevServer.md has the list.
// A rule adds what it finds to `findings`, and knows nothing of the other rules. Any thread.
#ifndef ORVANE_TOOLS_DEVSERVER_LINT_RULES_H
#define ORVANE_TOOLS_DEVSERVER_LINT_RULES_H

#include <json/json.h>

#include <string>

#include "DevServer/Lint/Finding.h"
#include "DevServer/Lint/KnownKeys.h"
#include "DevServer/Lint/StoredValue.h"

namespace OrvaneDevServer {

// One key of a module, with what the client makes of it.
struct LintedKey {
    std::string module, key;
    const Json::Value& value;  // as it is sent; lives as long as the rules run
    StoredValue stored;        // as the client keeps it
    const KnownKey* known;     // null if the library does not read it

    bool Is(const char* ofModule, const char* named) const { return module == ofModule && key == named; }
    bool IsOfType(KeyType type) const { return known && known->type == type; }
    Finding Found(Severity severity, const char* rule, const std::string& text) const {
        return {severity, rule, module, key, text};
    }
};

// What becomes of a value on its way to the game's read.
void FindDroppedValue(const LintedKey& key, Findings& findings);
void FindChangedNumber(const LintedKey& key, Findings& findings);
void FindCutText(const LintedKey& key, Findings& findings);
void FindLongText(const LintedKey& key, Findings& findings);
// What becomes of a name.
void FindOddKeyName(const LintedKey& key, Findings& findings);
void FindMisspeltKey(const LintedKey& key, Findings& findings);
// What the library makes of a key of its own, by the key's type.
void FindUnreadFlag(const LintedKey& key, Findings& findings);
void FindTextForInt(const LintedKey& key, Findings& findings);
void FindDefault(const LintedKey& key, Findings& findings);
void FindNextLaunch(const LintedKey& key, Findings& findings);
// Single keys of the library.
void FindOddGap(const LintedKey& key, Findings& findings);
void FindServerMove(const LintedKey& key, Findings& findings);
void FindOddLogLevel(const LintedKey& key, Findings& findings);
void FindOddPattern(const LintedKey& key, Findings& findings);
void FindOddUploadId(const LintedKey& key, Findings& findings);

// Of a whole module: `keys` is what a device is sent of it.
void FindOddPartSize(const std::string& module, const Json::Value& keys, Findings& findings);

// Of the "traceids" of an answer.
void FindOddTraceIds(const Json::Value& ids, Findings& findings);

}  // namespace OrvaneDevServer

#endif
