#include "Serializer/Codec/Md5.h"

#include <bit>
#include <cstdio>
#include <cstring>

namespace Quern {
namespace {

constexpr unsigned int kBlockSize = 64;
constexpr unsigned int kLengthOffset = 56;  // where in the last block the 64-bit bit count stands
constexpr size_t kFileReadSize = 1024;

const unsigned char kPadding[kBlockSize] = {0x80};

void MD5_memcpy(unsigned char* output, const unsigned char* input, unsigned int length) {
    memcpy(output, input, length);
}

void MD5_memset(unsigned char* output, int value, unsigned int length) {
    memset(output, value, length);
}

// Words to little-endian bytes; `length` is a multiple of 4.
void Encode(unsigned char* output, const uint32_t* input, unsigned int length) {
    for (unsigned int i = 0, j = 0; j < length; ++i, j += 4) {
        output[j] = static_cast<unsigned char>(input[i]);
        output[j + 1] = static_cast<unsigned char>(input[i] >> 8);
        output[j + 2] = static_cast<unsigned char>(input[i] >> 16);
        output[j + 3] = static_cast<unsigned char>(input[i] >> 24);
    }
}

// Little-endian bytes to words; `length` is a multiple of 4.
void Decode(uint32_t* output, const unsigned char* input, unsigned int length) {
    for (unsigned int i = 0, j = 0; j < length; ++i, j += 4) {
        output[i] = input[j] | static_cast<uint32_t>(input[j + 1]) << 8 | static_cast<uint32_t>(input[j + 2]) << 16 |
                    static_cast<uint32_t>(input[j + 3]) << 24;
    }
}

inline uint32_t F(uint32_t x, uint32_t y, uint32_t z) {
    return z ^ (x & (y ^ z));
}
inline uint32_t H(uint32_t x, uint32_t y, uint32_t z) {
    return x ^ y ^ z;
}
inline uint32_t I(uint32_t x, uint32_t y, uint32_t z) {
    return y ^ (x | ~z);
}

template <uint32_t (*Function)(uint32_t, uint32_t, uint32_t)>
inline void Step(uint32_t& a, uint32_t b, uint32_t c, uint32_t d, uint32_t word, int shift, uint32_t constant) {
    a += Function(b, c, d) + word + constant;
    a = std::rotl(a, shift) + b;
}

// G(b, c, d) = (b & d) | (c & ~d). Its two halves have no bit in common, so they may be added one by one; only the
// first waits for the step before.
inline void StepG(uint32_t& a, uint32_t b, uint32_t c, uint32_t d, uint32_t word, int shift, uint32_t constant) {
    a += word + constant + (c & ~d);
    a += b & d;
    a = std::rotl(a, shift) + b;
}

}  // namespace

void MD5Init(MD5_CTX* context) {
    context->count[0] = context->count[1] = 0;
    context->state[0] = 0x67452301;
    context->state[1] = 0xefcdab89;
    context->state[2] = 0x98badcfe;
    context->state[3] = 0x10325476;
}

void MD5Update(MD5_CTX* context, unsigned char* input, unsigned int length) {
    unsigned int index = (context->count[0] >> 3) % kBlockSize;
    context->count[0] += length << 3;
    if (context->count[0] < length << 3) ++context->count[1];
    context->count[1] += length >> 29;

    const unsigned int room = kBlockSize - index;
    unsigned int taken = 0;
    if (length >= room) {
        MD5_memcpy(context->buffer + index, input, room);
        MD5Transform(context->state, context->buffer);
        for (taken = room; length - taken >= kBlockSize; taken += kBlockSize) {
            MD5Transform(context->state, input + taken);
        }
        index = 0;
    }
    if (taken < length) MD5_memcpy(context->buffer + index, input + taken, length - taken);
}

void MD5Final(unsigned char* digest, MD5_CTX* context) {
    unsigned char bits[8];
    Encode(bits, context->count, sizeof bits);

    const unsigned int index = (context->count[0] >> 3) % kBlockSize;
    const unsigned int padding = (index < kLengthOffset ? kLengthOffset : kBlockSize + kLengthOffset) - index;
    MD5Update(context, const_cast<unsigned char*>(kPadding), padding);
    MD5Update(context, bits, sizeof bits);

    Encode(digest, context->state, kMd5DigestSize);
    MD5_memset(reinterpret_cast<unsigned char*>(context), 0, sizeof *context);
}

// clang-format off
void MD5Transform(uint32_t state[4], const unsigned char block[64]) {
    uint32_t a = state[0], b = state[1], c = state[2], d = state[3];
    uint32_t x[16];
    Decode(x, block, kBlockSize);

    Step<F>(a, b, c, d, x[ 0],  7, 0xd76aa478); Step<F>(d, a, b, c, x[ 1], 12, 0xe8c7b756);
    Step<F>(c, d, a, b, x[ 2], 17, 0x242070db); Step<F>(b, c, d, a, x[ 3], 22, 0xc1bdceee);
    Step<F>(a, b, c, d, x[ 4],  7, 0xf57c0faf); Step<F>(d, a, b, c, x[ 5], 12, 0x4787c62a);
    Step<F>(c, d, a, b, x[ 6], 17, 0xa8304613); Step<F>(b, c, d, a, x[ 7], 22, 0xfd469501);
    Step<F>(a, b, c, d, x[ 8],  7, 0x698098d8); Step<F>(d, a, b, c, x[ 9], 12, 0x8b44f7af);
    Step<F>(c, d, a, b, x[10], 17, 0xffff5bb1); Step<F>(b, c, d, a, x[11], 22, 0x895cd7be);
    Step<F>(a, b, c, d, x[12],  7, 0x6b901122); Step<F>(d, a, b, c, x[13], 12, 0xfd987193);
    Step<F>(c, d, a, b, x[14], 17, 0xa679438e); Step<F>(b, c, d, a, x[15], 22, 0x49b40821);

    StepG(a, b, c, d, x[ 1],  5, 0xf61e2562); StepG(d, a, b, c, x[ 6],  9, 0xc040b340);
    StepG(c, d, a, b, x[11], 14, 0x265e5a51); StepG(b, c, d, a, x[ 0], 20, 0xe9b6c7aa);
    StepG(a, b, c, d, x[ 5],  5, 0xd62f105d); StepG(d, a, b, c, x[10],  9, 0x02441453);
    StepG(c, d, a, b, x[15], 14, 0xd8a1e681); StepG(b, c, d, a, x[ 4], 20, 0xe7d3fbc8);
    StepG(a, b, c, d, x[ 9],  5, 0x21e1cde6); StepG(d, a, b, c, x[14],  9, 0xc33707d6);
    StepG(c, d, a, b, x[ 3], 14, 0xf4d50d87); StepG(b, c, d, a, x[ 8], 20, 0x455a14ed);
    StepG(a, b, c, d, x[13],  5, 0xa9e3e905); StepG(d, a, b, c, x[ 2],  9, 0xfcefa3f8);
    StepG(c, d, a, b, x[ 7], 14, 0x676f02d9); StepG(b, c, d, a, x[12], 20, 0x8d2a4c8a);

    Step<H>(a, b, c, d, x[ 5],  4, 0xfffa3942); Step<H>(d, a, b, c, x[ 8], 11, 0x8771f681);
    Step<H>(c, d, a, b, x[11], 16, 0x6d9d6122); Step<H>(b, c, d, a, x[14], 23, 0xfde5380c);
    Step<H>(a, b, c, d, x[ 1],  4, 0xa4beea44); Step<H>(d, a, b, c, x[ 4], 11, 0x4bdecfa9);
    Step<H>(c, d, a, b, x[ 7], 16, 0xf6bb4b60); Step<H>(b, c, d, a, x[10], 23, 0xbebfbc70);
    Step<H>(a, b, c, d, x[13],  4, 0x289b7ec6); Step<H>(d, a, b, c, x[ 0], 11, 0xeaa127fa);
    Step<H>(c, d, a, b, x[ 3], 16, 0xd4ef3085); Step<H>(b, c, d, a, x[ 6], 23, 0x04881d05);
    Step<H>(a, b, c, d, x[ 9],  4, 0xd9d4d039); Step<H>(d, a, b, c, x[12], 11, 0xe6db99e5);
    Step<H>(c, d, a, b, x[15], 16, 0x1fa27cf8); Step<H>(b, c, d, a, x[ 2], 23, 0xc4ac5665);

    Step<I>(a, b, c, d, x[ 0],  6, 0xf4292244); Step<I>(d, a, b, c, x[ 7], 10, 0x432aff97);
    Step<I>(c, d, a, b, x[14], 15, 0xab9423a7); Step<I>(b, c, d, a, x[ 5], 21, 0xfc93a039);
    Step<I>(a, b, c, d, x[12],  6, 0x655b59c3); Step<I>(d, a, b, c, x[ 3], 10, 0x8f0ccc92);
    Step<I>(c, d, a, b, x[10], 15, 0xffeff47d); Step<I>(b, c, d, a, x[ 1], 21, 0x85845dd1);
    Step<I>(a, b, c, d, x[ 8],  6, 0x6fa87e4f); Step<I>(d, a, b, c, x[15], 10, 0xfe2ce6e0);
    Step<I>(c, d, a, b, x[ 6], 15, 0xa3014314); Step<I>(b, c, d, a, x[13], 21, 0x4e0811a1);
    Step<I>(a, b, c, d, x[ 4],  6, 0xf7537e82); Step<I>(d, a, b, c, x[11], 10, 0xbd3af235);
    Step<I>(c, d, a, b, x[ 2], 15, 0x2ad7d2bb); Step<I>(b, c, d, a, x[ 9], 21, 0xeb86d391);

    state[0] += a; state[1] += b; state[2] += c; state[3] += d;
}
// clang-format on

void Md5HashBuffer(char* digest, const char* data, int length) {
    MD5_CTX context;
    MD5Init(&context);
    MD5Update(&context, reinterpret_cast<unsigned char*>(const_cast<char*>(data)), static_cast<unsigned int>(length));
    MD5Final(reinterpret_cast<unsigned char*>(digest), &context);
}

void Md5File(char* digest, const char* path) {
    FILE* file = fopen(path, "rb");
    if (!file) return;
    MD5_CTX context;
    MD5Init(&context);
    unsigned char data[kFileReadSize];
    while (const size_t count = fread(data, 1, sizeof data, file)) {
        MD5Update(&context, data, static_cast<unsigned int>(count));
    }
    MD5Final(reinterpret_cast<unsigned char*>(digest), &context);
    fclose(file);
}

void Md5HexString(unsigned char* digest, char* text) {
    for (int i = 0; i < kMd5DigestSize; ++i)
        snprintf(text + 2 * i, 3, "%02x", digest[i]);
}

std::string FileToMD5(const char* path) {
    unsigned char digest[kMd5DigestSize] = {};
    Md5File(reinterpret_cast<char*>(digest), path);
    char text[2 * kMd5DigestSize + 1];
    Md5HexString(digest, text);
    return text;
}

}  // namespace Quern
