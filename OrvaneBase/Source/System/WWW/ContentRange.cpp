#include "System/WWW/ContentRange.h"

#include <strings.h>

#include <algorithm>
#include <charconv>

namespace Quern {
namespace {

// Takes a number of digits alone off the front of the text.
bool TakeNumber(std::string_view& text, long long& out) {
    if (text.empty() || text[0] < '0' || text[0] > '9') return false;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), out);
    if (error != std::errc()) return false;
    text.remove_prefix(static_cast<size_t>(end - text.data()));
    return true;
}

bool TakeCharacter(std::string_view& text, char c) {
    if (text.empty() || text[0] != c) return false;
    text.remove_prefix(1);
    return true;
}

void TrimBlanks(std::string_view& text) {
    constexpr std::string_view kBlanks = " \t";
    text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
    text = text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

}  // namespace

bool ParseContentRange(std::string_view value, ContentRange& out) {
    constexpr std::string_view kUnit = "bytes";
    TrimBlanks(value);
    if (value.size() <= kUnit.size() || strncasecmp(value.data(), kUnit.data(), kUnit.size()) != 0) return false;
    value.remove_prefix(kUnit.size());
    if (value[0] != ' ' && value[0] != '\t') return false;
    TrimBlanks(value);

    ContentRange range;
    if (!TakeNumber(value, range.first) || !TakeCharacter(value, '-') || !TakeNumber(value, range.last) ||
        !TakeCharacter(value, '/'))
        return false;
    if (!TakeCharacter(value, '*') && !TakeNumber(value, range.total)) return false;
    if (!value.empty() || range.last < range.first || (range.total >= 0 && range.last >= range.total)) return false;
    out = range;
    return true;
}

}  // namespace Quern
