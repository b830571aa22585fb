// The computing that no save of an enciphered file can spare.
#ifndef ORVANE_BENCHMARKS_SUPPORT_KEY_AND_CIPHER_H
#define ORVANE_BENCHMARKS_SUPPORT_KEY_AND_CIPHER_H

#include <string>

#include "Serializer/Codec/KxSymmetry.h"
#include "Serializer/Codec/Md5.h"
#include "Serializer/Codec/PeerKey.h"
#include "Storage/Bundle/EncryptedIniFormat.h"

namespace Orvane::Bench {

// One key and agreement, TEA and MD5 over the same text; gives what the cipher makes of it.
inline std::string KeyAndCipher(const std::string& text) {
    ::Quern::EncryptedIni::TeaKey key;
    ::Quern::CurvePublicKey publicKey;
    ::Quern::EncryptedIni::MakeKey(::Quern::PeerPublicKey(), key, publicKey);
    int length = Orvane::Quern::kx_symmetry_encrypt2_len(static_cast<int>(text.size()));
    std::string body(static_cast<size_t>(length), '\0');
    Orvane::Quern::kx_symmetry_encrypt2(text.data(), static_cast<int>(text.size()), key.data(), body.data(), &length);
    char digest[16];
    ::Quern::Md5HashBuffer(digest, body.data(), length);
    return body;
}

}  // namespace Orvane::Bench

#endif
