// One line of a log, taken apart. The logger writes it as
//
//   [2026-11-24 21:50:39 123] | Info | [Sample] |4711| Sample.cpp:7|Run| hello
#ifndef ORVANE_TOOLS_LOG_LOG_LINE_H
#define ORVANE_TOOLS_LOG_LOG_LINE_H

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace OrvaneLog {

constexpr int kUnknownLevel = -1;
// A local time to the millisecond, as the decimal digits yyyymmddhhmmssmmm: such times compare as numbers. 0 is none.
using LocalStamp = uint64_t;

// The fields point into the text that was taken apart. Nothing is checked beyond the form: a month may be 13.
struct LogLine {
    LocalStamp stamp = 0;
    std::string_view time;       // "2026-11-24 21:50:39 123"
    std::string_view levelWord;  // as it stands
    int level = kUnknownLevel;   // that of the word
    std::string_view module;     // between the brackets; may be empty
    uint64_t thread = 0;         // the system's number of it
    std::string_view file;       // may hold colons
    std::string_view line;       // decimal digits, perhaps with a sign
    std::string_view function;
    std::string_view text;  // may hold newlines; without the last one
};

// Bytes: enough of a text to tell whether a line of the format begins with it.
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

// Whether this could be the start of a log: a line of the format, else something printable in UTF-8. Only the first 256
// bytes are looked at; an empty text could be one.
bool LooksLikeText(std::string_view text);

}  // namespace OrvaneLog

#endif
