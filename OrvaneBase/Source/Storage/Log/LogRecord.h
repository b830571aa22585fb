// The record: what the log block and the log file are made of. The format is told in Docs/LogFormat.md.
#ifndef ORVANE_STORAGE_LOG_LOG_RECORD_H
#define ORVANE_STORAGE_LOG_LOG_RECORD_H

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace Quern::LogRecord {

// Offsets of the header's fields; all integers little-endian, no padding.
constexpr size_t kMagicAt = 0;
constexpr size_t kSeqAt = 1;        // unsigned 16 bits; 0 in a record that is not a compressed block
constexpr size_t kBeginHourAt = 3;  // signed byte, local hour
constexpr size_t kEndHourAt = 4;    // signed byte, local hour
constexpr size_t kLenAt = 5;        // unsigned 32 bits, the payload's length
constexpr size_t kPublicKeyAt = 9;
constexpr size_t kPublicKeyLength = 64;
constexpr size_t kHeaderLength = 73;
constexpr size_t kTailLength = 1;
constexpr size_t kBlockLength = 153600;  // of a logger's block, its mapped file, and so of the longest record of it
constexpr uint8_t kMagicEnd = 0;         // the byte behind the payload

// A "key" in these names means that the writer had one; payloads of the plain magics are never encrypted.
constexpr uint8_t kMagicPlainWithKey = 6;
constexpr uint8_t kMagicCompressedEncrypted = 7;
constexpr uint8_t kMagicPlain = 8;
constexpr uint8_t kMagicCompressed = 9;

constexpr bool IsMagic(uint8_t magic) {
    return magic >= kMagicPlainWithKey && magic <= kMagicCompressed;
}
constexpr bool IsCompressed(uint8_t magic) {
    return magic == kMagicCompressedEncrypted || magic == kMagicCompressed;
}

inline uint16_t LoadU16(const uint8_t* at) {
    return static_cast<uint16_t>(at[0] | at[1] << 8);
}
inline uint32_t LoadU32(const uint8_t* at) {
    return static_cast<uint32_t>(at[0]) | static_cast<uint32_t>(at[1]) << 8 | static_cast<uint32_t>(at[2]) << 16 |
           static_cast<uint32_t>(at[3]) << 24;
}
inline void StoreU16(uint8_t* at, uint16_t value) {
    at[0] = static_cast<uint8_t>(value);
    at[1] = static_cast<uint8_t>(value >> 8);
}
// One store where the machine is little-endian: the block's length is never seen half written by whoever reads the
// mapped file of a process that was killed.
inline void StoreU32(uint8_t* at, uint32_t value) {
#if __BYTE_ORDER__ == __ORDER_BIG_ENDIAN__
    value = __builtin_bswap32(value);
#endif
    memcpy(at, &value, sizeof value);
}

}  // namespace Quern::LogRecord

#endif
