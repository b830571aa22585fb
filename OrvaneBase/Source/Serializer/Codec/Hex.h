// Bytes as hexadecimal digits.
#ifndef ORVANE_SERIALIZER_CODEC_HEX_H
#define ORVANE_SERIALIZER_CODEC_HEX_H

#include <cstddef>
#include <cstdint>

namespace Quern {

// Turns exactly 2 * length hexadecimal digits, either case, into bytes. False at any other character, the terminator
// included; `out` then holds what stood before it.
bool HexToBuffer(const char* digits, uint8_t* out, size_t length);

}  // namespace Quern

#endif
