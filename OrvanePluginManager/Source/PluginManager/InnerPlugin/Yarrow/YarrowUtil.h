// Identifiers as text.
#ifndef ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_YARROW_YARROW_UTIL_H
#define ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_YARROW_YARROW_UTIL_H

#include <bitset>
#include <cstdint>

namespace Orvane::Plugin::YarrowUtil {

constexpr size_t kSpanIdBits = 66;
constexpr size_t kTraceIdBits = 192;

// The length of an identifier's text, without its terminator.
constexpr size_t TextLength(size_t bits) {
    return bits / 6;
}

// Writes the bits as text, six to a character, with a terminator: positions 6k to 6k + 5 make character k, the lowest
// of them its highest bit. The alphabet is 0-9, a-z, A-Z, "+", "_", in this order: it has no "-", which separates
// identifiers. Writes nothing if `size` bytes do not hold the text and its terminator. For 66 and 192 bits.
template <size_t N>
void Bit2Base64(char* out, unsigned long size, const std::bitset<N>& bits);

extern template void Bit2Base64(char* out, unsigned long size, const std::bitset<kSpanIdBits>& bits);
extern template void Bit2Base64(char* out, unsigned long size, const std::bitset<kTraceIdBits>& bits);

// Sets a field of an identifier: its lowest bit goes to `position`.
template <size_t N, typename Unsigned>
void PutField(std::bitset<N>& bits, size_t position, Unsigned value) {
    for (size_t i = 0; i < 8 * sizeof value; ++i)
        bits[position + i] = (value >> i & 1) != 0;
}

}  // namespace Orvane::Plugin::YarrowUtil

#endif
