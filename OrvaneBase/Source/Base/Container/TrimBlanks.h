// The trimming of settings: only the blank (code 32) counts; tabs and line ends are part of a text.
#ifndef ORVANE_BASE_CONTAINER_TRIM_BLANKS_H
#define ORVANE_BASE_CONTAINER_TRIM_BLANKS_H

#include <string_view>

namespace Quern {

// The text without the blanks at both ends.
inline std::string_view TrimBlanks(std::string_view text) {
    const size_t first = text.find_first_not_of(' ');
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(' ') - first + 1);
}

}  // namespace Quern

#endif
