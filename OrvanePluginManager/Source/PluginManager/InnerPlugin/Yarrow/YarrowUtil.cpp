#include "PluginManager/InnerPlugin/Yarrow/YarrowUtil.h"

namespace Orvane::Plugin::YarrowUtil {
namespace {

constexpr char kAlphabet[] = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ+_";
constexpr size_t kBitsPerCharacter = 6;

}  // namespace

template <size_t N>
void Bit2Base64(char* out, unsigned long size, const std::bitset<N>& bits) {
    constexpr size_t kLength = TextLength(N);
    if (size < kLength + 1) return;
    // The lowest position comes first and weighs most, so a field stands in the text with its bits in reverse order.
    for (size_t k = 0; k < kLength; ++k) {
        size_t digit = 0;
        for (size_t i = 0; i < kBitsPerCharacter; ++i)
            digit = digit << 1 | bits[kBitsPerCharacter * k + i];
        out[k] = kAlphabet[digit];
    }
    out[kLength] = '\0';
}

template void Bit2Base64(char* out, unsigned long size, const std::bitset<kSpanIdBits>& bits);
template void Bit2Base64(char* out, unsigned long size, const std::bitset<kTraceIdBits>& bits);

}  // namespace Orvane::Plugin::YarrowUtil
