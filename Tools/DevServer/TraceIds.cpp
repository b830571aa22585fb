#include "DevServer/TraceIds.h"

#include <bitset>
#include <random>

namespace OrvaneDevServer {
namespace {

constexpr std::string_view kAlphabet = "0123456789abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ+_";
constexpr size_t kBits = 6 * kTraceIdLength;
constexpr size_t kPublicType = 48, kTime = 80, kRandom = 112, kRandomEnd = 190;

using Bits = std::bitset<kBits>;

void Put(Bits& bits, size_t position, uint32_t value) {
    for (size_t i = 0; i < 32; ++i)
        bits[position + i] = (value >> i & 1) != 0;
}

}  // namespace

std::string MakeTraceId(uint32_t gameId, time_t now) {
    Bits bits;
    Put(bits, 0, gameId);
    bits[kPublicType] = true;
    Put(bits, kTime, static_cast<uint32_t>(now));
    std::random_device random;
    for (size_t i = kRandom; i < kRandomEnd; ++i)
        bits[i] = (random() & 1) != 0;

    std::string text;
    for (size_t k = 0; k < kTraceIdLength; ++k) {
        size_t digit = 0;
        for (size_t i = 6 * k; i < 6 * k + 6; ++i)
            digit = digit * 2 + bits[i];
        text += kAlphabet[digit];
    }
    return text;
}

bool IsIssuedTraceId(std::string_view text) {
    // Bits 190 and 191 are the lowest two of the last character.
    return text.size() == kTraceIdLength && text.find_first_not_of(kAlphabet) == std::string_view::npos &&
           kAlphabet.find(text.back()) % 4 == 0;
}

}  // namespace OrvaneDevServer
