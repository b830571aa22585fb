#include "Serializer/URLEncoder/URLEncoder.h"

#include "Support/Test.h"

namespace Quern {
namespace {

TEST(URLEncoder, KeepsTheUnreservedAndEncodesTheRest) {
    EXPECT_EQ(URLEncoder::Encode("a b~c/d"), "a+b~c%2Fd");
    EXPECT_EQ(URLEncoder::Encode(std::string("\0\n\xFF", 3)), "%00%0A%FF");
}

TEST(URLEncoder, EveryByteComesBack) {
    for (int i = 0; i < 256; ++i) {
        const std::string one(1, static_cast<char>(i));
        const std::string encoded = URLEncoder::Encode(one);
        EXPECT_EQ(encoded.size(), isalnum(i) || (i != 0 && strchr("-._~ ", i)) ? 1u : 3u) << i;
        EXPECT_EQ(URLEncoder::Decode(encoded), one);
    }
}

TEST(URLEncoder, DecodesEitherCaseAndLettersBeyondF) {
    EXPECT_EQ(URLEncoder::Decode("%41%4a%4A+!\xE4"), "AJJ !\xE4");
    EXPECT_EQ(URLEncoder::Decode("%ZZ%gz"), std::string() + char((35 * 16 + 35) & 0xFF) + char((16 * 16 + 35) & 0xFF));
    EXPECT_EQ(URLEncoderToHex(9), '9');
    EXPECT_EQ(URLEncoderToHex(10), 'A');
    EXPECT_EQ(URLEncoderFromHex('Z'), 35);
}

TEST(URLEncoderDeathTest, BrokenTextEndsTheProcess) {
    const char* const kCut = "i \\+ 2 < length.*OrvaneBase/Source/Serializer/URLEncoder";
    EXPECT_DEATH(URLEncoder::Decode("%4"), kCut);
    EXPECT_DEATH(URLEncoder::Decode("text%"), kCut);
    const char* const kDigit = "\\(0\\).*OrvaneBase/Source/Serializer/URLEncoder";
    EXPECT_DEATH(URLEncoder::Decode("%4 "), kDigit);
    EXPECT_DEATH(URLEncoder::Decode("%/1"), kDigit);
    EXPECT_DEATH(URLEncoder::Decode("%%41"), kDigit);
}

}  // namespace
}  // namespace Quern
