#include "Support/PrintableText.h"

#include "Support/Test.h"

namespace OrvaneTools {
namespace {

TEST(PrintableText, EscapesWhatATerminalWouldObey) {
    const std::pair<const char*, const char*> rows[] = {
        {"plain\ttext\nof two lines", "plain\ttext\nof two lines"},
        {"h\xC3\xA9llo \xE4\xB8\x96 \xF0\x9F\x98\x80\xC2\xA0", "h\xC3\xA9llo \xE4\xB8\x96 \xF0\x9F\x98\x80\xC2\xA0"},
        {"\x1b[2J\x1b]0;title\x07", "\\x1B[2J\\x1B]0;title\\x07"},
        {"real\rfalse\b\x7F", "real\\x0Dfalse\\x08\\x7F"},
        {"\xC2\x9B"
         "31m",
         "\\xC2\\x9B31m"},  // the same as ESC [, in one character
        {"\x9B"
         "31m\xC4\xE3",
         "\\x9B31m\\xC4\\xE3"},
        {"cut \xE4\xB8", "cut \\xE4\\xB8"},
    };
    for (const auto& [text, printable] : rows)
        EXPECT_EQ(PrintableText(text), printable);
    EXPECT_EQ(PrintableText(std::string_view("\0", 1)), "\\x00");
}

}  // namespace
}  // namespace OrvaneTools
