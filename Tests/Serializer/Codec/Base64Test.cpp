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

    int members = 0;
    for (int i = 0; i < 256; ++i)
        members += is_base64(static_cast<unsigned char>(i));
    EXPECT_EQ(members, 64);
    EXPECT_TRUE(is_base64('+') && is_base64('/') && is_base64('z') && is_base64('0'));
    EXPECT_FALSE(is_base64('=') || is_base64('-') || is_base64('_') || is_base64(0));
}

TEST(Base64, DecodingStopsAtTheFirstForeignCharacter) {
    EXPECT_EQ(base64_decode("QQ=="), "A");
    EXPECT_EQ(base64_decode("QQ"), "A");
    EXPECT_EQ(base64_decode("QUI"), "AB");
    EXPECT_EQ(base64_decode("Q"), "");
    EXPECT_EQ(base64_decode("="), "");
    EXPECT_EQ(base64_decode("QUJD!QUJD"), "ABC");
    EXPECT_EQ(base64_decode("QUJDQU!D"), "ABCA");
    EXPECT_EQ(base64_decode("QUJDQUJ\n"), "ABCAB");
    EXPECT_EQ(base64_decode("QUJDQ-JD"), "ABC");
    EXPECT_EQ(base64_decode(std::string("QUJD\0QUJD", 9)), "ABC");
    EXPECT_EQ(base64_decode("\xC3\x84QUJD"), "");
    EXPECT_EQ(base64_decode("QR=="), "A");  // bits that belong to no byte are not looked at
    EXPECT_EQ(base64_decode("AAAA"), std::string(3, '\0'));
}

TEST(Base64, EveryTailLengthComesBack) {
    std::string bytes;
    for (int size = 0; size < 70; ++size) {
        const std::string text = Encode(bytes);
        EXPECT_EQ(text.size(), (bytes.size() + 2) / 3 * 4);
        EXPECT_EQ(base64_decode(text), bytes);
        EXPECT_EQ(base64_decode(text.substr(0, text.find('='))), bytes);
        bytes += static_cast<char>(size * 37 + 251);
    }
}

}  // namespace
}  // namespace Quern
