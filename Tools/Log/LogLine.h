// One line of a log, taken apart.
#ifndef ORVANE_TOOLS_LOG_LOG_LINE_H
#define ORVANE_TOOLS_LOG_LOG_LINE_H

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace OrvaneLog {

constexpr int kUnknownLevel = -1;
// Local times compare as numbers: yyyymmddhhmmssmmm in decimal digits.
using LocalStamp = uint64_t;

struct LogLine {
    LocalStamp stamp = 0;
    std::string_view time;  // "2026-11-24 21:50:39 123"
    std::string_view levelWord;
    int level = kUnknownLevel;
    std::string_view module;
    uint64_t thread = 0;
    std::string_view file;
    std::string_view line;  // decimal digits, perhaps with a sign
    std::string_view function;
    std::string_view text;  // may hold newlines; without the last one
};

// Enough of a line to tell whether it begins one.
constexpr size_t kLineStartLength = 64;

// Whether a line of the logger's format begins here: what does not begin so belongs to the line above.
bool BeginsLine(std::string_view text);
// Whether the logger's notice of lost lines begins here, which stands for itself.
bool BeginsLossNotice(std::string_view text);

// Takes a line apart. False, and `line` of no meaning, if the text is not of the logger's format throughout.
// The fields point into `text`.
bool ParseLine(std::string_view text, LogLine& line);

// 0 to 4, whatever the case; kUnknownLevel for any other word.
int LevelOfWord(std::string_view word);

// Whether this could be the start of a log: a line of the format, else something printable in UTF-8.
bool LooksLikeText(std::string_view text);

}  // namespace OrvaneLog

#endif
