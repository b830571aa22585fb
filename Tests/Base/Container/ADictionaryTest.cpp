#include "Base/Container/ADictionary.h"

#include "Base/Container/AArray.h"
#include "Base/Container/Witness.h"
#include "Support/Test.h"

namespace {

using OrvaneTest::Witness;
using Quern::ADictionary;
using Quern::ANumber;
using Quern::AString;

TEST(ADictionary, ReplacesTheValueOfAnEqualKey) {
    int alive = 0;
    const Witness source(&alive);
    {
        ADictionary dictionary;
        dictionary.Set("a", source);
        dictionary.Set("b", "first");
        dictionary.Set(7, ANumber(1.5));
        EXPECT_EQ(alive, 2);
        dictionary.Set("a", "second");
        EXPECT_EQ(alive, 1);
        EXPECT_EQ(dictionary.Count(), 3);
        EXPECT_STREQ(dictionary.CStringKeyAt(0), "a");
        EXPECT_STREQ(dictionary.CStringForKey("a"), "second");
        EXPECT_STREQ(dictionary.AStringForKey(AString("b"))->c_str(), "first");
        EXPECT_EQ(DoubleVal(dictionary.ObjectForKey(ANumber(7LL))), 1.5);  // 7 equals 7, whatever the width
        dictionary.Set("a", *dictionary.ObjectForKey("a"));                // the old value is its own source
        EXPECT_STREQ(dictionary.CStringForKey("a"), "second");
        dictionary.Set("c", source);
    }
    EXPECT_EQ(alive, 1);
}

TEST(ADictionary, LeavesValuesByPointerToTheCaller) {
    int alive = 0;
    Witness kept(&alive);
    {
        ADictionary dictionary;
        kept.SetOwned(true);
        dictionary.Set("a", &kept);
        EXPECT_FALSE(kept.IsOwned());
        EXPECT_EQ(dictionary.ObjectForKey("a"), &kept);
        dictionary.Set("a", &kept);
        dictionary.Set("a", "else");
        EXPECT_EQ(alive, 1);
        dictionary.Set(1, &kept);
        dictionary.Remove(ANumber(1));
    }
    EXPECT_EQ(alive, 1);
}

TEST(ADictionary, TwoPointersAlwaysAddAnEntry) {
    AString key("k");
    ANumber first(1);
    ANumber second(2);
    key.SetOwned(true);
    ADictionary dictionary;
    dictionary.Set(&key, &first);
    dictionary.Set(&key, &second);
    EXPECT_EQ(dictionary.Count(), 2);
    EXPECT_NE(dictionary.KeyAt(0), &key);
    EXPECT_STREQ(dictionary.CStringKeyAt(1), "k");
    EXPECT_FALSE(dictionary.KeyAt(0)->IsOwned());
    dictionary.Remove(&key);
    EXPECT_STREQ(dictionary.CStringKeyAt(0), "k");
    EXPECT_EQ(dictionary.KeyAt(1), nullptr);
    dictionary.Set("k", "by text");  // meets the entry that is left, and replaces it
    EXPECT_EQ(dictionary.Count(), 1);
    EXPECT_STREQ(dictionary.CStringForKey(&key), "by text");
}

TEST(ADictionary, CopiesKeepTheOrderAndOwnNothing) {
    ADictionary dictionary;
    for (int i = 50; i > 0; --i)
        dictionary.Set(i, ANumber(i * 2));
    const std::unique_ptr<ADictionary> copy(dictionary.Clone());
    ASSERT_EQ(copy->Count(), 50);
    for (int i = 0; i < 50; ++i) {
        EXPECT_EQ(IntVal(copy->KeyAt(i)), 50 - i);
        EXPECT_EQ(IntVal(copy->ObjectForKey(i + 1)), 2 * (i + 1));
    }
    EXPECT_NE(copy->ObjectForKey(1), dictionary.ObjectForKey(1));
    EXPECT_FALSE(copy->ObjectForKey(1)->IsOwned());

    int alive = 0;
    {
        ADictionary source;
        source.Set("w", Witness(&alive));
        ADictionary assigned;
        assigned.Set("old", "gone");
        assigned = source;
        EXPECT_EQ(assigned.Count(), 1);
        EXPECT_EQ(assigned.ObjectForKey("old"), nullptr);
        const ADictionary& self = source;
        source = self;
        EXPECT_EQ(alive, 2);
    }
    EXPECT_EQ(alive, 1);  // the copy's
}

TEST(ADictionary, RemovesAndIgnoresNull) {
    int alive = 0;
    ADictionary dictionary;
    dictionary.Set("w", Witness(&alive));
    dictionary.Set("x", "y");
    const AString absent("absent");
    dictionary.Remove(&absent);
    dictionary.Remove(static_cast<const Quern::AObject*>(nullptr));
    EXPECT_EQ(dictionary.Count(), 2);
    dictionary.Remove(dictionary.KeyAt(0));
    EXPECT_EQ(alive, 0);
    EXPECT_STREQ(dictionary.CStringKeyAt(0), "x");

    const char* noText = nullptr;
    Quern::AObject* noObject = nullptr;
    dictionary.Set(noText, "v");
    dictionary.Set("k", noText);
    dictionary.Set("k", noObject);
    EXPECT_EQ(dictionary.Count(), 1);
    EXPECT_TRUE(!dictionary.ObjectForKey(noText) && !dictionary.CStringForKey("k") && !dictionary.KeyAt(-1));
    dictionary.RemoveAll();
    EXPECT_EQ(dictionary.Count(), 0);
    EXPECT_EQ(dictionary.KeyAt(0), nullptr);
}

TEST(ADictionaryDeathTest, IsNotCompared) {
    const ADictionary dictionary;
    EXPECT_DEATH((void)dictionary.IsEqual(&dictionary), "Assertion failed: \\(0\\)");
}

}  // namespace
