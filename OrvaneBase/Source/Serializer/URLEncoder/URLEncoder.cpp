#include "Serializer/URLEncoder/URLEncoder.h"

#include <array>
#include <cstdint>
#include <cstring>

#include "Base/Assert.h"

namespace {

constexpr char HexDigit(int value) {
    return static_cast<char>(value > 9 ? value + 55 : value + 48);
}

}  // namespace

unsigned char URLEncoderToHex(unsigned char value) {
    return static_cast<unsigned char>(HexDigit(value));
}

unsigned char URLEncoderFromHex(unsigned char digit) {
    if (digit >= 'A' && digit <= 'Z') return static_cast<unsigned char>(digit - 55);
    if (digit >= 'a' && digit <= 'z') return static_cast<unsigned char>(digit - 87);
    if (digit >= '0' && digit <= '9') return static_cast<unsigned char>(digit - 48);
    ORVANE_ASSERT(0);
    return 0;
}

namespace Quern {
namespace {

// What a byte becomes. The text is always copied whole and the output moved on by the length: no branch a byte.
struct Encoded {
    char text[3];
    uint8_t length;
};

constexpr bool IsUnreserved(int byte) {
    return (byte >= 'A' && byte <= 'Z') || (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') ||
           byte == '-' || byte == '.' || byte == '_' || byte == '~';
}

constexpr std::array<Encoded, 256> kEncoded = [] {
    std::array<Encoded, 256> table{};
    for (int byte = 0; byte < 256; ++byte) {
        if (IsUnreserved(byte)) {
            table[static_cast<size_t>(byte)] = {{static_cast<char>(byte), 0, 0}, 1};
        } else if (byte == ' ') {
            table[static_cast<size_t>(byte)] = {{'+', 0, 0}, 1};
        } else {
            table[static_cast<size_t>(byte)] = {{'%', HexDigit(byte >> 4), HexDigit(byte & 0x0F)}, 3};
        }
    }
    return table;
}();

}  // namespace

std::string URLEncoder::Encode(const std::string& text) {
    size_t length = 0;
    for (unsigned char byte : text)
        length += kEncoded[byte].length;

    // Four bytes are written for each input byte: the last ones may run past the result by three.
    std::string encoded(length + 3, '\0');
    char* out = encoded.data();
    for (unsigned char byte : text) {
        const Encoded& entry = kEncoded[byte];
        memcpy(out, &entry, sizeof entry);
        out += entry.length;
    }
    encoded.resize(length);
    return encoded;
}

std::string URLEncoder::Decode(const std::string& text) {
    const size_t length = text.size();
    std::string decoded;
    decoded.reserve(length);
    for (size_t i = 0; i < length; ++i) {
        const unsigned char byte = static_cast<unsigned char>(text[i]);
        if (byte == '+') {
            decoded += ' ';
        } else if (byte == '%') {
            ORVANE_ASSERT(i + 2 < length);
            const unsigned char high = URLEncoderFromHex(static_cast<unsigned char>(text[++i]));
            const unsigned char low = URLEncoderFromHex(static_cast<unsigned char>(text[++i]));
            decoded += static_cast<char>(high * 16 + low);
        } else {
            decoded += static_cast<char>(byte);
        }
    }
    return decoded;
}

}  // namespace Quern
