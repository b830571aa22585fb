// Key agreement on the curve secp256k1, as the log's records and the encrypted store use it.
#ifndef ORVANE_SERIALIZER_CODEC_ELLIPTIC_CURVE_H
#define ORVANE_SERIALIZER_CODEC_ELLIPTIC_CURVE_H

#include <array>
#include <cstdint>

namespace Quern {

// The two 32-byte big-endian coordinates, X then Y, without a prefix byte.
using CurvePublicKey = std::array<uint8_t, 64>;
// A 32-byte big-endian scalar.
using CurvePrivateKey = std::array<uint8_t, 32>;
// The 32-byte big-endian x coordinate of the shared point.
using CurveSecret = std::array<uint8_t, 32>;

// Makes a key pair, drawing a private key up to 64 times until one is valid. False where randomness fails.
bool MakeCurveKey(CurvePublicKey& publicKey, CurvePrivateKey& privateKey);
// The public half of a private key. False for a private key that is not valid.
bool CurvePublicFromPrivate(const CurvePrivateKey& privateKey, CurvePublicKey& publicKey);
// The ECDH secret. False for a point that is not on the curve or a private key that is not valid.
bool CurveSharedSecret(const CurvePublicKey& publicKey, const CurvePrivateKey& privateKey, CurveSecret& secret);

}  // namespace Quern

#endif
