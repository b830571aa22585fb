#include "Serializer/Codec/RegularExpression.h"

#include "Serializer/Codec/RegularExpressionInternal.h"
#include "Support/GuardedText.h"
#include "Support/Test.h"

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

void ExpectAll(std::initializer_list<Case> cases, int flags = 0) {
    for (const Case& c : cases)
        EXPECT_EQ(Match(c.pattern, c.subject, flags), c.result) << c.pattern << " on " << c.subject;
}

TEST(RegularExpression, AnchorsAndRepetition) {
    ExpectAll({Case{"", "abc", 0}, Case{"", "", 0}, Case{"^b", "ab", -1}, Case{"b$", "ab", 2}, Case{"^$", "", 0},
               Case{"a^b", "ab", -1}, Case{"a.c", "a\nc", 3}, Case{"a{2}", "a{2}", 4}, Case{"-]}", "-]}", 3}});
    EXPECT_EQ(Match(std::string("b"), std::string("a\0b", 3)), 3);
    EXPECT_EQ(slre_match("a", "a", -1, nullptr, 0, 0), kSlreNoMatch);
    ExpectAll({Case{"a*", "baaa", 0}, Case{"a*b", "aaab", 4}, Case{".*c", "abcabcd", 6}, Case{".*?c", "abcabcd", 3},
               Case{"a.*?$", "abcd", 4}, Case{"ab?c", "ac", 2}, Case{"ab?c", "abc", 3}, Case{"a**", "a", -1},
               Case{"(ab)*c", "ababc", 5}, Case{"(ab)+", "ababa", 4}, Case{"(ab)?c", "c", 1}});
    ExpectAll({{"a*?", "aa", 1},     // once where it can
               {"a?ab", "ab", -1},   // what "?" matched stays matched
               {"a*[ab]", "aa", 1},  // takes nothing where the rest does without
               {"(a)*[ab]", "aa", 1},
               {"b*?b", "b", 1},
               {"(a)*", "b", 0},
               {"a+ab", "aab", 3}});
}

TEST(RegularExpression, Alternatives) {
    ExpectAll({Case{"a|b", "b", 1}, Case{"abc|de", "xde", 3}, Case{"(ab|a)c", "abc", 3}, Case{"x(a|b|c)y", "xcy", 3},
               Case{"x(a||c)y", "xy", -1}, Case{"^a|b", "b", 1}, Case{"((a|b)|c)d", "bd", 2}});
    ExpectAll({{"a|ab", "ab", 1},       // the first that takes something
               {"|ab", "ab", 2},        // an empty one gives way
               {"(a|ab)c", "abc", -1},  // and is not retried inside a group, but from the next offset
               {"^a|b", "xb", -1}});    // a pattern that begins with "^" is tried at the start alone
}

TEST(RegularExpression, SetsAndEscapes) {
    ExpectAll({Case{"[-a]", "-", 1}, Case{"[a-]", "-", 1}, Case{"[a", "a", 1}, Case{"[^a", "b", 1}, Case{"[^]", "a", 1},
               Case{"[.]", "x", 1}, Case{"[\\]]", "]", 1}, Case{"[\\d_]+", "a1_2", 4}, Case{"[(]+[)]", "(()", 3}});
    ExpectAll({Case{"[^a]", "", -1}, Case{"a[b]", "a", -1}, Case{"[a-]", "b", -1}, Case{"[a", "b", -1},
               Case{"[]", "a", -1}, Case{"[$|]", "$", -1}, Case{"[\\xzz]", "z", -1}, Case{"\\S", " \t", -1},
               Case{"[a-", "-", 1}, Case{"[--a]", ".", -1}});  // no range without an end, nor one from "-"
    EXPECT_EQ(Match("\\b\\f\\n\\r\\t\\v\\d\\s\\S\\x4a\\x4A\\xff", "\b\f\n\r\t\v1 xJJ\xff"), 12);
    EXPECT_EQ(Match("\\^\\$\\(\\)\\.\\[\\]\\*\\+\\?\\|\\\\", "^$().[]*+?|\\"), 12);
    EXPECT_EQ(Match("[\x80-\xff]", "\xc3"), 1);
    EXPECT_EQ(Match("[a-\xff]", "b"), -1);  // bytes of ranges are signed
    EXPECT_EQ(Match("[a-\xff]", "b", kSlreIgnoreCase), 1);
    ExpectAll({Case{"OrVane", "ORVANE", 6}, Case{"[a-c]+", "xABC", 4}, Case{"[A-C]+", "xabc", 4},
               Case{"\\x41", "a", -1}, Case{"\\x41", "A", 1}},
              kSlreIgnoreCase);
    EXPECT_EQ(Match("orvane", "ORVANE", 2), -1);  // the other flag bits mean nothing
}

TEST(RegularExpression, ErrorCodes) {
    const std::pair<int, std::vector<const char*>> kErrors[] = {
        {kSlreNoMatch, {"()", "(\\()"}},
        {kSlreUnexpectedQuantifier, {"*a", "a??", "x|*", "(+a)"}},
        {kSlreUnbalancedBrackets, {"(a", "a)", ")(", "([)"}},
        {kSlreInvalidMetacharacter, {"\\q", "\\D", "\\W", "a\\", "\\x", "\\x4", "\\x4g"}},
    };
    for (const auto& [code, patterns] : kErrors) {
        for (const char* pattern : patterns)
            EXPECT_EQ(Match(pattern, "a"), code) << pattern;
    }
    // Compiling comes first: its errors do not depend on the subject.
    EXPECT_EQ(slre_match("(a", "a", -1, nullptr, 0, 0), kSlreUnbalancedBrackets);

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
    EXPECT_EQ(slre_match("(a)(b", "ab", 2, caps, 1, 0), kSlreCapsTooSmall);  // met before the missing bracket
    EXPECT_EQ(slre_match("(a)(b)", "ab", 2, caps, 0, 0), 2);

    // What no pattern reaches that has passed compiling.
    Slre::regex_info info = {};
    info.num_brackets = 1;
    EXPECT_EQ(Slre::bar("[\\x4", 4, "a", 1, &info, 0), kSlreInvalidCharacterSet);
    EXPECT_EQ(Slre::bar("(a)", 3, "a", 1, &info, 0), kSlreInternalError);
    EXPECT_EQ(Slre::bar("a", 1, "a", -1, &info, 0), 0);
    EXPECT_TRUE(Slre::is_metacharacter("\0"));
}

// The n-th opening bracket fills the n-th capture: behind nested and repeated groups and in every alternative.
TEST(RegularExpression, Captures) {
    const struct {
        const char *pattern, *subject;
        std::vector<const char*> captures;
    } kCases[] = {
        {"([a-zA-Z]+)_(\\d+)_(\\d+)\\.(log|txt)",
         "key = OrvaneCore_20261124_3.log",
         {"OrvaneCore", "20261124", "3", "log"}},
        {"((a)(b*))(c)", "xabbc", {"abb", "a", "bb", "c"}},
        {"(a)?(b)*(c)", "abbc", {"a", "b", "c"}},
        {"((a)b)x|(c)", "abc", {"not stored", "a", "c"}},  // the second on a way that failed
        {"(x*)a", "a", {"not stored"}},                    // for it is empty
        {"\\S*(\\S?)", "Ac", {"c"}},                       // of an earlier try, as the last one's is empty
    };
    for (const auto& c : kCases) {
        slre_cap caps[4] = {};
        const int length = static_cast<int>(strlen(c.subject));
        EXPECT_EQ(slre_match(c.pattern, c.subject, length, caps, 4, 0), length) << c.pattern;
        for (size_t i = 0; i < c.captures.size(); ++i) {
            const std::string_view got =
                caps[i].ptr ? std::string_view(caps[i].ptr, static_cast<size_t>(caps[i].len)) : "not stored";
            EXPECT_EQ(got, c.captures[i]) << c.pattern;
        }
    }
}

TEST(RegularExpression, GroupsGiveBackWhatTheRestNeeds) {
    ExpectAll({Case{"(a*)ab", "aaab", 4}, Case{"(.*)\\.(.*)$", "a.b.c", 5}, Case{"(a+)(a+)(a+)$", "aaa", 3},
               Case{"(a+)(a+)(a+)$", "aa", -1}, Case{"((a*)b)*c", "aabbabc", 7}, Case{"(a)^b", "ab", -1},
               Case{"(a)(^b)", "ab", 2},  // within a group the count starts anew
               Case{"(a$)b", "ab", 2},    // and the end is where the group must end
               Case{"(ab|a)bc", "abc", 3}, Case{"((.+)c*)a", "ba", 2}, Case{"((.)$)c*", "cb", 1}});
}

TEST(RegularExpression, GroupsBehindANestedGroupAreClosedWrongly) {
    ExpectAll({{"(a)(b(c)d)", "abcd", kSlreNoMatch},  // the second group's end is taken for another end of the first
               {"((c)b)(a)", "cba", 3},
               {"^(x(y*))(a|b(c))", "x)aa?", kSlreInternalError},  // the bar is met as an item of the first group
               // Ordering bars of two levels turns those of the inner one round, so that "b" stands alone nowhere.
               {"((a|b|c)|d)e", "ce", kSlreNoMatch},
               {"(d|(a|b|c))e", "ce", 2}});
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

}  // namespace
}  // namespace Quern
