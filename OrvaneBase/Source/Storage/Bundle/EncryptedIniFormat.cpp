#include "Storage/Bundle/EncryptedIniFormat.h"

#include <climits>
#include <cstring>

#include "Serializer/Codec/Hex.h"
#include "Serializer/Codec/KxSymmetry.h"
#include "Serializer/Codec/Md5.h"
#include "Storage/Bundle/IniText.h"

namespace Quern::EncryptedIni {
namespace {

constexpr size_t kMagicAt = 0;
constexpr size_t kVersionAt = 2;
constexpr size_t kHeadLengthAt = 4;
constexpr size_t kBodyLengthAt = 8;
constexpr size_t kEncryptionAt = 12;
constexpr size_t kPublicKeyLengthAt = 14;
constexpr size_t kPublicKeyAt = 16;
constexpr size_t kDigestLengthAt = 80;
constexpr size_t kDigestAt = 82;

// The longest text whose ciphertext's length an int holds.
constexpr size_t kLongestText = INT_MAX - 17;

uint16_t LoadU16(std::string_view bytes, size_t at) {
    return static_cast<uint16_t>(static_cast<uint8_t>(bytes[at]) | static_cast<uint8_t>(bytes[at + 1]) << 8);
}

uint32_t LoadU32(std::string_view bytes, size_t at) {
    return LoadU16(bytes, at) | static_cast<uint32_t>(LoadU16(bytes, at + 2)) << 16;
}

void StoreU16(std::string& bytes, size_t at, uint32_t value) {
    bytes[at] = static_cast<char>(value);
    bytes[at + 1] = static_cast<char>(value >> 8);
}

void StoreU32(std::string& bytes, size_t at, uint32_t value) {
    StoreU16(bytes, at, value);
    StoreU16(bytes, at + 2, value >> 16);
}

void CopyKey(const CurveSecret& secret, TeaKey& key) {
    memcpy(key.data(), secret.data(), key.size());
}

}  // namespace

Fault Parse(std::string_view bytes, File& file) {
    if (bytes.size() < kHeadBaseLength) return Fault::kHeadBase;
    file.magic = LoadU16(bytes, kMagicAt);
    if (file.magic != kMagic) return Fault::kMagic;
    file.version = LoadU16(bytes, kVersionAt);
    if (file.version <= 1) return Fault::kVersion;
    if (LoadU32(bytes, kHeadLengthAt) != kHeadLength || bytes.size() < kHeadLength) return Fault::kHeadExt;
    file.encryption = LoadU16(bytes, kEncryptionAt);
    if (file.encryption != kTea) return Fault::kEncryption;
    file.publicKeyLength = LoadU16(bytes, kPublicKeyLengthAt);
    if (file.publicKeyLength != kPublicKeyLength) return Fault::kPublicKeyLength;
    file.digestLength = LoadU16(bytes, kDigestLengthAt);
    if (file.digestLength != kDigestLength) return Fault::kDigestLength;
    memcpy(file.publicKey.data(), bytes.data() + kPublicKeyAt, file.publicKey.size());
    const uint32_t bodyLength = LoadU32(bytes, kBodyLengthAt);
    if (bodyLength > INT_MAX || bodyLength > bytes.size() - kHeadLength) return Fault::kBody;
    file.body = bytes.substr(kHeadLength, bodyLength);
    char digest[kDigestLength];
    Md5HashBuffer(digest, file.body.data(), static_cast<int>(bodyLength));
    return memcmp(digest, bytes.data() + kDigestAt, kDigestLength) == 0 ? Fault::kNone : Fault::kDigest;
}

bool Open(std::string_view body, const TeaKey& key, IniText& text) {
    std::string plain(body.size(), '\0');
    int length = static_cast<int>(plain.size());
    if (!Orvane::Quern::kx_symmetry_decrypt2(body.data(), length, key.data(), plain.data(), &length)) return false;
    text.Clear();
    std::string_view rest(plain.data(), static_cast<size_t>(length));
    while (!rest.empty()) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        text.AddLine(line);
        rest.remove_prefix(line.size() < rest.size() ? line.size() + 1 : line.size());
    }
    return true;
}

std::string Build(const IniText& text, const TeaKey& key, const CurvePublicKey& publicKey) {
    const std::string plain = text.Join('\n');
    if (plain.size() > kLongestText) return {};
    const int plainLength = static_cast<int>(plain.size());
    int bodyLength = Orvane::Quern::kx_symmetry_encrypt2_len(plainLength);
    std::string bytes(kHeadLength + static_cast<size_t>(bodyLength), '\0');
    char* const body = bytes.data() + kHeadLength;
    Orvane::Quern::kx_symmetry_encrypt2(plain.data(), plainLength, key.data(), body, &bodyLength);
    StoreU16(bytes, kMagicAt, kMagic);
    StoreU16(bytes, kVersionAt, kVersion);
    StoreU32(bytes, kHeadLengthAt, kHeadLength);
    StoreU32(bytes, kBodyLengthAt, static_cast<uint32_t>(bodyLength));
    StoreU16(bytes, kEncryptionAt, kTea);
    StoreU16(bytes, kPublicKeyLengthAt, kPublicKeyLength);
    memcpy(bytes.data() + kPublicKeyAt, publicKey.data(), publicKey.size());
    StoreU16(bytes, kDigestLengthAt, kDigestLength);
    Md5HashBuffer(bytes.data() + kDigestAt, body, bodyLength);
    return bytes;
}

bool MakeKey(const char* peerPublicKey, TeaKey& key, CurvePublicKey& publicKey) {
    CurvePublicKey peer;
    if (strlen(peerPublicKey) != 2 * peer.size() || !HexToBuffer(peerPublicKey, peer.data(), peer.size())) return false;
    CurvePublicKey newPublicKey;
    CurvePrivateKey privateKey;
    CurveSecret secret;
    const bool made = MakeCurveKey(newPublicKey, privateKey) && CurveSharedSecret(peer, privateKey, secret);
    if (made) {
        publicKey = newPublicKey;
        CopyKey(secret, key);
    }
    explicit_bzero(privateKey.data(), privateKey.size());
    explicit_bzero(secret.data(), secret.size());
    return made;
}

bool RecoverKey(const CurvePublicKey& publicKey, const CurvePrivateKey& peerPrivateKey, TeaKey& key) {
    CurveSecret secret;
    const bool recovered = CurveSharedSecret(publicKey, peerPrivateKey, secret);
    if (recovered) CopyKey(secret, key);
    explicit_bzero(secret.data(), secret.size());
    return recovered;
}

}  // namespace Quern::EncryptedIni
