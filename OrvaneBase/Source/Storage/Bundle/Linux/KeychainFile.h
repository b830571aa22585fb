// The content of the file keychain, a JSON text:
//
//   { "version": 1, "salt": <32 random bytes>,
//     "items": [ { "service": .., "account": .., "accessible": .., "sealed": <nonce, ciphertext, tag> } ] }
//
// Every text within is Base64 of its bytes, since names may be any bytes; "accessible" may be missing.
#ifndef ORVANE_STORAGE_BUNDLE_LINUX_KEYCHAIN_FILE_H
#define ORVANE_STORAGE_BUNDLE_LINUX_KEYCHAIN_FILE_H

#include <cstdint>
#include <string>
#include <vector>

#include "Storage/Bundle/Keychain.h"

namespace Quern {

class FileReplacement;

struct KeychainContent {
    std::string salt;
    std::vector<KeychainItem> items;  // their data is sealed
    std::string text;                 // of the file that was read
    bool isLeftOver = false;          // read from the new file beside one that was cut short in place
};

// errSecItemNotFound if there is no file; errSecAuthFailed if it belongs to someone else or others may read or write
// it; errSecDecode if it is damaged; errSecIO if it cannot be read. All but the success say so on the console.
int32_t ReadKeychainFile(const std::string& path, KeychainContent& content);

// Replaces the file whole, for its user alone. errSecIO, and a line on the console, if that fails, or if another writer
// went past the lock since `content` was read: the file is then as it was.
int32_t WriteKeychainFile(FileReplacement& file, const std::string& path, const KeychainContent& content);

}  // namespace Quern

#endif
