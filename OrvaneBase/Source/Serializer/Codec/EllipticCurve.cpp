#include "Serializer/Codec/EllipticCurve.h"

#include <secp256k1.h>
#include <secp256k1_ecdh.h>
#include <string.h>

#include "Serializer/Codec/RandomBytes.h"

namespace Quern {
namespace {

constexpr int kKeyDraws = 64;
constexpr uint8_t kUncompressedPoint = 0x04;

// One context for the process, blinded once; the operations used here only read it.
const secp256k1_context* Context() {
    static const secp256k1_context* context = [] {
        secp256k1_context* made = secp256k1_context_create(SECP256K1_CONTEXT_NONE);
        uint8_t seed[32];
        if (ReadRandom(seed, sizeof seed)) (void)!secp256k1_context_randomize(made, seed);
        return made;
    }();
    return context;
}

int CopyX(unsigned char* output, const unsigned char* x, const unsigned char*, void*) {
    memcpy(output, x, 32);
    return 1;
}

}  // namespace

bool MakeCurveKey(CurvePublicKey& publicKey, CurvePrivateKey& privateKey) {
    for (int draw = 0; draw < kKeyDraws; ++draw) {
        if (!ReadRandom(privateKey.data(), privateKey.size())) return false;
        if (CurvePublicFromPrivate(privateKey, publicKey)) return true;
    }
    return false;
}

bool CurvePublicFromPrivate(const CurvePrivateKey& privateKey, CurvePublicKey& publicKey) {
    secp256k1_pubkey point;
    if (!secp256k1_ec_pubkey_create(Context(), &point, privateKey.data())) return false;
    uint8_t serialized[65];
    size_t length = sizeof serialized;
    secp256k1_ec_pubkey_serialize(Context(), serialized, &length, &point, SECP256K1_EC_UNCOMPRESSED);
    memcpy(publicKey.data(), serialized + 1, publicKey.size());
    return true;
}

bool CurveSharedSecret(const CurvePublicKey& publicKey, const CurvePrivateKey& privateKey, CurveSecret& secret) {
    uint8_t serialized[65] = {kUncompressedPoint};
    memcpy(serialized + 1, publicKey.data(), publicKey.size());
    secp256k1_pubkey point;
    if (!secp256k1_ec_pubkey_parse(Context(), &point, serialized, sizeof serialized)) return false;
    return secp256k1_ecdh(Context(), secret.data(), &point, privateKey.data(), CopyX, nullptr) == 1;
}

}  // namespace Quern
