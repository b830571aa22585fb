#include "Serializer/Codec/RegularExpression.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <unistd.h>

#include <random>
// The compiler sees uninitialised members in this header's templates when it instruments them.
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wmaybe-uninitialized"
#include <regex>
#pragma GCC diagnostic pop

#include "Serializer/Codec/RegularExpressionInternal.h"
#include "Support/GuardedText.h"

namespace Quern {
namespace {

// Every subject ends at unreadable memory, so each case also proves that nothing behind it is read.
int Match(const std::string& pattern, const std::string& subject, int flags = 0) {
    const GuardedText text(subject);
    return slre_match(pattern.c_str(), text.data(), text.size(), nullptr, 0, flags);
}

struct Case {
    const char* pattern;
    const char* subject;
    int result;
};

void ExpectAll(const std::vector<Case>& cases, int flags = 0) {
    for (const Case& c : cases)
        EXPECT_EQ(Match(c.pattern, c.subject, flags), c.result) << c.pattern << " on " << c.subject;
}

TEST(RegularExpression, AnchorsAndLiterals) {
    ExpectAll({{"", "abc", 0},
               {"", "", 0},
               {"b", "abc", 2},
               {"bc", "abc", 3},
               {"d", "abc", -1},
               {"a", "", -1},
               {"^b", "ab", -1},
               {"^a", "ab", 1},
               {"b$", "ab", 2},
               {"a$", "ab", -1},
               {"^$", "", 0},
               {"$", "ab", 2},
               {"a^b", "ab", -1},
               {"a.c", "a\nc", 3},
               {"...", "ab", -1},
               {"a{2}", "a{2}", 4},
               {"-]}", "-]}", 3}});
    EXPECT_EQ(Match(std::string("b"), std::string("a\0b", 3)), 3);
    EXPECT_EQ(slre_match("a", "a", -1, nullptr, 0, 0), kSlreNoMatch);
}

TEST(RegularExpression, GreedyAndLazyRepetition) {
    ExpectAll({{"a*", "aaab", 3},
               {"a*", "baaa", 0},
               {"a*b", "aaab", 4},
               {"a+", "baab", 3},
               {"a+b", "aac", -1},
               {"a+", "", -1},
               {".*c", "abcabcd", 6},
               {".*?c", "abcabcd", 3},
               {"a*?", "aa", 1},  // once where it can
               {".+?c", "cbcabcd", 3},
               {"a.*?$", "abcd", 4},
               {"ab?c", "ac", 2},
               {"ab?c", "abc", 3},
               {"a?ab", "ab", -1},  // what "?" matched stays matched
               {"x*y*z", "xxz", 3},
               {"a*[ab]", "aa", 1},  // takes nothing where the rest does without
               {"a**", "a", -1},
               {"(ab)*c", "ababc", 5},
               {"(ab)+", "ababa", 4},
               {"(ab)?c", "c", 1},
               {"[0-9]+\\.log", "x_20261124.log", 14}});
}

TEST(RegularExpression, Alternatives) {
    ExpectAll({{"a|b", "b", 1},
               {"abc|de", "xde", 3},
               {"a|ab", "ab", 1},       // the first that takes something
               {"|ab", "ab", 2},        // an empty one gives way
               {"(a|ab)c", "abc", -1},  // and is not retried inside a group, but from the next offset
               {"(ab|a)c", "abc", 3},
               {"x(a|b|c)y", "xcy", 3},
               {"x(a||c)y", "xy", -1},
               {"^a|b", "b", 1},
               {"^a|b", "xb", -1},  // a pattern that begins with "^" is tried at the start alone
               {"(a|b)|c", "c", 1},
               {"((a|b)|c)d", "bd", 2}});
}

TEST(RegularExpression, SetsAndEscapes) {
    ExpectAll({{"[abc]", "xxb", 3},
               {"[^abc]", "abcd", 4},
               {"[^a]", "a", -1},
               {"[^a]", "", -1},
               {"a[b]", "a", -1},
               {"[a-f0-9]+$", "x09af", 5},
               {"[-a]", "-", 1},
               {"[a-]", "-", 1},
               {"[a-]", "b", -1},
               {"[a", "a", 1},
               {"[a", "b", -1},
               {"[^a", "b", 1},
               {"[]", "a", -1},
               {"[^]", "a", 1},
               {"[.]", "x", 1},
               {"[$|]", "$", -1},
               {"[\\]]", "]", 1},
               {"[\\d_]+", "a1_2", 4},
               {"[(]+[)]", "(()", 3},
               {"[\\x41-]", "A", 1},
               {"[\\xzz]", "z", -1},
               {"\\d\\s\\S", "1 x", 3},
               {"\\d", "x", -1},
               {"\\S", " \t", -1},
               {"\\b\\f\\n\\r\\t\\v", "\b\f\n\r\t\v", 6},
               {"\\x4a\\x4A", "JJ", 2},
               {"\\^\\$\\(\\)\\.\\[\\]\\*\\+\\?\\|\\\\", "^$().[]*+?|\\", 12},
               {"\\.", "x", -1}});
    EXPECT_EQ(Match("\\xff", "\xff"), 1);
    EXPECT_EQ(Match("[\x80-\xff]", "\xc3"), 1);
    EXPECT_EQ(Match("[a-\xff]", "b"), -1);  // bytes of ranges are signed
    EXPECT_EQ(Match("[a-\xff]", "b", kSlreIgnoreCase), 1);
}

TEST(RegularExpression, IgnoringCase) {
    ExpectAll(
        {{"OrVane", "ORVANE", 6}, {"[a-c]+", "xABC", 4}, {"[A-C]+", "xabc", 4}, {"\\x41", "a", -1}, {"\\x41", "A", 1}},
        kSlreIgnoreCase);
    EXPECT_EQ(Match("orvane", "ORVANE", 2), -1);  // the other flag bits mean nothing
}

TEST(RegularExpression, ErrorCodes) {
    ExpectAll({{"()", "a", kSlreNoMatch},
               {"(\\()", "(", kSlreNoMatch},
               {"*a", "a", kSlreUnexpectedQuantifier},
               {"a??", "a", kSlreUnexpectedQuantifier},
               {"a|*", "b", kSlreUnexpectedQuantifier},
               {"(+a)", "a", kSlreUnexpectedQuantifier},
               {"(a", "a", kSlreUnbalancedBrackets},
               {"a)", "a", kSlreUnbalancedBrackets},
               {")(", "a", kSlreUnbalancedBrackets},
               {"([)", ")", kSlreUnbalancedBrackets},
               {"\\q", "q", kSlreInvalidMetacharacter},
               {"\\D", "a", kSlreInvalidMetacharacter},
               {"\\W", "a", kSlreInvalidMetacharacter},
               {"a\\", "a", kSlreInvalidMetacharacter},
               {"\\x", "a", kSlreInvalidMetacharacter},
               {"\\x4", "a", kSlreInvalidMetacharacter},
               {"\\x4g", "a", kSlreInvalidMetacharacter}});
    // Compiling comes first: its errors do not depend on the subject.
    EXPECT_EQ(slre_match("(a", "a", -1, nullptr, 0, 0), kSlreUnbalancedBrackets);
}

TEST(RegularExpression, LimitsOfBracketsAndBranches) {
    std::string pairs, bars = "a";
    for (int i = 0; i < 99; ++i)
        pairs += "(a)";
    for (int i = 0; i < 100; ++i)
        bars += "|b";
    EXPECT_EQ(Match(pairs, std::string(99, 'a')), 99);
    EXPECT_EQ(Match(pairs + "(a)", std::string(100, 'a')), kSlreTooManyBrackets);
    EXPECT_EQ(Match(bars, "b"), 1);
    EXPECT_EQ(Match(bars + "|c", "b"), kSlreTooManyBranches);

    slre_cap caps[2];
    EXPECT_EQ(slre_match("(a)", "a", 1, caps, 1, 0), 1);
    EXPECT_EQ(slre_match("(a)(b)", "ab", 2, caps, 1, 0), kSlreCapsTooSmall);
    EXPECT_EQ(slre_match("(a)(b", "ab", 2, caps, 1, 0), kSlreCapsTooSmall);
    EXPECT_EQ(slre_match("(a)(b)", "ab", 2, caps, 0, 0), 2);
}

TEST(RegularExpression, Captures) {
    const std::string subject = "key = OrvaneCore_20261124_3.log";
    slre_cap caps[4] = {};
    EXPECT_EQ(slre_match("([a-zA-Z]+)_(\\d+)_(\\d+)\\.(log|txt)", subject.data(), static_cast<int>(subject.size()),
                         caps, 4, 0),
              static_cast<int>(subject.size()));
    const char* kExpected[] = {"OrvaneCore", "20261124", "3", "log"};
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(std::string(caps[i].ptr, static_cast<size_t>(caps[i].len)), kExpected[i]);
    EXPECT_EQ(caps[0].ptr, subject.data() + 6);

    // The n-th opening bracket fills the n-th capture, also behind nested and repeated groups.
    EXPECT_EQ(slre_match("((a)(b*))(c)", "xabbc", 5, caps, 4, 0), 5);
    const char* kNested[] = {"abb", "a", "bb", "c"};
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(std::string(caps[i].ptr, static_cast<size_t>(caps[i].len)), kNested[i]);
    EXPECT_EQ(slre_match("(a)?(b)*(c)", "abbc", 4, caps, 4, 0), 4);
    EXPECT_EQ(*caps[2].ptr, 'c');

    // An empty match is not stored.
    caps[0] = {"old", 3};
    EXPECT_EQ(slre_match("(x*)a", "a", 1, caps, 1, 0), 1);
    EXPECT_STREQ(caps[0].ptr, "old");
}

TEST(RegularExpression, GroupsGiveBackWhatTheRestNeeds) {
    ExpectAll({{"(a*)ab", "aaab", 4},
               {"(.*)(b)(.*)", "aabcc", 5},
               {"(.*)\\.(.*)$", "a.b.c", 5},
               {"(a+)(a+)(a+)$", "aaa", 3},
               {"(a+)(a+)(a+)$", "aa", -1},
               {"(a)^b", "ab", -1},
               {"(a)(^b)", "ab", 2},  // within a group the count starts anew
               {"((a*)b)*c", "aabbabc", 7}});
}

TEST(RegularExpression, GroupsBehindANestedGroupAreClosedWrongly) {
    // The second group's end is taken for another end of the first.
    EXPECT_EQ(Match("(a)(b(c)d)", "abcd"), kSlreNoMatch);
    EXPECT_EQ(Match("((c)b)(a)", "cba"), 3);
    // The bar is met as an item of the first group.
    EXPECT_EQ(Match("^(x(y*))(a|b(c))", "x)aa?"), kSlreInternalError);
    // Bars of two levels: ordering them by bracket turns those of the inner one round, so that "b" stands alone
    // nowhere.
    EXPECT_EQ(Match("((a|b|c)|d)e", "ce"), kSlreNoMatch);
    EXPECT_EQ(Match("((a|b)|d)e", "be"), 2);
    EXPECT_EQ(Match("(d|(a|b|c))e", "ce"), 2);
}

// These routines are not reached with such arguments by a pattern that has passed compiling.
TEST(RegularExpression, InternalErrorsAndInvalidSets) {
    Slre::regex_info info = {};
    info.num_brackets = 1;
    EXPECT_EQ(Slre::bar("[\\", 2, "a", 1, &info, 0), kSlreInvalidCharacterSet);
    EXPECT_EQ(Slre::bar("[\\x4", 4, "a", 1, &info, 0), kSlreInvalidCharacterSet);
    EXPECT_EQ(Slre::bar("(a)", 3, "a", 1, &info, 0), kSlreInternalError);
    EXPECT_EQ(Slre::bar("|", 1, "a", 1, &info, 0), kSlreInternalError);
    EXPECT_EQ(Slre::bar("a", 1, "a", -1, &info, 0), 0);
    EXPECT_TRUE(Slre::is_metacharacter("\0") && Slre::is_metacharacter("v"));
    EXPECT_FALSE(Slre::is_metacharacter("x"));
}

TEST(RegularExpressionDeathTest, ASetCutInsideAnEscapeNeverReturns) {
    for (const char* pattern : {"[\\", "a[b\\", "[\\x4"}) {
        EXPECT_EXIT(
            {
                signal(SIGALRM, SIG_DFL);
                ualarm(200000, 0);
                slre_match(pattern, "a", 1, nullptr, 0, 0);
            },
            testing::KilledBySignal(SIGALRM), "");
    }
}

// Were anything of these patterns tried twice at the same place, they would not end in a lifetime.
TEST(RegularExpression, ManyItemsInARowAreCheap) {
    std::string groups, sets, repeated, bytes, text;
    for (int i = 0; i < 90; ++i) {
        groups += "([a-z])";
        sets += "([^a-j])";
        repeated += "(a)*";
        bytes += "a*";
        text += "k";
    }
    EXPECT_EQ(Match(groups, text), 90);
    EXPECT_EQ(Match(sets, text), 90);
    EXPECT_EQ(Match(groups + "!", text), kSlreNoMatch);
    EXPECT_EQ(Match(repeated + "!", "b"), kSlreNoMatch);
    EXPECT_EQ(Match(bytes + "!", "b"), kSlreNoMatch);
    EXPECT_EQ(Match(repeated + "b", "b"), 1);
}

// Without groups, alternatives, "?" and "*" the language is one that other engines know, and agrees with them.
TEST(RegularExpression, AgreesWithAnotherEngineOnSimplePatterns) {
    const char* const kItems[] = {"a", "b", "c", ".", "[ab]", "[^a]", "[b-d]", "\\d", "\\."};
    const char* const kRepeats[] = {"", "", "+", "+?"};
    const char kAlphabet[] = "abcd1.";
    std::mt19937 random(20261124);
    const auto below = [&random](size_t limit) { return random() % limit; };
    int matches = 0;
    for (int round = 0; round < 1500; ++round) {
        std::string pattern = below(6) == 0 ? "^" : "";
        for (size_t i = 1 + below(4); i > 0; --i) {
            pattern += kItems[below(std::size(kItems))];
            pattern += kRepeats[below(std::size(kRepeats))];
        }
        if (below(4) == 0) pattern += "$";
        const std::regex other(pattern);
        for (int i = 0; i < 4; ++i) {
            std::string subject;
            for (size_t length = below(9); length > 0; --length)
                subject += kAlphabet[below(sizeof kAlphabet - 1)];
            std::smatch found;
            const bool matched = std::regex_search(subject, found, other);
            const int expected = matched ? static_cast<int>(found.position() + found.length()) : -1;
            ASSERT_EQ(Match(pattern, subject), expected) << pattern << " on " << subject;
            matches += matched;
        }
    }
    EXPECT_GT(matches, 1000);
}

}  // namespace
}  // namespace Quern
