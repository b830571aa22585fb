#include "PluginManager/InnerPlugin/Yarrow/SpanContext.h"

#include <gmock/gmock.h>
#include <json/json.h>

#include "Support/CapturedConsole.h"

namespace {

using Orvane::Plugin::SpanContext;
using testing::Contains;
using testing::ElementsAre;

TEST(SpanContext, ItsTextAndWhatIsReadFromOne) {
    OrvaneTest::CapturedConsole console;
    struct {
        const char* text;
        int parts;  // where the text is refused for their number
        const char* again;
    } const kCases[] = {
        {"t-p-s-1", 0, "t-p-s-1"}, {"t--s-1", 0, "t--s-1"}, {"t-p-s-", 0, "t-p-s-1"},
        {"---", 0, "---1"},        {"t-p-s", 3, "---1"},    {"word", 1, "---1"},
        {"a-b-c-d-e", 5, "---1"},  {nullptr, 0, "---1"},    {"", 0, "---1"},
    };
    for (const auto& one : kCases) {
        SCOPED_TRACE(one.text ? one.text : "null");
        console.Take();
        SpanContext context(one.text);
        const std::string line = "Warning [Yarrow] data from split error, values.Count:" + std::to_string(one.parts);
        EXPECT_THAT(console.Take(), Contains(line).Times(one.parts ? 1 : 0));
        EXPECT_STREQ(context.ToString(), one.again);
        std::string sid;
        const bool isSpan = one.text && *one.text && !one.parts;
        EXPECT_EQ(SpanContext::FindSpanId(one.text ? one.text : "", sid), isSpan);
        if (isSpan) EXPECT_EQ(sid, context.Get("sid"));
    }
    SpanContext context("trace", "span", nullptr);
    EXPECT_STREQ(context.ToString(), "trace--span-1");
    EXPECT_TRUE(context.SetTag("tag", "stays"));
    EXPECT_FALSE(context._FromString(nullptr));
    EXPECT_STREQ(context.Get("tid"), "trace") << "nothing is touched";
    EXPECT_FALSE(context._FromString("bad"));
    EXPECT_STREQ(context.Get("tid"), "") << "the fields are gone";
    EXPECT_STREQ(context.GetTag("tag"), "stays");
    EXPECT_TRUE(context._FromString(SpanContext("a", "b", "c").ToString()));
    EXPECT_STREQ(context.Get("pid"), "c");
    EXPECT_STREQ(context.Get(nullptr), "");
}

TEST(SpanContext, AValueReplacesTheOneBefore) {
    OrvaneTest::CapturedConsole console;
    SpanContext context(nullptr);
    EXPECT_TRUE(context.Set("k", ""));
    EXPECT_TRUE(context.Set("k", "v"));
    EXPECT_FALSE(context.Set("k", nullptr));
    EXPECT_FALSE(context.SetTag(nullptr, "v"));
    EXPECT_TRUE(context.SetTag("k", "w"));
    EXPECT_TRUE(context.SetTag("k", "x"));
    EXPECT_STREQ(context.Get("k"), "v");
    EXPECT_STREQ(context.GetTag("k"), "x");
    EXPECT_THAT(
        console.Take(),
        ElementsAre(
            "Debug [Yarrow] SpanContext::Set key:k, value:", "Debug [Yarrow] SpanContext::Set key:k erased",
            "Debug [Yarrow] SpanContext::Set key:k, value:v", "Debug [Yarrow] SpanContext::SetTag key:k, value:w",
            "Debug [Yarrow] SpanContext::SetTag key:k erased", "Debug [Yarrow] SpanContext::SetTag key:k, value:x"));
}

TEST(SpanContext, TagsAreWrittenAsTheJsonLibraryWritesThem) {
    OrvaneTest::CapturedConsole console;
    SpanContext context(nullptr);
    EXPECT_STREQ(context.GetEncodedUserData(), "{}");
    Json::Value object(Json::objectValue);
    for (const char* text : {"b", "a", "", "[x]", "]\n[", "\"\\/", "\x01\x7f", "Zo\xc3\xab \xf0\x9f\x98\x80",
                             "\xff\xc3", "\xed\xa0\x80", "true", "1.5", "a\tb", "\x80z", "~"}) {
        context.SetTag(text, text);
        object[text] = text;
        Json::Value array;
        array.append(object);
        std::string wanted = Json::FastWriter().write(array);
        wanted.erase(wanted.rfind('\n'));
        wanted.erase(wanted.rfind(']'), 1).erase(wanted.find('['), 1);
        EXPECT_EQ(context.GetEncodedUserData(), wanted);
    }
    SpanContext small(nullptr);
    small.SetTag("b", "2");
    small.SetTag("a", "1");
    EXPECT_STREQ(small.GetEncodedUserData(), "{\"a\":\"1\",\"b\":\"2\"}");
    EXPECT_THAT(console.Take(),
                Contains("Info [Yarrow] _encodedUserData size:17, _encodedUserData:{\"a\":\"1\",\"b\":\"2\"}"));
}

}  // namespace
