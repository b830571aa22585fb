// What is read once is read at the launch.
#include "DevServer/Lint/Rules.h"

namespace OrvaneDevServer {

void FindNextLaunch(const LintedKey& key, Findings& findings) {
    if (!key.known || key.known->effect != Effect::kNextLaunch || !key.stored.isFound) return;
    findings.push_back(key.Found(Severity::kNote, "next-launch", "takes effect at the next launch only"));
}

}  // namespace OrvaneDevServer
