// Decryption of both chains: the first byte is the capacity of the output, 16 bytes are the key, the rest is
// ciphertext.
#include "Serializer/Codec/KxSymmetry.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

using Encrypt = void (*)(const char*, int, const char*, char*, int*);
using Decrypt = int (*)(const char*, int, const char*, char*, int*);

// Buffers have exactly the stated sizes, so that a step beyond them is noticed.
void Check(Encrypt encrypt, Decrypt decrypt, const std::vector<char>& text, const char* key, int capacity) {
    const int length = static_cast<int>(text.size());
    std::vector<char> out(static_cast<size_t>(capacity));
    int outLength = capacity;
    if (decrypt(text.data(), length, key, out.data(), &outLength) == 1 && (outLength < 0 || outLength > capacity))
        abort();

    std::vector<char> cipher(static_cast<size_t>(Orvane::Quern::kx_symmetry_encrypt2_len(length)));
    int cipherLength = 0;
    encrypt(text.data(), length, key, cipher.data(), &cipherLength);
    if (cipherLength != static_cast<int>(cipher.size())) abort();
    std::vector<char> back(text.size() + 3);  // more than is needed: the length must be told
    int backLength = length + 3;
    if (decrypt(cipher.data(), cipherLength, key, back.data(), &backLength) != 1) abort();
    back.resize(text.size());
    if (backLength != length || back != text) abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    constexpr size_t kHead = 1 + 16;
    if (size < kHead) return 0;
    char key[16];
    memcpy(key, data + 1, sizeof key);
    const std::vector<char> text(data + kHead, data + size);
    Check(Orvane::Quern::kx_symmetry_encrypt, Orvane::Quern::kx_symmetry_decrypt, text, key, data[0]);
    Check(Orvane::Quern::kx_symmetry_encrypt2, Orvane::Quern::kx_symmetry_decrypt2, text, key, data[0]);
    return 0;
}
