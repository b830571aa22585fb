#include "Storage/Bundle/SolidConfigReader.h"

#include <limits>

#include "Support/FakeInfoDictionary.h"
#include "Support/Test.h"

namespace {

using OrvaneTest::FakeInfoDictionary;
using Quern::AArray;
using Quern::InfoValue;
using Reader = Quern::SolidConfigReader;

TEST(SolidConfigReader, SaysWhyItCannotReadASection) {
    FakeInfoDictionary manifest;
    manifest.Set("Flat", FakeInfoDictionary::Text("no dictionary"));
    manifest.Set("There", "key", FakeInfoDictionary::Text("text"));
    OrvaneTest::CapturedConsole console;

    AArray keys;
    const struct {
        std::function<bool(const char*, const char*)> givesDefault;
        const char *missing, *flat, *end;  // the operation of either line, and what both end in
    } kOperations[] = {
        {[](auto section, auto key) { return Reader::GetInt(section, key, 7) == 7; }, "GetInt", "GetString",
         ", return defaultvalue"},
        {[](auto section, auto key) { return Reader::GetString(section, key, "d") == "d"; }, "GetString", "GetString",
         ", return defaultvalue"},
        {[](auto section, auto key) { return Reader::GetMetaString(section, key, "d") == "d"; }, "GetString",
         "GetString", ", return defaultvalue"},
        {[](auto section, auto key) { return Reader::GetBool(section, key, true); }, "GetBool", "GetString",
         ", return defaultvalue"},
        {[](auto section, auto key) { return Reader::GetInt64(section, key, 7) == 7; }, "GetBool", "GetString",
         ", return defaultvalue"},
        {[&](auto section, auto) { return Reader::GetAllKeys(section, &keys), keys.Count() == 0; }, "GetAllKeys",
         "GetAllKeys", ""},
        {[](auto section, auto key) { return !Reader::IsContainKey(section, key); }, "IsContainKey", "IsContainKey",
         ", return false"},
    };
    for (const auto& [givesDefault, missing, flat, end] : kOperations) {
        EXPECT_TRUE(givesDefault("None", "key") && givesDefault("Flat", "key"));
        EXPECT_THAT(
            console.Take(),
            ElementsAre(OrvaneTest::Format("Debug SolidConfigReader::%s section:None not exist%s", missing, end),
                        OrvaneTest::Format("Error SolidConfigReader::%s section:Flat is not a Dictionary%s, "
                                           "please Check info.plist!",
                                           flat, end)));
    }
    for (const auto& operation : {kOperations[0], kOperations[3], kOperations[4], kOperations[6]}) {
        EXPECT_TRUE(operation.givesDefault(nullptr, "key"));
        EXPECT_TRUE(operation.givesDefault("There", nullptr));
        EXPECT_TRUE(operation.givesDefault("There", "no such key"));
    }
    EXPECT_EQ(Reader::GetString("There", "no such key", "d"), "d");
    EXPECT_EQ(Reader::GetString(nullptr, "key", "d"), "");
    EXPECT_EQ(Reader::GetString("There", nullptr, "d"), "");
    EXPECT_EQ(Reader::GetString("None", "key", nullptr), "");
    Reader::GetAllKeys(nullptr, &keys);
    Reader::GetAllKeys("There", nullptr);
    EXPECT_EQ(keys.Count(), 0);
    EXPECT_THAT(console.Take(), IsEmpty());
}

TEST(SolidConfigReader, ListsTheKeysInTheirOrder) {
    FakeInfoDictionary manifest;
    for (const char* key : {"zebra", "ant", "m"})
        manifest.Set("S", key, FakeInfoDictionary::Integer(1));
    AArray keys;
    keys.Add("before");
    Reader::GetAllKeys("S", &keys);
    ASSERT_EQ(keys.Count(), 4);
    EXPECT_STREQ(keys.CStringAtIndex(1), "zebra");
    EXPECT_STREQ(keys.CStringAtIndex(3), "m");
    EXPECT_TRUE(keys.ObjectAtIndex(1)->IsOwned());
    EXPECT_TRUE(Reader::IsContainKey("S", "ant"));
    EXPECT_FALSE(Reader::IsContainKey("S", "Ant"));
}

TEST(SolidConfigReader, ConvertsAsTheHomePlatform) {
    constexpr int kNoInt = -77;  // the default shows that the class was refused
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    const auto text = [](const char* content) { return InfoValue{std::string(content)}; };
    const struct {
        InfoValue value;
        int asInt;
        long long asInt64;
        bool asBool;
        const char* asString;
    } kValues[] = {
        {{5LL}, 5, 5, true, "d"},
        {{0LL}, 0, 0, false, "d"},
        {{-3LL}, -3, -3, true, "d"},
        {{5000000000LL}, 705032704, 5000000000, true, "d"},  // the low 32 bits
        {{1LL << 32}, 0, 1LL << 32, true, "d"},
        {{LLONG_MIN}, 0, LLONG_MIN, true, "d"},
        {{true}, 1, 1, true, "d"},
        {{false}, 0, 0, false, "d"},
        {{3.99}, 3, 3, true, "d"},
        {{-3.99}, -3, -3, true, "d"},
        {{0.25}, 0, 0, true, "d"},
        {{1e300}, INT_MAX, LLONG_MAX, true, "d"},
        {{-kInfinity}, INT_MIN, LLONG_MIN, true, "d"},
        {{std::numeric_limits<double>::quiet_NaN()}, 0, 0, true, "d"},
        {text("42"), kNoInt, 42, true, "42"},
        {text(" \t\n+17x"), kNoInt, 17, false, " \t\n+17x"},  // a bool passes over blanks, not over line ends
        {text("  -008.9"), kNoInt, -8, true, "  -008.9"},
        {text("0x10"), kNoInt, 0, false, "0x10"},
        {text("99999999999999999999"), kNoInt, LLONG_MAX, true, "99999999999999999999"},
        {text("-99999999999999999999"), kNoInt, LLONG_MIN, true, "-99999999999999999999"},
        {text("YES"), kNoInt, 0, true, "YES"},
        {text("yes"), kNoInt, 0, true, "yes"},
        {text("true"), kNoInt, 0, true, "true"},
        {text("Tok"), kNoInt, 0, true, "Tok"},
        {text(" 00Y"), kNoInt, 0, true, " 00Y"},
        {text("no"), kNoInt, 0, false, "no"},
        {text("on"), kNoInt, 0, false, "on"},
        {text("--1"), kNoInt, 0, false, "--1"},
        {text("000"), kNoInt, 0, false, "000"},
        {text(""), kNoInt, 0, false, ""},
        {{}, kNoInt, -1, true, "d"},  // a date, data or a list
        {{InfoValue::Dictionary()}, kNoInt, -1, true, "d"},
    };
    for (const auto& expected : kValues) {
        FakeInfoDictionary manifest;
        manifest.Set("S", "key", expected.value);
        SCOPED_TRACE(&expected - kValues);
        EXPECT_EQ(Reader::GetInt("S", "key", kNoInt), expected.asInt);
        EXPECT_EQ(Reader::GetInt64("S", "key", -1), expected.asInt64);
        EXPECT_EQ(Reader::GetBool("S", "key", true), expected.asBool);
        EXPECT_STREQ(Reader::GetString("S", "key", "d").c_str(), expected.asString);
        EXPECT_TRUE(Reader::IsContainKey("S", "key"));
    }
}

}  // namespace
