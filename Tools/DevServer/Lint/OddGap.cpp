// The gap between two fetches decides when a mistake in it can be mended.
#include "DevServer/Lint/Rules.h"

namespace OrvaneDevServer {

void FindOddGap(const LintedKey& key, Findings& findings) {
    constexpr char kRule[] = "odd-gap";
    constexpr int32_t kOften = 60, kWeek = 7 * 24 * 60 * 60;
    if (!key.Is(kCoreModule, "RemoteConfigNextGap") || !key.stored.isFound || key.stored.text.empty()) return;
    const int32_t gap = IntOf(key.stored);
    if (gap <= 0)
        findings.push_back(key.Found(Severity::kError, kRule, "every device asks once a second"));
    else if (gap < kOften)
        findings.push_back(
            key.Found(Severity::kWarning, kRule, "every device asks every " + std::to_string(gap) + " s"));
    else if (gap > kWeek)
        findings.push_back(key.Found(Severity::kWarning, kRule,
                                     "a device that keeps running asks after " + std::to_string(gap / (24 * 60 * 60)) +
                                         " days, and hears of no change before"));
}

}  // namespace OrvaneDevServer
