// Names are compared to the letter, and some of the library's own are misspelt for good.
#include <algorithm>
#include <cctype>
#include <numeric>
#include <utility>
#include <vector>

#include "DevServer/Lint/Rules.h"

namespace OrvaneDevServer {
namespace {

// How many letters must be changed, put in or left out; the case of letters does not count.
size_t Distance(const std::string& left, const std::string& right) {
    std::vector<size_t> row(right.size() + 1);
    std::iota(row.begin(), row.end(), 0);
    for (size_t i = 0; i < left.size(); ++i) {
        size_t diagonal = std::exchange(row[0], i + 1);
        for (size_t j = 0; j < right.size(); ++j) {
            const bool isSame =
                tolower(static_cast<unsigned char>(left[i])) == tolower(static_cast<unsigned char>(right[j]));
            const size_t here = std::min({row[j + 1] + 1, row[j] + 1, diagonal + (isSame ? 0 : 1)});
            diagonal = std::exchange(row[j + 1], here);
        }
    }
    return row.back();
}

}  // namespace

void FindMisspeltKey(const LintedKey& key, Findings& findings) {
    constexpr size_t kNear = 2, kLongest = 64;
    if (key.known || key.key.size() > kLongest) return;
    for (const KnownKey& known : KnownKeys()) {
        // In a module that may have keys of its own the names of the log's keys alone are told apart.
        if (!known.IsOf(key.module)) continue;
        const size_t longer = std::max(key.key.size(), known.name.size()),
                     shorter = std::min(key.key.size(), known.name.size());
        if (longer - shorter > kNear || Distance(key.key, std::string(known.name)) > kNear) continue;
        findings.push_back(key.Found(Severity::kWarning, "misspelt-key",
                                     "nobody reads it; the library reads \"" + std::string(known.name) + "\""));
        return;
    }
}

}  // namespace OrvaneDevServer
