#include "Serializer/ZYL/ZylParse.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <cstring>
#include <limits>
#include <random>
#include <string>

#include "Serializer/ZYL/ZylTime.h"
#include "Serializer/ZYL/ZylTypeUtil.h"

namespace Quern {
namespace {

template <typename T>
using One = int (*)(T&, const char*, unsigned*, T, ZylMacroLookup, void*);
template <typename T>
using Many = int (*)(T*, unsigned, const char*, unsigned*, T, ZylMacroLookup, void*);

// The macros of the tests: BIG is 300, MINUS is -1; any other name has a code of its own.
int LookUp(const char* name, long long& value, void* context) {
    if (context != nullptr) *static_cast<std::string*>(context) = name;
    if (strcmp(name, "BIG") != 0 && strcmp(name, "MINUS") != 0) return -1234;
    value = *name == 'B' ? 300 : -1;
    return 0;
}

// What all integers have in common; `isNarrow` where the type has a range test.
template <typename T>
void CheckInteger(const char* name) {
    SCOPED_TRACE(name);
    using Limits = std::numeric_limits<T>;
    constexpr bool isNarrow = sizeof(T) < 8;
    One<T> one = nullptr;
    Many<T> many = nullptr;
#define SELECT(typeName, type)                                      \
    if constexpr (std::is_same_v<T, type>) {                        \
        if (strcmp(name, #typeName) == 0) {                         \
            one = static_cast<One<T>>(ZylParse::parse##typeName);   \
            many = static_cast<Many<T>>(ZylParse::parse##typeName); \
        }                                                           \
    }
    ORVANE_ZYL_INTEGERS(SELECT)
#undef SELECT
    ASSERT_TRUE(one != nullptr && many != nullptr);

    T value = 1;
    unsigned count = 99;
    const auto parse = [&](const std::string& text, unsigned* taken = nullptr, ZylMacroLookup lookUp = nullptr) {
        return one(value, text.c_str(), taken, 77, lookUp, nullptr);
    };
    for (T limit : {Limits::min(), Limits::max()}) {
        EXPECT_EQ(parse(std::to_string(limit), &count), 0);
        EXPECT_EQ(value, limit);
        EXPECT_EQ(count, 1u);
    }
    if constexpr (isNarrow) {
        const std::string above = std::to_string(static_cast<long long>(Limits::max()) + 1);
        const std::string below = std::to_string(static_cast<long long>(Limits::min()) - 1);
        for (const std::string& outside : {above, below, std::string("99999999999999999999"),
                                           std::string("-99999999999999999999"), std::string("0x7fffffffffffffff")}) {
            value = 1;
            EXPECT_EQ(parse(outside), -21) << outside;
            EXPECT_EQ(value, T{1}) << "a failed parse leaves its target";
        }
        EXPECT_EQ(parse("BIG", nullptr, LookUp), sizeof(T) == 1 ? -21 : 0) << "a macro's number has to fit too";
        EXPECT_EQ(parse("MINUS", nullptr, LookUp), std::is_signed_v<T> ? 0 : -21);
    }
    struct Good {
        const char* text;
        int value;
    };
    for (const Good& good : {Good{"0x10", 16},
                             {"010", 8},
                             {"0", 0},
                             {"-0", 0},
                             {"+7", 7},
                             {" \r\n\t 12 13", 12},
                             {"12abc", 12},
                             {"0x", 0},
                             {"08", 0},
                             {"0x7F;", 127},
                             {"00000000000000000000012", 10}}) {
        EXPECT_EQ(parse(good.text), 0) << good.text;
        EXPECT_EQ(value, static_cast<T>(good.value)) << good.text;
    }
    for (const char* bad : {"+", "-", "+-5", "-+5", "+ 5", "-x", "--1"})
        EXPECT_EQ(parse(bad), -29) << bad;
    for (const char* macro : {"abc", "_1", ".5", "\v5", "x10"})
        EXPECT_EQ(parse(macro), -30) << macro;
    EXPECT_EQ(parse("unknown", nullptr, LookUp), -1234) << "the look-up's own code";
    std::string asked;
    EXPECT_EQ(one(value, "  name other", nullptr, 0, LookUp, &asked), -1234);
    EXPECT_EQ(asked, "name");

    value = 1;
    for (const char* nothing : {"", " \r\n\t"}) {
        EXPECT_EQ(parse(nothing, &count), 0);
        EXPECT_EQ(count, 0u);
        EXPECT_EQ(value, T{1}) << "with a count, nothing else is touched";
    }
    EXPECT_EQ(parse(""), 0);
    EXPECT_EQ(value, T{77});

    T values[4] = {9, 9, 9, 9};
    EXPECT_EQ(many(values, 3, "1\t0x2\n", &count, 5, nullptr, nullptr), 0);
    EXPECT_EQ(count, 2u);
    EXPECT_TRUE(values[0] == 1 && values[1] == 2 && values[2] == 9);
    EXPECT_EQ(many(values, 3, "3", nullptr, 5, nullptr, nullptr), 0);
    EXPECT_TRUE(values[0] == 3 && values[1] == 5 && values[2] == 5 && values[3] == 9);
    EXPECT_EQ(many(values, 3, "1 2 3 nonsense", &count, 5, nullptr, nullptr), 0) << "not looked at past the capacity";
    EXPECT_EQ(count, 3u);
    EXPECT_EQ(values[3], T{9});
    EXPECT_EQ(many(values, 4, "6 - 7", &count, 5, nullptr, nullptr), -29);
    EXPECT_TRUE(values[0] == 6 && values[1] == 2) << "stops at the fault";
    EXPECT_EQ(many(values, 4, "", &count, 5, nullptr, nullptr), 0);
    EXPECT_EQ(count, 0u);

    EXPECT_DEATH(one(value, nullptr, nullptr, 0, nullptr, nullptr), "NULL != str");
    EXPECT_DEATH(many(values, 1, nullptr, nullptr, 0, nullptr, nullptr), "NULL != str");
    EXPECT_DEATH(many(nullptr, 1, "1", nullptr, 0, nullptr, nullptr), "NULL != dest");
    EXPECT_DEATH(many(values, 0, "1", nullptr, 0, nullptr, nullptr), "0 != count");
}

TEST(ZylParseTest, EveryInteger) {
#define CHECK(name, type) CheckInteger<type>(#name);
    ORVANE_ZYL_INTEGERS(CHECK)
#undef CHECK
}

TEST(ZylParseTest, LongIntegersHaveNoRangeTest) {
    unsigned long long big = 0;
    EXPECT_EQ(ZylParse::parseUInt64(big, "99999999999999999999999", nullptr, 0), 0);
    EXPECT_EQ(big, ULLONG_MAX);
    EXPECT_EQ(ZylParse::parseUInt64(big, "-1", nullptr, 0), 0);
    EXPECT_EQ(big, ULLONG_MAX);
    EXPECT_EQ(ZylParse::parseUInt64(big, "MINUS", nullptr, 0, LookUp), 0);
    EXPECT_EQ(big, ULLONG_MAX);
    long long value = 0;
    EXPECT_EQ(ZylParse::parseInt64(value, "9223372036854775808", nullptr, 0), 0);
    EXPECT_EQ(value, LLONG_MIN);
    EXPECT_EQ(ZylParse::parseInt64(value, "-0x8000000000000000", nullptr, 0), 0);
    EXPECT_EQ(value, LLONG_MIN);
}

// Short decimal numbers do not go through the C library; it says what they have to be.
TEST(ZylParseTest, NumbersAreThoseOfTheCLibrary) {
    const char kAlphabet[] = "0123456789+-xXaf.e \t";
    std::mt19937 random(5);
    for (int i = 0; i < 200000; ++i) {
        std::string text;
        for (auto size = 1 + random() % 22; size > 0; --size) {
            text += random() % 4 != 0 ? static_cast<char>('0' + random() % 10) : kAlphabet[random() % 20];
        }
        const size_t begin = text.find_first_not_of(" \t");
        if (begin == std::string::npos) continue;
        const std::string token = text.substr(begin, text.find_first_of(" \t", begin) - begin);
        const bool isMacro =
            std::isdigit(static_cast<unsigned char>(token[0])) == 0 && token[0] != '+' && token[0] != '-';

        char* end;
        const unsigned long long expected = strtoull(token.c_str(), &end, 0);
        const int code = isMacro ? -30 : end == token.c_str() ? -29 : 0;
        unsigned long long value = expected + 1;
        ASSERT_EQ(ZylParse::parseUInt64(value, text.c_str(), nullptr, 0), code) << text;
        ASSERT_EQ(value, code == 0 ? expected : expected + 1) << text;

        const double expectedDouble = strtod(token.c_str(), &end);
        double real = -1;
        ASSERT_EQ(ZylParse::parseDouble(real, text.c_str(), nullptr, 0), end == token.c_str() ? -29 : 0) << text;
        ASSERT_TRUE(end == token.c_str() || real == expectedDouble) << text;
    }
}

TEST(ZylParseTest, FloatingNumbers) {
    double value = 1;
    unsigned count = 99;
    EXPECT_EQ(ZylParse::parseDouble(value, " -1.5e3 2", &count, 0), 0);
    EXPECT_EQ(value, -1500);
    EXPECT_EQ(count, 1u);
    for (const char* text : {"+0x1p4", "16", "+16.0", "1.6e1x", "160e-1"}) {
        EXPECT_EQ(ZylParse::parseDouble(value, text, nullptr, 0), 0) << text;
        EXPECT_EQ(value, 16) << text;
    }
    EXPECT_EQ(ZylParse::parseDouble(value, "1e999", nullptr, 0), 0) << "no range test";
    EXPECT_EQ(value, HUGE_VAL);
    EXPECT_EQ(ZylParse::parseDouble(value, "-inf", nullptr, 0), 0);
    EXPECT_EQ(value, -HUGE_VAL);
    for (const char* bad : {"abc", "+", ".", "-e5"})
        EXPECT_EQ(ZylParse::parseDouble(value, bad, nullptr, 0), -29) << bad;
    EXPECT_EQ(ZylParse::parseDouble(value, " ", nullptr, 2.5), 0);
    EXPECT_EQ(value, 2.5);

    float small = 0;
    EXPECT_EQ(ZylParse::parseFloat(small, "0.1", nullptr, 0), 0);
    EXPECT_EQ(small, 0.1f);
    EXPECT_EQ(ZylParse::parseFloat(small, "1e300", nullptr, 0), 0);
    EXPECT_EQ(small, HUGE_VALF);
    float values[3] = {9, 9, 9};
    EXPECT_EQ(ZylParse::parseFloat(values, 2, "1", nullptr, 0.5f), 0);
    EXPECT_TRUE(values[0] == 1 && values[1] == 0.5f && values[2] == 9);
    EXPECT_EQ(ZylParse::parseFloat(values, 3, "1 2 3", &count, 0.5f), 0);
    EXPECT_EQ(count, 3u);
    EXPECT_DEATH(ZylParse::parseFloat(values, 0, "1", nullptr, 0), "0 != count");
}

TEST(ZylParseTest, DatesTimesAndAddresses) {
    unsigned value = 1;
    unsigned count = 99;
    EXPECT_EQ(ZylParse::parseDate(value, " 2024-03-05 2024-03-06", &count, nullptr), 0);
    EXPECT_EQ(value, ZylDate(2024, 3, 5));
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(ZylParse::parseDate(value, "2024- 03-05", nullptr, nullptr), -14) << "the token ends at the blank";
    EXPECT_EQ(ZylParse::parseTime(value, "01:02:03", nullptr, nullptr), 0);
    EXPECT_EQ(value, ZylTime(1, 2, 3));
    EXPECT_EQ(ZylParse::parseTime(value, "25:00:00", nullptr, nullptr), -13);
    unsigned ips[3] = {1, 1, 1};
    unsigned ip = 0;
    ASSERT_EQ(ZylTypeUtil::str2ZylIP(ip, "10.0.0.1"), 0);
    EXPECT_EQ(ZylParse::parseIP(ips, 3, "10.0.0.1\n0.0.0.0", &count, "9.9.9.9"), 0);
    EXPECT_EQ(count, 2u);
    EXPECT_TRUE(ips[0] == ip && ips[1] == 0 && ips[2] == 1);
    EXPECT_EQ(ZylParse::parseIP(ips, 3, "0.0.0.0", nullptr, "10.0.0.1"), 0);
    EXPECT_TRUE(ips[0] == 0 && ips[1] == ip && ips[2] == ip);
    EXPECT_EQ(ZylParse::parseIP(ips, 3, "10.0.0.1 x", nullptr, nullptr), -12);

    // A missing value is the default text, or 0 without one; a bad default is an error only where it is needed.
    EXPECT_EQ(ZylParse::parseDate(value, "", nullptr, "2000-01-01"), 0);
    EXPECT_EQ(value, ZylDate(2000, 1, 1));
    EXPECT_EQ(ZylParse::parseDate(value, "", nullptr, nullptr), 0);
    EXPECT_EQ(value, 0u);
    EXPECT_EQ(ZylParse::parseDate(value, "", nullptr, "never"), -14);
    EXPECT_EQ(ZylParse::parseDate(value, "", &count, "never"), 0);
    EXPECT_EQ(count, 0u);
    EXPECT_EQ(ZylParse::parseDate(value, "2024-03-05", nullptr, "never"), 0);
}

}  // namespace
}  // namespace Quern
