// Decodes sound log records the plain way, for tests that look at what the log wrote.
#ifndef ORVANE_TESTS_SUPPORT_LOG_RECORDS_H
#define ORVANE_TESTS_SUPPORT_LOG_RECORDS_H

#include <cstdint>
#include <string>
#include <vector>

#include "Serializer/Codec/EllipticCurve.h"
#include "Storage/Log/LogBuffer.h"

namespace OrvaneTest {

struct DecodedRecord {
    uint8_t magic;
    uint16_t seq;
    int beginHour, endHour;
    std::string publicKey;
    std::string payload;
    std::string text;  // what the payload says: inflated, decrypted
    uint8_t tail;
};

// The key pair that the tests encrypt for.
const Quern::CurvePrivateKey& TestPrivateKey();
const std::string& TestPublicKeyDigits();

// The one whose public half the product has.
Quern::CurvePrivateKey DevelopmentKey();

std::string TextOf(const Quern::AutoBuffer& buffer);
// Empties it; what comes out.
std::string Flush(Quern::LogBuffer& buffer);

// Every record of `bytes`, which holds nothing else. Fails the running test otherwise.
std::vector<DecodedRecord> DecodeRecords(const std::string& bytes,
                                         const Quern::CurvePrivateKey& privateKey = TestPrivateKey());
// The texts of all records, one behind the other.
std::string DecodeText(const std::string& bytes, const Quern::CurvePrivateKey& privateKey = TestPrivateKey());

}  // namespace OrvaneTest

#endif
