#include "Storage/Log/LogTea.h"

#include "Support/LogWriter.h"
#include "Support/Test.h"

namespace Quern {
namespace {

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
