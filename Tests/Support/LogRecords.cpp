#include "Support/LogRecords.h"

#include <zlib.h>

#include "Serializer/Codec/Hex.h"
#include "Storage/Log/LogTea.h"
#include "Support/Test.h"

namespace OrvaneTest {
namespace {

uint32_t Word(const std::string& bytes, size_t at) {
    uint32_t word;
    memcpy(&word, bytes.data() + at, 4);
    return word;
}

// 16-round TEA of one payload's whole groups, undone.
void Decrypt(std::string& payload, const std::string& publicKey, const Quern::CurvePrivateKey& privateKey) {
    Quern::CurvePublicKey point;
    std::copy(publicKey.begin(), publicKey.end(), point.begin());
    Quern::CurveSecret secret;
    EXPECT_TRUE(Quern::CurveSharedSecret(point, privateKey, secret));
    Quern::LogTeaKey key;
    std::copy_n(secret.begin(), key.size(), key.begin());
    Quern::LogTeaDecrypt(reinterpret_cast<uint8_t*>(payload.data()), payload.size(), key);
}

// Raw inflate of a stream without an end.
std::string Inflate(const std::string& stream) {
    z_stream inflater{};
    EXPECT_EQ(inflateInit2(&inflater, -15), Z_OK);
    inflater.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(stream.data()));
    inflater.avail_in = static_cast<uInt>(stream.size());
    std::string text;
    int result;
    do {
        char chunk[4096];
        inflater.next_out = reinterpret_cast<Bytef*>(chunk);
        inflater.avail_out = sizeof chunk;
        result = inflate(&inflater, Z_SYNC_FLUSH);
        text.append(chunk, sizeof chunk - inflater.avail_out);
    } while (result == Z_OK && (inflater.avail_in > 0 || inflater.avail_out == 0));
    EXPECT_TRUE(result == Z_OK || result == Z_BUF_ERROR) << "inflate gave " << result;
    inflateEnd(&inflater);
    return text;
}

}  // namespace

const Quern::CurvePrivateKey& TestPrivateKey() {
    static const Quern::CurvePrivateKey key = [] {
        Quern::CurvePrivateKey made;
        for (size_t i = 0; i < made.size(); ++i)
            made[i] = static_cast<uint8_t>(i * 7 + 1);
        return made;
    }();
    return key;
}

const std::string& TestPublicKeyDigits() {
    static const std::string digits = [] {
        Quern::CurvePublicKey point;
        EXPECT_TRUE(Quern::CurvePublicFromPrivate(TestPrivateKey(), point));
        std::string text;
        for (const uint8_t byte : point)
            text += Format("%02X", byte);
        return text;
    }();
    return digits;
}

Quern::CurvePrivateKey DevelopmentKey() {
    Quern::CurvePrivateKey key{};
    const std::string digits = ReadFile(ORVANE_SOURCE_DIR "/Examples/Keys/development-log.key");
    EXPECT_TRUE(Quern::HexToBuffer(digits.c_str(), key.data(), key.size()));
    return key;
}

std::string TextOf(const Quern::AutoBuffer& buffer) {
    return std::string(reinterpret_cast<const char*>(buffer.Ptr()), buffer.Length());
}

std::string Flush(Quern::LogBuffer& buffer) {
    Quern::AutoBuffer out;
    buffer.Flush(out);
    return TextOf(out);
}

std::vector<DecodedRecord> DecodeRecords(const std::string& bytes, const Quern::CurvePrivateKey& privateKey) {
    std::vector<DecodedRecord> records;
    for (size_t at = 0; at < bytes.size();) {
        if (bytes.size() - at < 74) {
            ADD_FAILURE() << "a rest of " << bytes.size() - at << " bytes";
            break;
        }
        DecodedRecord record{};
        record.magic = static_cast<uint8_t>(bytes[at]);
        record.seq =
            static_cast<uint16_t>(static_cast<uint8_t>(bytes[at + 1]) | static_cast<uint8_t>(bytes[at + 2]) << 8);
        record.beginHour = static_cast<int8_t>(bytes[at + 3]);
        record.endHour = static_cast<int8_t>(bytes[at + 4]);
        const uint32_t length = Word(bytes, at + 5);
        record.publicKey = bytes.substr(at + 9, 64);
        if (record.magic < 6 || record.magic > 9 || length > bytes.size() - at - 74) {
            ADD_FAILURE() << "no record at " << at;
            break;
        }
        record.payload = bytes.substr(at + 73, length);
        record.tail = static_cast<uint8_t>(bytes[at + 73 + length]);
        EXPECT_EQ(record.tail, 0);
        record.text = record.payload;
        if (record.magic == 7) Decrypt(record.text, record.publicKey, privateKey);
        if (record.magic == 7 || record.magic == 9) record.text = Inflate(record.text);
        at += 74 + length;
        records.push_back(std::move(record));
    }
    return records;
}

std::string DecodeText(const std::string& bytes, const Quern::CurvePrivateKey& privateKey) {
    std::string text;
    for (const DecodedRecord& record : DecodeRecords(bytes, privateKey))
        text += record.text;
    return text;
}

}  // namespace OrvaneTest
