// The encryption of single values of the file keychain: AES-256-GCM under a key of this machine and user.
#ifndef ORVANE_STORAGE_BUNDLE_LINUX_KEYCHAIN_SEAL_H
#define ORVANE_STORAGE_BUNDLE_LINUX_KEYCHAIN_SEAL_H

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace Quern {

// Keeps a copied file from being read elsewhere. Whoever can read the file on this machine can compute the key: the
// file's mode is what keeps other users out.
class KeychainSeal {
public:
    static constexpr size_t kSaltLength = 32;
    static constexpr size_t kNonceLength = 12;
    static constexpr size_t kTagLength = 16;

    // HKDF-SHA-256 over the machine's id and the user's, with the keychain's own random salt.
    explicit KeychainSeal(std::string_view salt);
    ~KeychainSeal();
    KeychainSeal(const KeychainSeal&) = delete;
    KeychainSeal& operator=(const KeychainSeal&) = delete;

    // `sealed` becomes nonce, ciphertext and tag. `name` is bound to the value and not stored. False where randomness
    // or the library fails.
    bool Seal(std::string_view name, std::string_view value, std::string& sealed) const;
    // False for anything that was not sealed under this name, on this machine and by this user.
    bool Unseal(std::string_view name, std::string_view sealed, std::string& value) const;

private:
    std::array<uint8_t, 32> _key{};
    bool _hasKey = false;
};

}  // namespace Quern

#endif
