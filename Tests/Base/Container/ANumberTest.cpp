#include "Base/Container/ANumber.h"

#include "Support/Test.h"

#include <cmath>
#include <type_traits>

namespace {

using Quern::ANumber;

// A pointer that became a Bool would be stored without a word where a text or an object was meant.
static_assert(!std::is_convertible_v<const char*, ANumber> && !std::is_convertible_v<Quern::AString*, ANumber>);
static_assert(std::is_convertible_v<bool, ANumber>);

TEST(ANumber, ConvertsBetweenTypes) {
    EXPECT_EQ(ANumber(0x1FFLL).ByteValue(), 0xFF);
    EXPECT_EQ(ANumber(0x100000002LL).IntValue(), 2);
    EXPECT_EQ(ANumber(-3).LongLongValue(), -3);
    EXPECT_EQ(ANumber(static_cast<unsigned char>(200)).IntValue(), 200);
    EXPECT_EQ(ANumber(-2.9).LongLongValue(), -2);
    EXPECT_TRUE(ANumber(0.1).BoolValue());
    EXPECT_TRUE(ANumber(0x100000000LL).BoolValue());
    EXPECT_FALSE(ANumber(0.0F).BoolValue());
    EXPECT_EQ(ANumber(true).DoubleValue(), 1.0);
    EXPECT_EQ(ANumber(1LL << 40).FloatValue(), 1099511627776.0F);
    // Beyond 64 bits there is a nearest value, and none for what is no number.
    EXPECT_EQ(ANumber(1e300).LongLongValue(), LLONG_MAX);
    EXPECT_EQ(ANumber(-1e300).LongLongValue(), LLONG_MIN);
    EXPECT_EQ(ANumber(std::nan("")).IntValue(), 0);
}

TEST(ANumber, ComparesByTheWiderKind) {
    EXPECT_TRUE(ANumber(1) == ANumber(1.0000001));
    EXPECT_FALSE(ANumber(1) == ANumber(1.00001));
    EXPECT_FALSE(ANumber(-0.0000001) == ANumber(0.0000001));
    EXPECT_TRUE(ANumber(0) == ANumber(-0.0000001));
    EXPECT_TRUE(ANumber() == ANumber(0));
    EXPECT_TRUE(ANumber(true) == ANumber(5));
    EXPECT_TRUE(ANumber(0.5) == ANumber(true));
    EXPECT_TRUE(ANumber(1LL << 32) != ANumber(0));
    const ANumber nan(std::nan(""));
    EXPECT_TRUE(nan.IsEqual(&nan));  // the same object
    EXPECT_FALSE(nan == ANumber(std::nan("")));
    const Quern::AString text("1");
    EXPECT_FALSE(ANumber(1).IsEqual(&text));
    EXPECT_FALSE(ANumber().IsEqual(nullptr));
}

TEST(ANumber, WritesText) {
    ANumber number;
    EXPECT_STREQ(number.GetTypeString(), "Unknown");
    EXPECT_STREQ(number.ToString().c_str(), "");
    number = true;
    EXPECT_STREQ(number.GetTypeString(), "Bool");
    EXPECT_STREQ(number.ToString().c_str(), "true");
    EXPECT_STREQ(ANumber(INT_MIN).ToString().c_str(), "-2147483648");
    EXPECT_STREQ(ANumber(LLONG_MAX).ToString().c_str(), "9223372036854775807");
    number = 0.5F;
    EXPECT_STREQ(number.GetTypeString(), "Float");
    EXPECT_STREQ(number.ToString().c_str(), "0.500000");
    EXPECT_EQ(ANumber(-1.7976931348623157e308).ToString().length(), 317);
}

TEST(ANumber, ReadsTextIntoTheNarrowestType) {
    struct Case {
        const char* text;
        const char* type;
        long long value;
    };
    for (const Case& c :
         {Case{"0", "Byte", 0}, Case{"255", "Byte", 255}, Case{"256", "Int32", 256}, Case{"-1", "Int32", -1},
          Case{"-129", "Int32", -129}, Case{"2147483647", "Int32", INT_MAX}, Case{"2147483648", "Int32", INT_MIN},
          Case{"4294967295", "Int32", -1}, Case{"4294967296", "Int64", 4294967296},
          Case{"-2147483647", "Int32", -2147483647}, Case{"-2147483648", "Int64", INT_MIN}, Case{"0x1F", "Byte", 31},
          Case{"0400", "Int32", 256}, Case{"99999999999999999999", "Int64", LLONG_MAX}, Case{"", "Byte", 0},
          Case{"abc", "Byte", 0}, Case{"2.5", "Double", 2}, Case{".", "Double", 0}}) {
        ANumber number(-1.0F);
        EXPECT_TRUE(number.FromString(c.text));
        EXPECT_STREQ(number.GetTypeString(), c.type) << c.text;
        EXPECT_EQ(number.LongLongValue(), c.value) << c.text;
    }
    ANumber untouched(3);
    EXPECT_FALSE(untouched.FromString(nullptr));
    EXPECT_EQ(untouched.IntValue(), 3);
}

TEST(ANumber, HasValuesThroughTheRootClass) {
    const ANumber number(-1.5);
    const Quern::AObject& object = number;
    EXPECT_EQ(ByteVal(&object), 255);
    EXPECT_TRUE(BoolVal(object));
    const Quern::AObject* none = nullptr;
    EXPECT_FALSE(BoolVal(none));
    EXPECT_EQ(DoubleVal(none), 0);
}

}  // namespace
