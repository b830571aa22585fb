// Identifiers of spans and traces: sets of bits in which fields have fixed places, and their text. Without state; any
// thread.
#ifndef ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_YARROW_YARROW_UTIL_H
#define ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_YARROW_YARROW_UTIL_H

#include <bitset>
#include <cstdint>

namespace Orvane::Plugin::YarrowUtil {

constexpr size_t kSpanIdBits = 66;    // a text of 11 characters
constexpr size_t kTraceIdBits = 192;  // of 32; the places of the fields are told at TraceIdManager

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

// Sets a field of an identifier, which is as wide as the value's type: its lowest bit goes to `position`, the next one
// behind it. REQUIRES: the field ends within the N bits.
template <size_t N, typename Unsigned>
void PutField(std::bitset<N>& bits, size_t position, Unsigned value) {
    for (size_t i = 0; i < 8 * sizeof value; ++i)
        bits[position + i] = (value >> i & 1) != 0;
}

}  // namespace Orvane::Plugin::YarrowUtil

#endif
