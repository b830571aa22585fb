#include "Serializer/Codec/Base64.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace Quern {
namespace {

constexpr std::string_view kAlphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr uint8_t kForeign = 0x80;  // a bit that no value has: four values or-ed together show it at once

constexpr std::array<uint8_t, 256> kValues = [] {
    std::array<uint8_t, 256> values{};
    values.fill(kForeign);
    for (size_t i = 0; i < kAlphabet.size(); ++i)
        values[static_cast<uint8_t>(kAlphabet[i])] = static_cast<uint8_t>(i);
    return values;
}();

}  // namespace

std::string base64_encode(const unsigned char* bytes, unsigned int length) {
    std::string text((static_cast<size_t>(length) + 2) / 3 * 4, '=');
    char* out = text.data();
    for (; length >= 3; length -= 3, bytes += 3, out += 4) {
        out[0] = kAlphabet[bytes[0] >> 2];
        out[1] = kAlphabet[(bytes[0] & 0x03) << 4 | bytes[1] >> 4];
        out[2] = kAlphabet[(bytes[1] & 0x0F) << 2 | bytes[2] >> 6];
        out[3] = kAlphabet[bytes[2] & 0x3F];
    }
    if (length == 0) return text;
    out[0] = kAlphabet[bytes[0] >> 2];
    if (length == 1) {
        out[1] = kAlphabet[(bytes[0] & 0x03) << 4];
    } else {
        out[1] = kAlphabet[(bytes[0] & 0x03) << 4 | bytes[1] >> 4];
        out[2] = kAlphabet[(bytes[1] & 0x0F) << 2];
    }
    return text;
}

std::string base64_decode(const std::string& text) {
    const uint8_t* in = reinterpret_cast<const uint8_t*>(text.data());
    const uint8_t* const end = in + text.size();
    std::string bytes(text.size() / 4 * 3 + 2, '\0');
    char* out = bytes.data();

    for (; end - in >= 4; in += 4, out += 3) {
        const uint8_t a = kValues[in[0]], b = kValues[in[1]], c = kValues[in[2]], d = kValues[in[3]];
        if ((a | b | c | d) & kForeign) break;
        out[0] = static_cast<char>(a << 2 | b >> 4);
        out[1] = static_cast<char>(b << 4 | c >> 2);
        out[2] = static_cast<char>(c << 6 | d);
    }

    // Fewer than four characters are left up to the end, or up to the foreign one that ended the loop.
    uint8_t tail[3];
    int count = 0;
    while (count < 3 && in < end && kValues[*in] != kForeign)
        tail[count++] = kValues[*in++];
    if (count >= 2) *out++ = static_cast<char>(tail[0] << 2 | tail[1] >> 4);
    if (count == 3) *out++ = static_cast<char>(tail[1] << 4 | tail[2] >> 2);
    bytes.resize(static_cast<size_t>(out - bytes.data()));
    return bytes;
}

bool is_base64(unsigned char character) {
    return kValues[character] != kForeign;
}

}  // namespace Quern
