// By hand, since the C library's conversions also take signs, blanks and prefixes.
#include "Serializer/Codec/Hex.h"

namespace Quern {
namespace {

int HexDigit(char digit) {
    if (digit >= '0' && digit <= '9') return digit - '0';
    if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
    if (digit >= 'A' && digit <= 'F') return digit - 'A' + 10;
    return -1;
}

}  // namespace

bool HexToBuffer(const char* digits, uint8_t* out, size_t length) {
    for (size_t i = 0; i < length; ++i) {
        const int high = HexDigit(digits[2 * i]);
        if (high < 0) return false;
        const int low = HexDigit(digits[2 * i + 1]);
        if (low < 0) return false;
        out[i] = static_cast<uint8_t>(high << 4 | low);
    }
    return true;
}

}  // namespace Quern
