#include "PluginManager/InnerPlugin/Yarrow/SpanContext.h"

#include <json/json.h>

#include "Support/Test.h"

namespace {

using Orvane::Plugin::SpanContext;

TEST(SpanContext, ItsTextAndWhatIsReadFromOne) {
    OrvaneTest::CapturedConsole console;
    struct {
        std::string text;
        int parts;  // where the text is refused for their number
        const char* again;
    } const kCases[] = {{"t-p-s-1", 0, "t-p-s-1"}, {"t--s-1", 0, "t--s-1"}, {"t-p-s-", 0, "t-p-s-1"},
                        {"---", 0, "---1"},        {"", 0, "---1"},         {"t-p-s", 3, "---1"},
                        {"word", 1, "---1"},       {"a-b-c-d-e", 5, "---1"}};
    for (const auto& one : kCases) {
        console.Take();
        SpanContext context(one.text.c_str());
        const std::string line = "Warning [Yarrow] data from split error, values.Count:" + std::to_string(one.parts);
        EXPECT_THAT(console.Take(), testing::Contains(line).Times(one.parts != 0)) << one.text;
        EXPECT_STREQ(context.ToString(), one.again);
        std::string sid;
        if (!SpanContext::FindSpanId(one.text, sid)) sid = "";
        EXPECT_EQ(context.Get("sid"), sid) << "found without an object";
    }
    SpanContext context("trace", "span", nullptr);
    EXPECT_TRUE(context.Set("k", "") && context.Set("k", "v") && context.SetTag("k", "w"));
    EXPECT_FALSE(context.Set("k", nullptr) || context.SetTag(nullptr, "v") || context._FromString(nullptr));
    EXPECT_STREQ(context.ToString(), "trace--span-1") << "nothing is touched";
    EXPECT_STREQ(context.Get("k"), "v");
    EXPECT_FALSE(context._FromString("bad"));
    EXPECT_STREQ(context.ToString(), "---1") << "the fields are gone";
    EXPECT_STREQ(context.GetTag("k"), "w") << "the tags are not";
}

TEST(SpanContext, TagsAreWrittenAsTheJsonLibraryWritesThem) {
    const OrvaneTest::CapturedConsole console;
    SpanContext context(nullptr);
    EXPECT_STREQ(context.GetEncodedUserData(), "{}");
    Json::Value object(Json::objectValue);
    for (const char* text : {"b", "a", "", "[x]", "]\n[", "\"\\/", "\x01\x7f", "Zo\xc3\xab \xf0\x9f\x98\x80",
                             "\xff\xc3", "\xed\xa0\x80", "1.5", "a\tb", "\x80z"}) {
        context.SetTag(text, text);
        object[text] = text;
        Json::Value array;
        array.append(object);
        std::string wanted = Json::FastWriter().write(array);
        wanted.erase(wanted.rfind('\n')).erase(wanted.rfind(']'), 1).erase(wanted.find('['), 1);
        EXPECT_EQ(context.GetEncodedUserData(), wanted);
    }
}

}  // namespace
