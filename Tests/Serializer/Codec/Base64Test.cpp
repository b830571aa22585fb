#include "Serializer/Codec/Base64.h"

#include <gtest/gtest.h>

namespace Quern {
namespace {

std::string Encode(const std::string& bytes) {
    return base64_encode(reinterpret_cast<const unsigned char*>(bytes.data()), static_cast<unsigned int>(bytes.size()));
}

TEST(Base64, VectorsOfTheStandardBothWays) {
    const char* kVectors[][2] = {{"", ""},
                                 {"f", "Zg=="},
                                 {"fo", "Zm8="},
                                 {"foo", "Zm9v"},
                                 {"foob", "Zm9vYg=="},
                                 {"fooba", "Zm9vYmE="},
                                 {"foobar", "Zm9vYmFy"}};
    for (const auto& [bytes, text] : kVectors) {
        EXPECT_EQ(Encode(bytes), text);
        EXPECT_EQ(base64_decode(text), bytes);
    }
}

TEST(Base64, EveryByteAndEveryCharacterOfTheAlphabet) {
    std::string bytes;
    for (int i = 0; i < 256; ++i)
        bytes += static_cast<char>(i);
    const std::string text =
        "AAECAwQFBgcICQoLDA0ODxAREhMUFRYXGBkaGxwdHh8gISIjJCUmJygpKissLS4vMDEyMzQ1Njc4OTo7PD0+"
        "P0BBQkNERUZHSElKS0xNTk9QUVJT"
        "VFVWV1hZWltcXV5fYGFiY2RlZmdoaWprbG1ub3BxcnN0dXZ3eHl6e3x9fn+"
        "AgYKDhIWGh4iJiouMjY6PkJGSk5SVlpeYmZqbnJ2en6ChoqOkpaan"
        "qKmqq6ytrq+wsbKztLW2t7i5uru8vb6/wMHCw8TFxsfIycrLzM3Oz9DR0tPU1dbX2Nna29zd3t/g4eLj5OXm5+jp6uvs7e7v8PHy8/"
        "T19vf4+fr7"
        "/P3+/w==";
    EXPECT_EQ(Encode(bytes), text);
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
