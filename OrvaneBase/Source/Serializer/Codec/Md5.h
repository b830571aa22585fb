// MD5 (RFC 1321) and its helpers for buffers, files and text. No state between calls; any thread.
//
// MD5 is broken as a defence against forgery: here it finds damage and names things, no more.
#ifndef ORVANE_SERIALIZER_CODEC_MD5_H
#define ORVANE_SERIALIZER_CODEC_MD5_H

#include <cstdint>
#include <string>

namespace Quern {

constexpr int kMd5DigestSize = 16;

// The running state of one digest.
struct MD5_CTX {
    uint32_t state[4];         // the chaining words A, B, C, D
    uint32_t count[2];         // bits taken so far modulo 2^64, low word first
    unsigned char buffer[64];  // the block being filled
};

void MD5Init(MD5_CTX* context);
void MD5Update(MD5_CTX* context, unsigned char* input, unsigned int length);
// Writes kMd5DigestSize bytes and wipes the state.
void MD5Final(unsigned char* digest, MD5_CTX* context);
// Takes one block of 64 bytes into the chaining words.
void MD5Transform(uint32_t state[4], const unsigned char block[64]);

// Writes the binary digest of `length` bytes, kMd5DigestSize bytes. REQUIRES: length is not negative.
void Md5HashBuffer(char* digest, const char* data, int length);
// The same for the content of a file. If it cannot be opened, `digest` stays as it was and nothing is reported.
void Md5File(char* digest, const char* path);
// Writes the digest as 32 lower-case hexadecimal characters and a NUL: `text` has room for 33 bytes.
void Md5HexString(unsigned char* digest, char* text);
// The digest of a file as text. REQUIRES: the file can be read; else the text means nothing.
std::string FileToMD5(const char* path);

}  // namespace Quern

#endif
