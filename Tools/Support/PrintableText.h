// Text that somebody else wrote, made fit for a terminal.
#ifndef ORVANE_TOOLS_SUPPORT_PRINTABLE_TEXT_H
#define ORVANE_TOOLS_SUPPORT_PRINTABLE_TEXT_H

#include <cstddef>
#include <string>
#include <string_view>

namespace OrvaneTools {

// The length of the UTF-8 sequence that `text` begins with; 0 if it begins with none that is whole and well-formed.
size_t Utf8Length(std::string_view text);

// What a game logs or stores may hold commands to a terminal: to clear the screen, to rename the window, to show a line
// as another. Gives the text with each byte that is no printable UTF-8 as "\x1B": control characters (those of one
// byte, and U+0080 to U+009F, which are two) but tab and newline, and bytes that are no UTF-8. A backslash of the text
// stands for itself, so this cannot be undone: it is for the eye, not for a file.
std::string PrintableText(std::string_view text);

}  // namespace OrvaneTools

#endif
