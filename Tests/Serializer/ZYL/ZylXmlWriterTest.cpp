#include "Serializer/ZYL/ZylXmlWriter.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <climits>
#include <string>

#include "Serializer/ZYL/ZylTime.h"
#include "Serializer/ZYL/ZylTypeUtil.h"

namespace Quern {
namespace {

// Runs a document through a writer on a buffer and through one on a file, which must agree, and gives its text.
template <typename Document>
std::string Write(ZylXmlFormat format, const Document& document) {
    char memory[16384];
    ZylXmlWriter writer(memory, sizeof memory, format);
    document(writer);
    EXPECT_EQ(writer.state(), 0);
    const std::string text(memory, writer.buffer().position);

    FILE* const file = tmpfile();
    ZylXmlWriter fileWriter(file, format);
    document(fileWriter);
    EXPECT_EQ(fileWriter.state(), 0);
    rewind(file);
    const size_t size = fread(memory, 1, sizeof memory, file);
    fclose(file);
    EXPECT_EQ(std::string(memory, size), text);
    return text;
}

void WriteNested(ZylXmlWriter& writer) {
    writer.openComplex("a");
    writer.openSimple("b");
    writer.textizeStr("x", false);
    writer.closeSimple("b");
    writer.openComplex("c");
    writer.openComplex("d");
    writer.closeComplex("d");
    writer.openSimple("e");
    writer.closeSimple("e");
    writer.closeComplex("c");
    writer.closeComplex("a");
}

TEST(ZylXmlWriterTest, NodeFormToTheByte) {
    EXPECT_EQ(Write(ZYL_XML_NODE, WriteNested),
              "\n<a>\n"
              "\t<b>\nx\t</b>\n"
              "\n\t<c>\n"
              "\t\t<d/>\n"
              "\t\t<e>\n\t\t</e>\n"
              "\t</c>\n"
              "</a>\n");
    EXPECT_EQ(Write(static_cast<ZylXmlFormat>(7), WriteNested), Write(ZYL_XML_NODE, WriteNested));
}

TEST(ZylXmlWriterTest, AttributeFormToTheByte) {
    EXPECT_EQ(Write(ZYL_XML_ATTRIBUTE, WriteNested),
              "\n<a>\n"
              "\t<bx/>\n"
              "\n\t<c>\n"
              "\t\t<d/>\n"
              "\t\t<e/>\n"
              "\t</c>\n"
              "</a>\n");
    EXPECT_EQ(Write(ZYL_XML_ATTRIBUTE,
                    [](ZylXmlWriter& writer) {
                        writer.openSimple("b");
                        writer.join(" value=\"");
                        writer.textizeInt(5, false);
                        writer.join("\"");
                        writer.closeSimple("b");
                    }),
              "<b value=\"5\"/>\n");
}

TEST(ZylXmlWriterTest, AnElementWithoutChildrenClosesItself) {
    for (ZylXmlFormat format : {ZYL_XML_NODE, ZYL_XML_ATTRIBUTE}) {
        EXPECT_EQ(Write(format,
                        [](ZylXmlWriter& writer) {
                            writer.openComplex("a");
                            writer.closeComplex("a");
                        }),
                  "\n<a/>\n");
    }
}

TEST(ZylXmlWriterTest, TabsEndAtThirtyTwoWhileTheDepthGoesOn) {
    constexpr int kDepth = 35;
    const std::string text = Write(ZYL_XML_NODE, [](ZylXmlWriter& writer) {
        for (int i = 0; i < kDepth; ++i)
            writer.openComplex("a");
        writer.openSimple("b");
        writer.closeSimple("b");
        for (int i = 0; i < kDepth; ++i)
            writer.closeComplex("a");
    });
    const auto tabs = [](int depth) { return std::string(static_cast<size_t>(std::min(depth, 32)), '\t'); };
    std::string expected;
    for (int depth = 0; depth < kDepth; ++depth)
        expected += (depth == 0 ? "\n" : ">\n") + tabs(depth) + "<a";
    expected += ">\n" + tabs(kDepth) + "<b>\n" + tabs(kDepth) + "</b>\n";
    for (int depth = kDepth - 1; depth >= 0; --depth)
        expected += tabs(depth) + "</a>\n";
    EXPECT_EQ(text, expected);
}

TEST(ZylXmlWriterTest, WritesValues) {
    const auto value = [](auto put) { return Write(ZYL_XML_NODE, put); };
    EXPECT_EQ(value([](ZylXmlWriter& w) { w.textizeStr("a<b", false); }), "a&lt;b");
    EXPECT_EQ(value([](ZylXmlWriter& w) { w.textizeStr("<>&'\"", true); }), "&lt;&gt;&amp;&apos;&quot; ");
    EXPECT_EQ(value([](ZylXmlWriter& w) { w.textizeStr("&&end", false); }), "&amp;&amp;end");
    EXPECT_EQ(value([](ZylXmlWriter& w) { w.textizeStr("%s\xC3\xA9%n", false); }), "%s\xC3\xA9%n");
    EXPECT_EQ(value([](ZylXmlWriter& w) {
                  w.textizeStr("", false);
                  w.textizeStr("", true);
              }),
              " ");
    unsigned ip = 0;
    ASSERT_EQ(ZylTypeUtil::str2ZylIP(ip, "1.22.255.0"), 0);
    EXPECT_EQ(value([=](ZylXmlWriter& w) {
                  w.textizeIP(ip, false);
                  w.textizeIP(ip, true);
              }),
              "1.22.255.01.22.255.0 ");
    EXPECT_EQ(value([](ZylXmlWriter& w) {
                  w.textizeDate(ZylDate(7, 1, 2), false);
                  w.textizeTime(ZylTime(-3, 4, 5), true);
                  w.textizeDateTime(ZylDateTime(ZylDate(2024, 3, 5), ZylTime(1, 2, 3)), true);
              }),
              "   7-01-02-3:04:05 2024-03-05 01:02:03 ");
    EXPECT_EQ(value([](ZylXmlWriter& w) {
                  w.textizeInt(LLONG_MIN, true);
                  w.textizeUInt(ULLONG_MAX, true);
                  w.textizeInt(0, false);
              }),
              "-9223372036854775808 18446744073709551615 0");
    EXPECT_EQ(value([](ZylXmlWriter& w) {
                  w.textizeDouble(0.1, true);
                  w.textizeDouble(-DBL_MAX, true);
                  w.textizeDouble(-DBL_TRUE_MIN, false);
              }),
              "0.1 -1.7976931348623157e+308 -5e-324");
}

// Whatever the size of the buffer: all of the document, or -1 and nothing past the end.
TEST(ZylXmlWriterTest, AShortBufferIsAnErrorAtEverySize) {
    using Step = int (*)(ZylXmlWriter&);
    const Step steps[] = {
        [](ZylXmlWriter& w) { return w.openComplex("root"); },
        [](ZylXmlWriter& w) { return w.openSimple("name"); },
        [](ZylXmlWriter& w) { return w.textizeStr("<a & b>", true); },
        [](ZylXmlWriter& w) { return w.textizeDateTime(0, false); },
        [](ZylXmlWriter& w) { return w.textizeIP(0, true); },
        [](ZylXmlWriter& w) { return w.textizeDouble(1e300 / 3, true); },
        [](ZylXmlWriter& w) { return w.closeSimple("name"); },
        [](ZylXmlWriter& w) { return w.closeComplex("root"); },
    };
    for (ZylXmlFormat format : {ZYL_XML_NODE, ZYL_XML_ATTRIBUTE}) {
        const std::string whole = Write(format, [&](ZylXmlWriter& writer) {
            for (Step step : steps)
                step(writer);
        });
        for (size_t size = 0; size <= whole.size() + 1; ++size) {
            std::string memory(size + 8, '#');
            ZylXmlWriter writer(memory.data(), size, format);
            int code = 0;
            for (Step step : steps) {
                code = step(writer);
                EXPECT_EQ(writer.state(), code);
                if (code != 0) break;
            }
            EXPECT_EQ(code, size > whole.size() ? 0 : -1) << size;
            EXPECT_EQ(memory.substr(size), "########");
            EXPECT_EQ(whole.compare(0, writer.buffer().position, memory, 0, writer.buffer().position), 0);
        }
    }
}

TEST(ZylXmlWriterDeathTest, BrokenContractsEndTheProcess) {
    char memory[64];
    ZylXmlWriter writer(memory, sizeof memory, ZYL_XML_NODE);
    EXPECT_DEATH(writer.openSimple(nullptr), "NULL != name");
    EXPECT_DEATH(writer.closeComplex(nullptr), "NULL != name");
    EXPECT_DEATH(writer.textizeStr(nullptr, false), "NULL != src");
    EXPECT_DEATH(writer.closeSimple("a"), "true == _isSimple");
    EXPECT_DEATH(writer.closeComplex("a"), "Assertion failed");
    writer.openSimple("a");
    EXPECT_DEATH(writer.openSimple("b"), "false == _isSimple");
    EXPECT_DEATH(writer.openComplex("b"), "false == _isSimple");
    EXPECT_DEATH(writer.closeComplex("b"), "false == _isSimple");
    ZylXmlWriter full(memory, 1, ZYL_XML_NODE);
    EXPECT_EQ(full.textizeStr("abc", false), -1);
    EXPECT_DEATH(full.openComplex("a"), "ZylError::ZYL_NO_ERROR == _state");
    EXPECT_DEATH(full.textizeInt(1, false), "ZylError::ZYL_NO_ERROR == _state");
    EXPECT_DEATH(full.textizeTime(1, false), "ZylError::ZYL_NO_ERROR == _state");
}

}  // namespace
}  // namespace Quern
