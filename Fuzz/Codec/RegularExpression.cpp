// slre_match: the first byte holds the flags, then the pattern up to a NUL, then the subject.
//
// slre_match_bounded takes them all. slre_match has no budget, so it gets no pattern that never returns or takes too
// long (IsEndless, IsCheap). Where the budget was enough the two must agree.
#include "Serializer/Codec/RegularExpression.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

size_t EscapeLength(const std::string& pattern, size_t at) {
    return at + 1 < pattern.size() && pattern[at + 1] == 'x' ? 4 : 2;
}

// The grammar of the endless form: a set that is open at the pattern's end and whose last escape is cut there.
// Elsewhere a pattern is a sequence of sets, escapes and single bytes.
bool IsEndless(const std::string& pattern) {
    bool inSet = false;
    size_t at = 0;
    while (at < pattern.size()) {
        if (pattern[at] == '\\') {
            at += EscapeLength(pattern, at);
        } else {
            if (pattern[at] == '[') inSet = true;
            if (pattern[at] == ']') inSet = false;
            ++at;
        }
    }
    return inSet && at > pattern.size();
}

// Each item that may take a varying part of the subject multiplies the time by its length.
bool IsCheap(const std::string& pattern, size_t subject) {
    double steps = static_cast<double>(pattern.size() + 1) * static_cast<double>(subject + 2);
    for (char c : pattern) {
        if (c == '*' || c == '+' || c == '(') steps *= static_cast<double>(subject + 2);
        if (c == '|') steps *= 2;
    }
    return steps < 2e7;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0) return 0;
    const char* const text = reinterpret_cast<const char*>(data) + 1;
    const std::string pattern(text, strnlen(text, size - 1));
    const size_t subjectAt = std::min(pattern.size() + 1, size - 1);
    const std::vector<char> subject(text + subjectAt, text + size - 1);
    constexpr long long kSteps = 100000;
    long long steps = kSteps;
    const int length = static_cast<int>(subject.size());
    const int bounded = Quern::slre_match_bounded(pattern.c_str(), subject.data(), length, data[0] & 1, steps);
    if (steps < 0 || steps > kSteps || bounded > length) abort();
    if (IsEndless(pattern) || !IsCheap(pattern, subject.size())) return 0;

    Quern::slre_cap caps[100] = {};
    const bool isWithin = steps > 0 && pattern.size() <= Quern::kSlreLongestBoundedPattern;
    if (isWithin && bounded != Quern::slre_match(pattern.c_str(), subject.data(), length, nullptr, 0, data[0] & 1))
        abort();
    const int end =
        Quern::slre_match(pattern.c_str(), subject.data(), length, caps, data[0] & 2 ? 3 : 100, data[0] & 1);
    if (end > length || end < Quern::kSlreTooManyBrackets) abort();
    for (const Quern::slre_cap& cap : caps) {
        if (!cap.ptr) continue;
        if (cap.len <= 0 || cap.ptr < subject.data() || cap.ptr + cap.len > subject.data() + length) abort();
    }
    return 0;
}
