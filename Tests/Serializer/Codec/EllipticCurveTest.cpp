#include "Serializer/Codec/EllipticCurve.h"

#include "Serializer/Codec/Hex.h"
#include "Support/Test.h"

namespace Quern {
namespace {

template <typename Bytes>
Bytes FromHex(const std::string& digits) {
    Bytes bytes{};
    EXPECT_EQ(digits.size(), 2 * bytes.size());
    EXPECT_TRUE(HexToBuffer(digits.c_str(), bytes.data(), bytes.size()));
    return bytes;
}

const char kOrder[] = "fffffffffffffffffffffffffffffffebaaedce6af48a03bbfd25e8cd0364141";

// The well-known multiples of the generator.
TEST(EllipticCurve, PublicHalvesOfKnownKeys) {
    const struct {
        const char *privateKey, *x, *y;
    } known[] = {
        {"0000000000000000000000000000000000000000000000000000000000000001",
         "79be667ef9dcbbac55a06295ce870b07029bfcdb2dce28d959f2815b16f81798",
         "483ada7726a3c4655da4fbfc0e1108a8fd17b448a68554199c47d08ffb10d4b8"},
        {"fffffffffffffffffffffffffffffffebaaedce6af48a03bbfd25e8cd0364140",
         "79be667ef9dcbbac55a06295ce870b07029bfcdb2dce28d959f2815b16f81798",
         "b7c52588d95c3b9aa25b0403f1eef75702e84bb7597aabe663b82f6f04ef2777"},
    };
    for (const auto& one : known) {
        CurvePublicKey publicKey;
        ASSERT_TRUE(CurvePublicFromPrivate(FromHex<CurvePrivateKey>(one.privateKey), publicKey));
        EXPECT_EQ(publicKey, FromHex<CurvePublicKey>(std::string(one.x) + one.y));
    }
    CurvePublicKey unused;
    EXPECT_FALSE(CurvePublicFromPrivate(CurvePrivateKey{}, unused)) << "zero";
    EXPECT_FALSE(CurvePublicFromPrivate(FromHex<CurvePrivateKey>(kOrder), unused)) << "the order itself";
}

// Computed with Python's integers by the textbook's addition of points.
TEST(EllipticCurve, SharedSecretIsTheXCoordinate) {
    const auto a = FromHex<CurvePrivateKey>("0123456789abcdef0123456789abcdef0123456789abcdef0123456789abcdef");
    const auto b = FromHex<CurvePrivateKey>("fedcba9876543210fedcba9876543210fedcba9876543210fedcba9876543210");
    const auto publicA = FromHex<CurvePublicKey>(
        "4646ae5047316b4230d0086c8acec687f00b1cd9d1dc634f6cb358ac0a9a8fff"
        "fe77b4dd0a4bfb95851f3b7355c781dd60f8418fc8a65d14907aff47c903a559");
    const auto publicB = FromHex<CurvePublicKey>(
        "88e2ddeb04657dbd0edadf9c1f98da3b3895faa1f00527934dd35d17542ffe9b"
        "1e7640d7737e24e36d208effb77e86affe670a9a497aa7fb52bf4e687a17fff4");
    const auto expected = FromHex<CurveSecret>("e2b54e038a31993102766f2aa031a4f00fade5968246cbf9d8e1f6b1a63bcd44");
    CurveSecret secret{};
    EXPECT_TRUE(CurveSharedSecret(publicB, a, secret));
    EXPECT_EQ(secret, expected);
    secret = {};
    EXPECT_TRUE(CurveSharedSecret(publicA, b, secret));
    EXPECT_EQ(secret, expected);

    CurvePublicKey offTheCurve = publicA;
    offTheCurve[63] ^= 1;
    for (const CurvePublicKey& noPoint : {offTheCurve, CurvePublicKey{}})
        EXPECT_FALSE(CurveSharedSecret(noPoint, b, secret));
    for (const CurvePrivateKey& noKey : {CurvePrivateKey{}, FromHex<CurvePrivateKey>(kOrder)})
        EXPECT_FALSE(CurveSharedSecret(publicA, noKey, secret));
}

TEST(EllipticCurve, HexTakesEitherCaseAndNothingElse) {
    uint8_t bytes[2] = {};
    EXPECT_TRUE(HexToBuffer("aF09", bytes, 2));
    EXPECT_EQ(bytes[0], 0xAF);
    EXPECT_EQ(bytes[1], 0x09);
    for (const char* wrong : {"aF0", "aF0g", "aF0 ", "0x12", ""})
        EXPECT_FALSE(HexToBuffer(wrong, bytes, 2)) << wrong;
}

}  // namespace
}  // namespace Quern
