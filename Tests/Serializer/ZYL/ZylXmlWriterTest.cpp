#include "Serializer/ZYL/ZylXmlWriter.h"

#include <cfloat>

#include "Serializer/ZYL/ZylTime.h"
#include "Support/Test.h"

namespace Quern {
namespace {

using Step = std::function<int(ZylXmlWriter&)>;

// The text of the steps' document: all of it in a file, and in a buffer of whatever size all of it or -1, with nothing
// past the end.
std::string Write(int format, const std::vector<Step>& steps) {
    const auto run = [&steps](ZylXmlWriter& writer) {
        int code = 0;
        for (size_t i = 0; i < steps.size() && code == 0; ++i)
            code = steps[i](writer);
        EXPECT_EQ(writer.state(), code);
        return code;
    };
    FILE* const file = tmpfile();
    ZylXmlWriter toFile(file, static_cast<ZylXmlFormat>(format));
    EXPECT_EQ(run(toFile), 0);
    std::string text(static_cast<size_t>(ftell(file)), '\0');
    rewind(file);
    EXPECT_EQ(fread(text.data(), 1, text.size(), file), text.size());
    fclose(file);
    for (size_t size = 0; size <= text.size() + 1; ++size) {
        std::string memory(size + 8, '#');
        ZylXmlWriter writer(memory.data(), size, static_cast<ZylXmlFormat>(format));
        EXPECT_EQ(run(writer), size > text.size() ? 0 : -1) << size;
        EXPECT_EQ(memory.substr(size), "########");
        EXPECT_EQ(text.compare(0, writer.buffer().position, memory, 0, writer.buffer().position), 0);
    }
    return text;
}

Step Open(const char* name) {
    return [name](ZylXmlWriter& writer) { return writer.openComplex(name); };
}
Step Close(const char* name) {
    return [name](ZylXmlWriter& writer) { return writer.closeComplex(name); };
}
Step OpenSimple(const char* name) {
    return [name](ZylXmlWriter& writer) { return writer.openSimple(name); };
}
Step CloseSimple(const char* name) {
    return [name](ZylXmlWriter& writer) { return writer.closeSimple(name); };
}
Step Text(const char* text, bool withBlank = false) {
    return [=](ZylXmlWriter& writer) { return writer.textizeStr(text, withBlank); };
}

TEST(ZylXmlWriterTest, BothFormsToTheByte) {
    const std::vector<Step> nested = {Open("a"),  OpenSimple("b"), Text("x"),       CloseSimple("b"), Open("c"),
                                      Open("d"),  Close("d"),      OpenSimple("e"), CloseSimple("e"), Close("c"),
                                      Close("a"), OpenSimple("f"), CloseSimple("f")};
    const std::string nodes = "\n<a>\n\t<b>\nx\t</b>\n\n\t<c>\n\t\t<d/>\n\t\t<e>\n\t\t</e>\n\t</c>\n</a>\n<f>\n</f>\n";
    EXPECT_EQ(Write(0, nested), nodes);
    EXPECT_EQ(Write(7, nested), nodes) << "any other format than 1";
    EXPECT_EQ(Write(1, nested), "\n<a>\n\t<bx/>\n\n\t<c>\n\t\t<d/>\n\t\t<e/>\n\t</c>\n</a>\n<f/>\n");
    for (int format : {0, 1})
        EXPECT_EQ(Write(format, {Open("a"), Close("a")}), "\n<a/>\n");
}

TEST(ZylXmlWriterTest, TabsEndAtThirtyTwoWhileTheDepthGoesOn) {
    constexpr int kDepth = 35;
    std::vector<Step> steps(kDepth, Open("a"));
    steps.insert(steps.end(), {OpenSimple("b"), CloseSimple("b")});
    steps.insert(steps.end(), kDepth, Close("a"));
    const auto tabs = [](int depth) { return std::string(static_cast<size_t>(std::min(depth, 32)), '\t'); };
    std::string expected;
    for (int depth = 0; depth < kDepth; ++depth)
        expected += (depth == 0 ? "\n" : ">\n") + tabs(depth) + "<a";
    expected += ">\n" + tabs(kDepth) + "<b>\n" + tabs(kDepth) + "</b>\n";
    for (int depth = kDepth - 1; depth >= 0; --depth)
        expected += tabs(depth) + "</a>\n";
    EXPECT_EQ(Write(0, steps), expected);
}

TEST(ZylXmlWriterTest, WritesValues) {
    using W = ZylXmlWriter;
    const std::pair<Step, const char*> rows[] = {
        {Text("a<b"), "a&lt;b"},
        {Text("<>&'\"", true), "&lt;&gt;&amp;&apos;&quot; "},
        {Text("&&end"), "&amp;&amp;end"},
        {Text("%s\xC3\xA9%n"), "%s\xC3\xA9%n"},
        {Text(""), ""},
        {Text("", true), " "},
        {[](W& w) { return w.textizeIP(255 << 16 | 22 << 8 | 1, false); }, "1.22.255.0"},
        {[](W& w) { return w.textizeDate(ZylDate(7, 1, 2), false); }, "   7-01-02"},
        {[](W& w) { return w.textizeTime(ZylTime(-3, 4, 5), true); }, "-3:04:05 "},
        {[](W& w) { return w.textizeDateTime(ZylDateTime(ZylDate(2024, 3, 5), ZylTime(1, 2, 3)), true); },
         "2024-03-05 01:02:03 "},
        {[](W& w) { return w.textizeInt(LLONG_MIN, true); }, "-9223372036854775808 "},
        {[](W& w) { return w.textizeUInt(ULLONG_MAX, false); }, "18446744073709551615"},
        {[](W& w) { return w.textizeDouble(-DBL_MAX, true); }, "-1.7976931348623157e+308 "},
        {[](W& w) { return w.textizeDouble(0.1, false); }, "0.1"},
    };
    for (const auto& [step, text] : rows)
        EXPECT_EQ(Write(0, {step}), text);
}

TEST(ZylXmlWriterDeathTest, BrokenContractsEndTheProcess) {
    char memory[64];
    ZylXmlWriter writer(memory, sizeof memory, ZYL_XML_NODE);
    EXPECT_DEATH(writer.closeSimple("a"), "true == _isSimple");
    EXPECT_DEATH(writer.closeComplex("a"), "Assertion failed") << "never opened";
    writer.openSimple("a");
    for (const Step& step : {Open("b"), Close("b"), OpenSimple("b")})
        EXPECT_DEATH(step(writer), "false == _isSimple");
    ZylXmlWriter full(memory, 1, ZYL_XML_NODE);
    EXPECT_EQ(full.textizeStr("abc", false), -1);
    for (const Step& step : {Open("b"), Close("b"), OpenSimple("b"), CloseSimple("b"), Text("")})
        EXPECT_DEATH(step(full), "ZylError::ZYL_NO_ERROR == _state");
}

}  // namespace
}  // namespace Quern
