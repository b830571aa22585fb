#include "Serializer/ZYL/ZylParse.h"

#include <cmath>
#include <limits>

#include "Serializer/ZYL/ZylTime.h"
#include "Serializer/ZYL/ZylTypeUtil.h"
#include "Support/Test.h"

namespace Quern {
namespace {

// The macros of the tests: BIG is 300, MINUS is -1; any other name has a code of its own.
int LookUp(const char* name, long long& value, void* context) {
    if (context != nullptr) *static_cast<std::string*>(context) = name;
    if (strcmp(name, "BIG") != 0 && strcmp(name, "MINUS") != 0) return -1234;
    value = *name == 'B' ? 300 : -1;
    return 0;
}

template <typename T>
using One = int (*)(T&, const char*, unsigned*, T, ZylMacroLookup, void*);
template <typename T>
using Many = int (*)(T*, unsigned, const char*, unsigned*, T, ZylMacroLookup, void*);

// What all integers have in common.
template <typename T>
void CheckInteger(One<T> one, Many<T> many) {
    constexpr T kDefault = 77;
    constexpr T kUntouched = 1;
    using Limits = std::numeric_limits<T>;
    const auto check = [&](const std::string& text, int code, T expected, ZylMacroLookup lookUp = nullptr) {
        T value = kUntouched;
        EXPECT_EQ(one(value, text.c_str(), nullptr, kDefault, lookUp, nullptr), code) << text;
        EXPECT_EQ(value, code == 0 ? expected : kUntouched) << text;
    };
    for (T limit : {Limits::min(), Limits::max()})
        check(std::to_string(limit), 0, limit);
    if constexpr (sizeof(T) < 8) {
        for (const std::string& outside : {std::to_string(Limits::max() + 1LL), std::to_string(Limits::min() - 1LL),
                                           std::string("99999999999999999999"), std::string("-99999999999999999999"),
                                           std::string("0x7fffffffffffffff")})
            check(outside, -21, 0);
        check("BIG", sizeof(T) == 1 ? -21 : 0, static_cast<T>(300), LookUp);  // a macro's number has to fit too
        check("MINUS", std::is_signed_v<T> ? 0 : -21, static_cast<T>(-1), LookUp);
    }
    const std::pair<const char*, T> good[] = {{"0x10", 16},
                                              {"010", 8},
                                              {"-0", 0},
                                              {"+7", 7},
                                              {" \r\n\t 12 13", 12},
                                              {"12abc", 12},
                                              {"0x", 0},
                                              {"08", 0},
                                              {"", kDefault},
                                              {" \r\n\t", kDefault},
                                              {"00000000000000000000012", 10}};
    for (const auto& [text, value] : good)
        check(text, 0, value);
    for (const char* bad : {"+", "-", "+-5", "-+5", "+ 5", "-x", "--1"})
        check(bad, -29, 0);
    for (const char* macro : {"abc", "_1", ".5", "\v5", "x10"})
        check(macro, -30, 0);
    check("unknown", -1234, 0, LookUp);

    T values[4] = {9, 9, 9, 9};
    std::string asked;
    unsigned count = 99;
    EXPECT_EQ(one(values[0], "  name other", &count, 0, LookUp, &asked), -1234) << "the look-up's own code";
    EXPECT_EQ(asked, "name");
    EXPECT_EQ(one(values[0], " ", &count, 5, nullptr, nullptr), 0);
    EXPECT_TRUE(count == 0 && values[0] == 9) << "with a count, nothing else is touched";
    EXPECT_EQ(one(values[3], "9 8", &count, 5, nullptr, nullptr), 0);
    EXPECT_EQ(count, 1u);
    EXPECT_EQ(many(values, 3, "1\t0x2z\n", &count, 5, nullptr, nullptr), 0);
    EXPECT_TRUE(count == 2 && values[0] == 1 && values[1] == 2 && values[2] == 9);
    EXPECT_EQ(many(values, 3, "3", nullptr, 5, nullptr, nullptr), 0);
    EXPECT_TRUE(values[0] == 3 && values[1] == 5 && values[2] == 5 && values[3] == 9);
    EXPECT_EQ(many(values, 3, "1 2 3 nonsense", &count, 5, nullptr, nullptr), 0) << "not looked at past the capacity";
    EXPECT_TRUE(count == 3 && values[3] == 9);
    EXPECT_EQ(many(values, 4, "6 - 7", &count, 5, nullptr, nullptr), -29);
    EXPECT_TRUE(values[0] == 6 && values[1] == 2) << "stops at the fault";
}

TEST(ZylParseTest, EveryInteger){
#define CHECK(name, type)                                                 \
    {                                                                     \
        SCOPED_TRACE(#name);                                              \
        CheckInteger<type>(ZylParse::parse##name, ZylParse::parse##name); \
    }
    ORVANE_ZYL_INTEGERS(CHECK)
#undef CHECK
}

// Plain decimal numbers do not go through the C library, which says what they have to be; so it does for 64 bits, which
// have no range test.
TEST(ZylParseTest, NumbersAreThoseOfTheCLibrary) {
    const auto check = [](const std::string& text) {
        const size_t begin = text.find_first_not_of(" \t");
        if (begin == std::string::npos) return;
        const std::string token = text.substr(begin, text.find_first_of(" \t", begin) - begin);
        const bool isMacro = isdigit(static_cast<unsigned char>(token[0])) == 0 && token[0] != '+' && token[0] != '-';
        char* end;
        const unsigned long long expected = strtoull(token.c_str(), &end, 0);
        const int code = isMacro ? -30 : end == token.c_str() ? -29 : 0;
        unsigned long long value = expected + 1;
        long long number = 0;
        ASSERT_EQ(ZylParse::parseUInt64(value, text.c_str(), nullptr, 0), code) << text;
        ASSERT_EQ(ZylParse::parseInt64(number, text.c_str(), nullptr, 0), code) << text;
        ASSERT_TRUE(code != 0 || (value == expected && number == static_cast<long long>(expected))) << text;

        const double expectedDouble = strtod(token.c_str(), &end);
        double real = -1;
        ASSERT_EQ(ZylParse::parseDouble(real, text.c_str(), nullptr, 0), end == token.c_str() ? -29 : 0) << text;
        ASSERT_TRUE(end == token.c_str() || real == expectedDouble) << text;
    };
    for (const char* text : {"99999999999999999999999", "-1", "9223372036854775808", "-0x8000000000000000", "1e999",
                             "-inf", "+0x1p4", "1.6e1x", "abc", ".", "-e5", "\v 5"})
        check(text);
    const char kAlphabet[] = "0123456789+-xXaf.e \t";
    std::mt19937 random(5);
    for (int i = 0; i < 100000; ++i) {
        std::string text;
        for (auto size = 1 + random() % 22; size > 0; --size)
            text += random() % 4 != 0 ? static_cast<char>('0' + random() % 10) : kAlphabet[random() % 20];
        check(text);
    }
    float values[3] = {9, 9, 9};
    EXPECT_EQ(ZylParse::parseFloat(values, 3, "0.1 1e300", nullptr, 0.5f), 0) << "no range test";
    EXPECT_TRUE(values[0] == 0.1f && values[1] == HUGE_VALF && values[2] == 0.5f);
}

TEST(ZylParseTest, DatesTimesAndAddresses) {
    const unsigned home = 1 << 24 | 127;
    unsigned value = 1, count = 99, ips[3] = {1, 1, 1};
    EXPECT_EQ(ZylParse::parseDate(value, "", nullptr, "never"), -14);
    EXPECT_EQ(ZylParse::parseDate(value, "2024- 03-05", nullptr, nullptr), -14) << "the token ends at the blank";
    EXPECT_EQ(ZylParse::parseTime(value, "", nullptr, "25:00:00"), -13);
    EXPECT_EQ(value, 1u);
    EXPECT_EQ(ZylParse::parseDate(value, "", &count, "never"), 0) << "with a count, no default is needed";
    EXPECT_TRUE(count == 0 && value == 1);
    EXPECT_EQ(ZylParse::parseIP(ips, 3, "127.0.0.1\n0.0.0.0", &count, "9.9.9.9"), 0);
    EXPECT_TRUE(count == 2 && ips[0] == home && ips[1] == 0 && ips[2] == 1);
    EXPECT_EQ(ZylParse::parseIP(ips, 3, "0.0.0.0", nullptr, "127.0.0.1"), 0);
    EXPECT_TRUE(ips[0] == 0 && ips[1] == home && ips[2] == home);
}

}  // namespace
}  // namespace Quern
