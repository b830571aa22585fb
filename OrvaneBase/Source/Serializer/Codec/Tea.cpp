#include "Serializer/Codec/Tea.h"

#include <cstdint>

namespace Orvane {
namespace Quern {
namespace {

constexpr uint32_t kDelta = 0x9E3779B9u;

uint32_t LoadWord(const char* bytes) {
    const unsigned char* at = reinterpret_cast<const unsigned char*>(bytes);
    return static_cast<uint32_t>(at[0]) << 24 | static_cast<uint32_t>(at[1]) << 16 | static_cast<uint32_t>(at[2]) << 8 |
           at[3];
}

void StoreWord(char* bytes, uint32_t word) {
    bytes[0] = static_cast<char>(word >> 24);
    bytes[1] = static_cast<char>(word >> 16);
    bytes[2] = static_cast<char>(word >> 8);
    bytes[3] = static_cast<char>(word);
}

uint32_t Mix(uint32_t word, uint32_t sum, uint32_t left, uint32_t right) {
    return ((word << 4) + left) ^ (word + sum) ^ ((word >> 5) + right);
}

// Both words are read before anything is written, since `out` may be `block`. The sums wrap, in both directions alike.
template <int Rounds>
void Encrypt(const char* block, const char* key, char* out) {
    uint32_t y = LoadWord(block), z = LoadWord(block + 4);
    const uint32_t k[4] = {LoadWord(key), LoadWord(key + 4), LoadWord(key + 8), LoadWord(key + 12)};
    uint32_t sum = kDelta;
    for (int round = 0; round < Rounds; ++round, sum += kDelta) {
        y += Mix(z, sum, k[0], k[1]);
        z += Mix(y, sum, k[2], k[3]);
    }
    StoreWord(out, y);
    StoreWord(out + 4, z);
}

template <int Rounds>
void Decrypt(const char* block, const char* key, char* out) {
    uint32_t y = LoadWord(block), z = LoadWord(block + 4);
    const uint32_t k[4] = {LoadWord(key), LoadWord(key + 4), LoadWord(key + 8), LoadWord(key + 12)};
    uint32_t sum = kDelta * Rounds;
    for (int round = 0; round < Rounds; ++round, sum -= kDelta) {
        z -= Mix(y, sum, k[2], k[3]);
        y -= Mix(z, sum, k[0], k[1]);
    }
    StoreWord(out, y);
    StoreWord(out + 4, z);
}

}  // namespace

void TeaEncryptECB(const char* block8, const char* key16, char* out8) {
    Encrypt<16>(block8, key16, out8);
}
void TeaDecryptECB(const char* block8, const char* key16, char* out8) {
    Decrypt<16>(block8, key16, out8);
}
void TeaEncryptECB3(const char* block8, const char* key16, char* out8) {
    Encrypt<13>(block8, key16, out8);
}
void TeaDecryptECB3(const char* block8, const char* key16, char* out8) {
    Decrypt<13>(block8, key16, out8);
}

}  // namespace Quern
}  // namespace Orvane
