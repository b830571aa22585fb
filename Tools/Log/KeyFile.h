// Private keys in files: 64 hexadecimal digits in any case, the most significant first, and nothing else but one line
// end.
#ifndef ORVANE_TOOLS_LOG_KEY_FILE_H
#define ORVANE_TOOLS_LOG_KEY_FILE_H

#include <string>
#include <string_view>

#include "Serializer/Codec/EllipticCurve.h"

namespace OrvaneLog {

// Small letters, two for each byte.
std::string ToHex(const uint8_t* bytes, size_t count);

// Reads what a key file holds. False, and what is wrong in `error`, if that is not exactly one valid key.
bool ParseKey(std::string_view content, Quern::CurvePrivateKey& key, std::string& error);
// The same from a file. `warning` is filled if the file's mode gives others than its owner any right; the key is read
// all the same. No message holds a digit of a key.
bool ReadKeyFile(const std::string& path, Quern::CurvePrivateKey& key, std::string& error, std::string& warning);

// Makes a key pair and writes the private half to `path`, for the owner alone. An existing file is never replaced: logs
// may depend on it. The file appears whole and synced, or not at all.
bool MakeKeyFile(const std::string& path, Quern::CurvePublicKey& publicKey, std::string& error);

}  // namespace OrvaneLog

#endif
