#include "Storage/Bundle/Linux/KeychainSeal.h"

#include <openssl/core_names.h>
#include <openssl/crypto.h>
#include <openssl/evp.h>
#include <openssl/kdf.h>
#include <openssl/params.h>
#include <unistd.h>

#include <atomic>
#include <memory>

#include "Base/Linux/CryptoAtExit.h"
#include "Base/Linux/MachineId.h"
#include "Base/XLog.h"
#include "Serializer/Codec/RandomBytes.h"

namespace Quern {
namespace {

// A part of the key, like the secret that the constructor puts together: a change of either makes every stored value
// unreadable. The number is there for that day.
constexpr char kPurpose[] = "OrvaneCore keychain 1";

constinit std::atomic<bool> g_saidWeak{false};

using CipherContext = std::unique_ptr<EVP_CIPHER_CTX, void (*)(EVP_CIPHER_CTX*)>;

const uint8_t* Bytes(std::string_view text) {
    return reinterpret_cast<const uint8_t*>(text.data());
}

uint8_t* Bytes(std::string& text) {
    return reinterpret_cast<uint8_t*>(text.data());
}

bool DeriveKey(std::string secret, std::string salt, std::array<uint8_t, 32>& key) {
    KeepCryptoAtExit();
    const std::unique_ptr<EVP_KDF, void (*)(EVP_KDF*)> kdf(EVP_KDF_fetch(nullptr, "HKDF", nullptr), EVP_KDF_free);
    const std::unique_ptr<EVP_KDF_CTX, void (*)(EVP_KDF_CTX*)> context(EVP_KDF_CTX_new(kdf.get()), EVP_KDF_CTX_free);
    char digest[] = "SHA256";
    std::string purpose = kPurpose;
    const OSSL_PARAM parameters[] = {
        OSSL_PARAM_construct_utf8_string(OSSL_KDF_PARAM_DIGEST, digest, 0),
        OSSL_PARAM_construct_octet_string(OSSL_KDF_PARAM_KEY, secret.data(), secret.size()),
        OSSL_PARAM_construct_octet_string(OSSL_KDF_PARAM_SALT, salt.data(), salt.size()),
        OSSL_PARAM_construct_octet_string(OSSL_KDF_PARAM_INFO, purpose.data(), purpose.size()),
        OSSL_PARAM_construct_end(),
    };
    return context && EVP_KDF_derive(context.get(), key.data(), key.size(), parameters) > 0;
}

}  // namespace

KeychainSeal::KeychainSeal(std::string_view salt) {
    const std::string machine = MachineId();
    if (machine.empty() && !g_saidWeak.exchange(true, std::memory_order_relaxed))
        ORVANE_CONSOLE(kLogWarning, "this machine has no id: a copy of the keychain opens on any other without one");
    _hasKey = DeriveKey(machine + '\n' + std::to_string(geteuid()), std::string(salt), _key);
}

KeychainSeal::~KeychainSeal() {
    OPENSSL_cleanse(_key.data(), _key.size());
}

bool KeychainSeal::Seal(std::string_view name, std::string_view value, std::string& sealed) const {
    sealed.assign(kNonceLength + value.size() + kTagLength, '\0');
    uint8_t* const nonce = Bytes(sealed);
    uint8_t* const text = nonce + kNonceLength;
    const CipherContext context(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
    int length = 0;
    return _hasKey && context && ReadRandom(nonce, kNonceLength) &&
           EVP_EncryptInit_ex(context.get(), EVP_aes_256_gcm(), nullptr, _key.data(), nonce) == 1 &&
           EVP_EncryptUpdate(context.get(), nullptr, &length, Bytes(name), static_cast<int>(name.size())) == 1 &&
           EVP_EncryptUpdate(context.get(), text, &length, Bytes(value), static_cast<int>(value.size())) == 1 &&
           EVP_EncryptFinal_ex(context.get(), text + length, &length) == 1 &&
           EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_GET_TAG, kTagLength, text + value.size()) == 1;
}

bool KeychainSeal::Unseal(std::string_view name, std::string_view sealed, std::string& value) const {
    if (!_hasKey || sealed.size() < kNonceLength + kTagLength) return false;
    const std::string_view text = sealed.substr(kNonceLength, sealed.size() - kNonceLength - kTagLength);
    std::string tag(sealed.substr(sealed.size() - kTagLength));
    std::string opened(text.size(), '\0');
    const CipherContext context(EVP_CIPHER_CTX_new(), EVP_CIPHER_CTX_free);
    int length = 0;
    const bool isOpen =
        context && EVP_DecryptInit_ex(context.get(), EVP_aes_256_gcm(), nullptr, _key.data(), Bytes(sealed)) == 1 &&
        EVP_DecryptUpdate(context.get(), nullptr, &length, Bytes(name), static_cast<int>(name.size())) == 1 &&
        EVP_DecryptUpdate(context.get(), Bytes(opened), &length, Bytes(text), static_cast<int>(text.size())) == 1 &&
        EVP_CIPHER_CTX_ctrl(context.get(), EVP_CTRL_GCM_SET_TAG, kTagLength, tag.data()) == 1 &&
        EVP_DecryptFinal_ex(context.get(), Bytes(opened) + length, &length) == 1;
    if (isOpen) value = std::move(opened);
    return isOpen;
}

}  // namespace Quern
