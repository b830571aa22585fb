// The server can send its devices away.
#include "DevServer/Lint/Rules.h"

namespace OrvaneDevServer {

void FindServerMove(const LintedKey& key, Findings& findings) {
    constexpr char kRule[] = "server-move";
    if (!key.Is(kCoreModule, "RemoteConfigUrl") || !key.stored.isFound) return;
    findings.push_back(key.Found(Severity::kWarning, kRule,
                                 "from its next launch on the device asks at this address, and no more at this one"));
    if (key.stored.text.ends_with('/'))
        findings.push_back(
            key.Found(Severity::kError, kRule, "the address must not end in \"/\": the path is put behind it"));
}

}  // namespace OrvaneDevServer
