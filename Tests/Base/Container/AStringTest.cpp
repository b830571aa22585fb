#include "Base/Container/AString.h"

#include "Base/Container/AArray.h"
#include "Base/Container/AStringBuilder.h"
#include "Base/Container/StringConversion.h"
#include "Support/Test.h"

namespace {

using Quern::AArray;
using Quern::AString;
using Quern::AStringBuilder;

TEST(AString, NullIsAnEmptyText) {
    AString text(nullptr);
    EXPECT_STREQ(text.c_str(), "");
    EXPECT_TRUE(text.Empty());
    text = "abc";
    text.assign(nullptr, 3).append(nullptr).append("x", 0).append("x", -1).assign("x", 0);
    EXPECT_STREQ(text.c_str(), "abc");
    text = static_cast<const char*>(nullptr);
    EXPECT_STREQ(text.c_str(), "");
    EXPECT_EQ(text.at(0), '\0');
    EXPECT_TRUE(AString::IsNullOrEmpty(static_cast<const AString*>(nullptr)));
    EXPECT_TRUE(AString::IsNullOrEmpty(""));
    EXPECT_FALSE(AString::IsNullOrEmpty(AString("x")));
}

TEST(AString, JoinsAndCompares) {
    AString text("ab");
    text += 'c';
    text += "d";
    text += text;
    EXPECT_STREQ(text.c_str(), "abcdabcd");
    EXPECT_EQ(text.Find('d'), 3);
    EXPECT_STREQ(("<" + text + ">").c_str(), "<abcdabcd>");
    EXPECT_TRUE(text == "abcdabcd");
    EXPECT_TRUE(text != AString("abc"));
    EXPECT_TRUE(AString("a\0b", 3) == AString("a\0c", 3));  // as terminated texts
    EXPECT_FALSE(AString("1").IsEqual(nullptr));
    const Quern::ANumber number(1);
    EXPECT_FALSE(AString("1").IsEqual(&number));
    text = text.c_str() + 5;
    EXPECT_STREQ(text.c_str(), "bcd");
    AString moved = std::move(text);
    EXPECT_STREQ(moved.c_str(), "bcd");
    EXPECT_STREQ(text.c_str(), "");  // NOLINT(bugprone-use-after-move): a moved-from text is empty and usable
}

TEST(AString, KnowsNumbersByItsOwnRules) {
    for (const char* text : {"0", "-12.5", "-.", ".5", "5.", "007", "-1"})
        EXPECT_TRUE(AString(text).IsNumberic()) << text;
    for (const char* text : {"", "-", ".", "1.2.3", "--1", "1-", "+1", "1e3", " 1", "0x1", "a"})
        EXPECT_FALSE(AString(text).IsNumberic()) << text;
    for (const char* text : {"3.14", "-3.14", "1-2.", "-.", ".5"})
        EXPECT_TRUE(AString(text).IsReal()) << text;
    for (const char* text : {"", "-", ".", "12", "1.2.3", "--", "1.a", "+1.0"})
        EXPECT_FALSE(AString(text).IsReal()) << text;
    EXPECT_FALSE(AString::IsNumberic(nullptr));
    EXPECT_FALSE(AString::IsReal(nullptr));
}

TEST(AString, ConvertsOnlyNumbers) {
    EXPECT_EQ(AString("-12.9").AsInt64(), -12);
    EXPECT_DOUBLE_EQ(AString("-12.5").AsDouble(), -12.5);
    EXPECT_FLOAT_EQ(AString("0.25").AsFloat(), 0.25F);
    EXPECT_EQ(AString("12abc").AsInt64(), 0);
    EXPECT_EQ(AString("1e3").AsDouble(), 0);
    EXPECT_EQ(AString("4294967297").AsInt(), 1);
    EXPECT_EQ(AString("99999999999999999999").AsInt64(), LLONG_MAX);
    EXPECT_FALSE(AString("true").AsBoolean());
    EXPECT_FALSE(AString("0.9").AsBoolean());
    EXPECT_FALSE(AString("4294967296").AsBoolean());  // by its low 32 bits
}

TEST(AString, SplitsAtEachDelimiter) {
    const auto split = [](const char* text, const char* delimiters) {
        AArray tokens;
        EXPECT_TRUE(AString::Split(&tokens, text, delimiters));
        AString joined;
        for (int i = 0; i < tokens.Count(); ++i) {
            EXPECT_TRUE(tokens[i]->IsOwned());
            joined.append("[").append(*tokens.AStringAtIndex(i)).append("]");
        }
        return joined;
    };
    EXPECT_STREQ(split("a,b;c", ",;").c_str(), "[a][b][c]");
    EXPECT_STREQ(split("a,,b,", ",").c_str(), "[a][][b][]");
    EXPECT_STREQ(split("", ",").c_str(), "[]");
    EXPECT_STREQ(split("a,b", "").c_str(), "[a,b]");
    AArray tokens;
    EXPECT_FALSE(AString::Split(nullptr, "a", ",") || AString::Split(&tokens, nullptr, ",") ||
                 AString::Split(&tokens, "a", nullptr) || tokens.Count() != 0);
}

TEST(AString, StartsAndEndsOnlyWithSomething) {
    EXPECT_TRUE(AString("abc").StartWith("ab"));
    EXPECT_TRUE(AString("abc").EndWith("abc"));
    EXPECT_TRUE(AString("abc").EndWith("c"));
    EXPECT_FALSE(AString::StartWith("abc", ""));
    EXPECT_FALSE(AString::StartWith("ab", "abc"));
    EXPECT_FALSE(AString::StartWith(nullptr, "a"));
    EXPECT_FALSE(AString::EndWith("abc", ""));
    EXPECT_FALSE(AString::EndWith("bc", "abc"));
    EXPECT_FALSE(AString::EndWith("abc", nullptr));
}

TEST(AStringBuilder, CollectsPieces) {
    AStringBuilder builder(static_cast<const char*>(nullptr));
    EXPECT_EQ(builder.ToString(), nullptr);
    builder.Append(static_cast<const AString*>(nullptr)).Append("");
    EXPECT_STREQ(builder.ToString(), "");
    builder.resize(1000);
    const char* buffer = builder.ToString();
    AString all;
    for (int i = 0; i < 100; ++i) {
        builder.Append("abcde").Append(AString("fgh"));
        all += "abcdefgh";
    }
    EXPECT_EQ(builder.ToString(), buffer);  // the room was there
    EXPECT_STREQ(builder.ToString(), all.c_str());
    builder.Append(builder.ToString());
    EXPECT_STREQ(builder.ToString(), (all + all).c_str());

    const AString text("x");
    const AStringBuilder same(&text);
    builder = text;
    EXPECT_TRUE(builder.IsEqual(&same));
    EXPECT_FALSE(builder.IsEqual(&text));
    EXPECT_EQ(builder.GetObjectType(), Quern::kTypeNone);
    builder.Clear();
    EXPECT_FALSE(builder.IsEqual(&same));
}

TEST(StringConversion, GoesBothWays) {
    EXPECT_STREQ(Quern::int2str(INT_MIN).c_str(), "-2147483648");
    EXPECT_STREQ(Quern::ull2str(ULLONG_MAX).c_str(), "18446744073709551615");
    int result = 7;
    EXPECT_TRUE(Quern::str2int(" -12x", &result));
    EXPECT_EQ(result, -12);
    EXPECT_FALSE(Quern::str2int("x", &result));
    EXPECT_FALSE(Quern::str2int(nullptr, &result));
    EXPECT_EQ(result, -12);
    EXPECT_EQ(Quern::str2int(""), 0);
    EXPECT_EQ(Quern::str2int("42"), 42);
    double number = 7;
    EXPECT_FALSE(Quern::str2double("x1", &number) || Quern::str2double("", &number));
    EXPECT_EQ(number, 7);
    EXPECT_TRUE(Quern::str2double(" -1.5e1x", &number));
    EXPECT_EQ(number, -15);
}

}  // namespace
