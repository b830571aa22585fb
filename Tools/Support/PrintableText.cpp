#include "Support/PrintableText.h"

#include <cstdint>
#include <cstdio>

namespace OrvaneTools {
namespace {

bool IsPrintable(std::string_view character) {
    const auto first = static_cast<uint8_t>(character[0]);
    if (character.size() == 1) return (first >= 0x20 && first != 0x7F) || first == '\t' || first == '\n';
    // U+0080 to U+009F are control characters, too: 0xC2 with a byte below 0xA0.
    return first != 0xC2 || static_cast<uint8_t>(character[1]) >= 0xA0;
}

}  // namespace

size_t Utf8Length(std::string_view text) {
    if (text.empty()) return 0;
    const auto byte = [&text](size_t i) { return static_cast<uint8_t>(text[i]); };
    const uint8_t lead = byte(0);
    if (lead < 0x80) return 1;
    const size_t length = lead >= 0xC2 && lead <= 0xDF   ? 2
                          : (lead & 0xF0) == 0xE0        ? 3
                          : lead >= 0xF0 && lead <= 0xF4 ? 4
                                                         : 0;
    if (length == 0 || text.size() < length) return 0;
    for (size_t i = 1; i < length; ++i)
        if ((byte(i) & 0xC0) != 0x80) return 0;
    const bool overlong = (lead == 0xE0 && byte(1) < 0xA0) || (lead == 0xF0 && byte(1) < 0x90);
    const bool surrogate = lead == 0xED && byte(1) > 0x9F;
    const bool tooLarge = lead == 0xF4 && byte(1) > 0x8F;
    return overlong || surrogate || tooLarge ? 0 : length;
}

std::string PrintableText(std::string_view text) {
    std::string printable;
    printable.reserve(text.size());
    while (!text.empty()) {
        const size_t length = Utf8Length(text);
        const std::string_view character = text.substr(0, length == 0 ? 1 : length);
        if (length > 0 && IsPrintable(character)) {
            printable += character;
        } else {
            for (const char byte : character) {
                char escape[8];
                snprintf(escape, sizeof escape, "\\x%02X", static_cast<uint8_t>(byte));
                printable += escape;
            }
        }
        text.remove_prefix(character.size());
    }
    return printable;
}

}  // namespace OrvaneTools
