#include "Serializer/Codec/Base64.h"

#include "Serializer/Codec/Md5.h"
#include "Support/Test.h"

namespace Quern {
namespace {

std::string Encode(const std::string& bytes) {
    return base64_encode(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<unsigned int>(bytes.size()));
}

TEST(Base64, EveryByteAndEveryCharacterOfTheAlphabet) {
    EXPECT_EQ(Encode("") + Encode("fo") + Encode("foo"), "Zm8=Zm9v");
    std::string bytes;
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    const std::string text = Encode(bytes);
    char digest[16];
    Md5HashBuffer(digest, text.data(), static_cast<int>(text.size()));
    EXPECT_EQ(Encode(std::string(digest, sizeof digest)), "IrOT/lhoOEeHQs5/qJnYlw==");
    EXPECT_EQ(base64_decode(text), bytes);

    for (int i = 0; i < 256; ++i) {
        const bool isMember = i != 0 && i != '=' && text.find(static_cast<char>(i)) != std::string::npos;
        EXPECT_EQ(is_base64(static_cast<unsigned char>(i)), isMember) << i;
    }
}

TEST(Base64, DecodingStopsAtTheFirstForeignCharacter) {
    const std::string kCases[][2] = {{"QQ", "A"},
                                     {"QUI", "AB"},
                                     {"Q", ""},
                                     {"=", ""},
                                     {"QUJD!QUJD", "ABC"},
                                     {"QUJDQU!D", "ABCA"},
                                     {"QUJDQ-JD", "ABC"},
                                     {"QUJDQUJ\n", "ABCAB"},
                                     {{"QUJD\0QUJD", 9}, "ABC"},
                                     {"\xC3\x84QUJD", ""},
                                     {"QR==", "A"}};  // loose bits are not looked at
    for (const auto& [text, bytes] : kCases)
        EXPECT_EQ(base64_decode(text), bytes) << text;
}

}  // namespace
}  // namespace Quern
