// The bytes of an enciphered INI file. All integers are little-endian, without padding:
//
//   offset  size  field
//   0       2     magic, 2276
//   2       2     version, 2; readers take any above 1
//   4       4     head length, 98
//   8       4     body length, signed
//   12      2     encryption, 1 for TEA
//   14      2     length of the public key, 64
//   16      64    the writer's ephemeral secp256k1 public key, X then Y
//   80      2     length of the digest, 16
//   82      16    MD5 of the body
//   98            body: kx_symmetry_encrypt2 over the lines, joined by line feeds with none after the last
//
// The 16-byte key is the first half of the ECDH secret of the ephemeral key and the peer's: the writer keeps it in the
// secure store, the peer computes it from the public key in the head. The digest finds damage; it is no defence.
#ifndef ORVANE_STORAGE_BUNDLE_ENCRYPTED_INI_FORMAT_H
#define ORVANE_STORAGE_BUNDLE_ENCRYPTED_INI_FORMAT_H

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

#include "Serializer/Codec/EllipticCurve.h"

namespace Quern {

class IniText;

namespace EncryptedIni {

constexpr int kMagic = 2276;
constexpr int kVersion = 2;
constexpr int kTea = 1;
constexpr int kHeadBaseLength = 12;
constexpr int kHeadLength = 98;
constexpr int kPublicKeyLength = 64;
constexpr int kDigestLength = 16;
constexpr int kKeyLength = 16;

using TeaKey = std::array<char, kKeyLength>;

// What is wrong with a file, in the order in which it is looked for.
enum class Fault {
    kNone,
    kHeadBase,  // too short for the head's first 12 bytes
    kMagic,
    kVersion,
    kHeadExt,  // the head length is another, or the file too short for it
    kEncryption,
    kPublicKeyLength,
    kDigestLength,
    kBody,  // shorter than the head says, or a negative length
    kDigest,
};

// The fields up to the one at fault; what follows it is zero or empty.
struct File {
    int magic = 0;
    int version = 0;
    int encryption = 0;
    int publicKeyLength = 0;
    int digestLength = 0;
    CurvePublicKey publicKey{};
    std::string_view body;  // of the bytes that were read
};

// Reads a file's bytes, which must outlive `file`. What follows the body is ignored.
Fault Parse(std::string_view bytes, File& file);

// Deciphers a body and splits it at line feeds into `text`, without the empty lines. False, and `text` stays, if the
// key does not open the body.
bool Open(std::string_view body, const TeaKey& key, IniText& text);

// The bytes of a file of that text. Empty if the text is too long for the format, some 2 GiB.
std::string Build(const IniText& text, const TeaKey& key, const CurvePublicKey& publicKey);

// Makes a new key for the peer, given as 128 hexadecimal digits. False, and nothing is changed, for any other text and
// if randomness fails or the text is no point of the curve.
bool MakeKey(const char* peerPublicKey, TeaKey& key, CurvePublicKey& publicKey);
// The key of a file as the peer computes it. False for a public key that is no point of the curve.
bool RecoverKey(const CurvePublicKey& publicKey, const CurvePrivateKey& peerPrivateKey, TeaKey& key);

}  // namespace EncryptedIni
}  // namespace Quern

#endif
