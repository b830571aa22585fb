// The log's cipher: TEA with 16 rounds on 8-byte groups of little-endian words, no chaining, a plain tail.
#ifndef ORVANE_STORAGE_LOG_LOG_TEA_H
#define ORVANE_STORAGE_LOG_LOG_TEA_H

#include <array>
#include <cstddef>
#include <cstdint>

namespace Quern {

using LogTeaKey = std::array<uint8_t, 16>;
constexpr size_t kLogTeaGroup = 8;

// Encrypts the whole groups of `data` in place; up to seven bytes at the end stay as they are.
void LogTeaEncrypt(uint8_t* data, size_t length, const LogTeaKey& key);
// Undoes LogTeaEncrypt.
void LogTeaDecrypt(uint8_t* data, size_t length, const LogTeaKey& key);

}  // namespace Quern

#endif
