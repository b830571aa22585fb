#include "Storage/Log/LogTea.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

#include "Support/LogWriter.h"

namespace Quern {
namespace {

std::string Encrypted(std::string data, const LogTeaKey& key) {
    LogTeaEncrypt(reinterpret_cast<uint8_t*>(data.data()), data.size(), key);
    return data;
}

// Computed with Python's integers, cut to 32 bits after each step.
TEST(LogTea, KnownAnswers) {
    struct Case {
        std::string plain;
        LogTeaKey key;
        std::string cipher;
    };
    LogTeaKey counting, ones, mixed;
    for (size_t i = 0; i < 16; ++i) {
        counting[i] = static_cast<uint8_t>(i);
        ones[i] = 0xFF;
        mixed[i] = static_cast<uint8_t>(0x11 * i);
    }
    const Case cases[] = {
        {std::string(8, '\0'), {}, "\x98\xf7\x89\xa8\x83\x80\x2d\x18"},
        {std::string("\0\1\2\3\4\5\6\7", 8), counting, "\x51\x97\xdf\xca\x3f\x65\x2f\x37"},
        {std::string(8, '\xFF'), ones, "\x41\x79\x6c\xb0\x9f\xfe\x10\x6d"},
        {"\x01\x23\x45\x67\x89\xab\xcd\xef", mixed, "\x3a\xfb\x3c\x98\x49\x6f\x9b\x22"},
    };
    for (const Case& known : cases)
        EXPECT_EQ(Encrypted(known.plain, known.key), known.cipher);
}

// Lengths around the groups that are worked on together, at all alignments.
TEST(LogTea, AgreesWithThePlainWayAndIsUndone) {
    std::mt19937 random(20261124);
    for (size_t length = 0; length <= 100; ++length) {
        LogTeaKey key;
        for (uint8_t& byte : key)
            byte = static_cast<uint8_t>(random());
        std::string data(length, '\0');
        for (char& byte : data)
            byte = static_cast<char>(random());

        for (size_t shift = 0; shift < 8; ++shift) {
            std::string buffer = std::string(shift, 'x') + data + "y";
            uint8_t* const at = reinterpret_cast<uint8_t*>(buffer.data()) + shift;
            LogTeaEncrypt(at, length, key);
            EXPECT_EQ(buffer.substr(shift, length), OrvaneTest::EncryptGroups(data, key)) << length;
            EXPECT_EQ(buffer.back(), 'y');
            LogTeaDecrypt(at, length, key);
            EXPECT_EQ(buffer.substr(shift, length), data) << length;
        }
    }
}

}  // namespace
}  // namespace Quern
