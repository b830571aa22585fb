#include "Serializer/Codec/Sha1.h"

#include <openssl/evp.h>

#include "Base/Linux/CryptoAtExit.h"

namespace Quern {

Sha1::Sha1() : _context(nullptr, EVP_MD_CTX_free) {
    KeepCryptoAtExit();
    _context.reset(EVP_MD_CTX_new());
    if (_context && EVP_DigestInit_ex(_context.get(), EVP_sha1(), nullptr) != 1) _context.reset();
}

// Without a context the bytes go nowhere, and HexDigest says so: a caller looks once, at the end.
void Sha1::Update(const void* data, size_t length) {
    if (_context) EVP_DigestUpdate(_context.get(), data, length);
}

std::string Sha1::HexDigest() {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    if (!_context || EVP_DigestFinal_ex(_context.get(), digest, &length) != 1) return {};
    static const char kDigits[] = "0123456789abcdef";
    std::string text;
    for (unsigned int i = 0; i < length; ++i) {
        text += kDigits[digest[i] >> 4];
        text += kDigits[digest[i] & 0x0F];
    }
    return text;
}

}  // namespace Quern
