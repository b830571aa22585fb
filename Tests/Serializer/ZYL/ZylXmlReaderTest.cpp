#include "Serializer/ZYL/ZylXmlReader.h"

#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <random>
#include <string>

#include "Serializer/ZYL/ZylXmlDepth.h"

namespace Quern {
namespace {

class Reader {
public:
    explicit Reader(std::string text, ZylXmlFormat format = ZYL_XML_NODE)
        : _reader(std::make_unique<ZylXmlReader>(text.data(), text.size(), format)) {}
    ZylXmlReader* operator->() const { return _reader.get(); }

private:
    std::unique_ptr<ZylXmlReader> _reader;  // too large for a small stack
};

int StateOf(const std::string& text) {
    return Reader(text)->state();
}

TEST(ZylXmlReaderTest, WalksChildrenAndRepeatedElements) {
    Reader reader("<r><a>1</a><b/><a>2</a><c><a>3</a></c></r>");
    ASSERT_EQ(reader->state(), 0);
    EXPECT_EQ(reader->stepIn("a"), 1) << "not a child of the document";
    EXPECT_EQ(reader->stepIn("R"), 1) << "names compare exactly";
    EXPECT_EQ(reader->stepIn("r"), 0);
    EXPECT_EQ(reader->stepIn("x"), 1);
    EXPECT_EQ(reader->stepIn("a"), 0);
    EXPECT_EQ(reader->stepIn("a"), 1) << "no child of its own";
    reader->stepOut("a");
    EXPECT_EQ(reader->stepIn("a"), 0);
    reader->stepOut("a");
    EXPECT_EQ(reader->stepIn("a"), 1) << "the one in c is not a sibling";
    EXPECT_EQ(reader->stepIn("a"), 1) << "nothing has moved";
    EXPECT_EQ(reader->stepIn("c"), 0) << "another name starts from the first child";
    EXPECT_STREQ(reader->getNodeValue("a"), "3");
    reader->stepOut("c");
    EXPECT_STREQ(reader->getNodeValue("a"), "1") << "the walk over a starts again after c";
    EXPECT_STREQ(reader->getNodeValue("a"), "2");
    EXPECT_EQ(reader->getNodeValue("a"), nullptr);
    reader->stepOut("r");
    EXPECT_EQ(reader->stepIn("r"), 1) << "there is no second root";
}

TEST(ZylXmlReaderTest, ValuesLoseTheWhiteSpaceAroundThem) {
    Reader reader(
        "<?xml version='1.0'?><!-- <x> --><!DOCTYPE r [ <!ELEMENT r> ]>\n<r>\n"
        "<a>\n x y \t\r\n</a><b> \n\t </b><c/><d>z</d><e>  q</e><f>&lt;&amp;&#x41;&apos;</f><g>k<h/>l</g>"
        "<i><![CDATA[raw]]></i><j> \v\f.\v\f </j></r>");
    ASSERT_EQ(reader->state(), 0);
    ASSERT_EQ(reader->stepIn("r"), 0);
    EXPECT_STREQ(reader->getEntryValue("a"), "x y");
    EXPECT_EQ(reader->getEntryValue("b"), nullptr);
    EXPECT_EQ(reader->getEntryValue("c"), nullptr);
    EXPECT_STREQ(reader->getEntryValue("d"), "z");
    EXPECT_STREQ(reader->getEntryValue("e"), "q");
    EXPECT_STREQ(reader->getEntryValue("f"), "<&A'");
    EXPECT_STREQ(reader->getEntryValue("g"), "k") << "the first run of text";
    EXPECT_EQ(reader->getEntryValue("i"), nullptr) << "character data is not a node's value";
    EXPECT_STREQ(reader->getEntryValue("j"), ".");
    EXPECT_EQ(reader->getEntryValue("nothing"), nullptr);
}

TEST(ZylXmlReaderTest, AttributeFormReadsTheCurrentElement) {
    Reader reader("<r n=' 5 ' blank='  ' empty='' q=\"a&quot;b\"><n>6</n></r>", ZYL_XML_ATTRIBUTE);
    EXPECT_EQ(reader->getEntryValue("n"), nullptr) << "the document has no attributes";
    ASSERT_EQ(reader->stepIn("r"), 0);
    EXPECT_STREQ(reader->getEntryValue("n"), "5");
    EXPECT_STREQ(reader->getAttrValue("n"), "5");
    EXPECT_STREQ(reader->getNodeValue("n"), "6");
    EXPECT_EQ(reader->getEntryValue("blank"), nullptr);
    EXPECT_EQ(reader->getEntryValue("empty"), nullptr);
    EXPECT_STREQ(reader->getEntryValue("q"), "a\"b");
    EXPECT_EQ(reader->getEntryValue("x"), nullptr);
}

TEST(ZylXmlReaderTest, ParsesInPlaceOrACopy) {
    char text[] = "<a> 1 </a>";
    {
        const ZylXmlReader copy(text, sizeof text - 1, ZYL_XML_NODE);
        EXPECT_STREQ(text, "<a> 1 </a>");
    }
    ZylXmlReader inPlace(text, ZYL_XML_NODE);
    const char* const value = inPlace.getNodeValue("a");
    EXPECT_STREQ(value, "1");
    EXPECT_TRUE(text < value && value < text + sizeof text);
    ZylXmlReader cut(std::string("<a>1</a><b").c_str(), 8, ZYL_XML_NODE);
    EXPECT_EQ(cut.state(), 0) << "nothing past the size is read";
}

TEST(ZylXmlReaderTest, DamagedTextsAreErrors) {
    for (const char* bad : {"a", "<", "<a", "<a>", "<a x>", "<a x=>", "<a x='1>", "<a></a", "</a>", "<a/><", "<!--",
                            "<?", "<![CDATA[", "<!DOCTYPE [", "<a>&#x110000;</a>", "<a>&#65</a>", "<>"}) {
        EXPECT_EQ(StateOf(bad), -27) << bad;
    }
    EXPECT_EQ(StateOf(""), 0);
    EXPECT_EQ(StateOf("\xEF\xBB\xBF <a/>"), 0);
    EXPECT_EQ(StateOf("<a>&#0;</a>"), 0);
    EXPECT_EQ(Reader("<a>&#0;</a>")->getNodeValue("a"), nullptr);
    EXPECT_EQ(ZylXmlReader("", ULONG_MAX, ZYL_XML_NODE).state(), -26);
}

TEST(ZylXmlReaderTest, RefusesElementsNestedTooDeep) {
    const auto nested = [](int depth, const std::string& open) {
        std::string text;
        for (int i = 0; i < depth; ++i)
            text += open;
        for (int i = 0; i < depth; ++i)
            text += "</a>";
        return text;
    };
    EXPECT_EQ(StateOf(nested(kMaxXmlDepth, "<a>")), 0);
    EXPECT_EQ(StateOf(nested(kMaxXmlDepth + 1, "<a>")), -27);
    EXPECT_EQ(StateOf(nested(1000000, "<a>")), -27);
    // What only looks like an end tag does not hide the depth.
    for (const char* open :
         {"<a><!-- </a> -->", "<a><![CDATA[</a>]]>", "<a><?x </a> ?>", "<a x='</a>'>", "<a\"><!x</a>", "<a x=\"/\">"}) {
        EXPECT_EQ(StateOf(nested(kMaxXmlDepth, open)), 0) << open;
        EXPECT_EQ(StateOf(nested(kMaxXmlDepth + 1, open)), -27) << open;
    }
    std::string wide = "<r>";
    for (int i = 0; i < 10000; ++i)
        wide += "<a/><b></b>";
    EXPECT_EQ(StateOf(wide + "</r>"), 0);
}

int DepthOf(const rapidxml::xml_node<char>* node) {
    int deepest = 0;
    for (const auto* child = node->first_node(); child != nullptr; child = child->next_sibling()) {
        if (child->type() == rapidxml::node_element) deepest = std::max(deepest, 1 + DepthOf(child));
    }
    return deepest;
}

// Random documents out of awkward pieces: where the parser accepts one, the guard has to know its exact depth.
TEST(ZylXmlReaderTest, TheDepthGuardReadsAsTheParserDoes) {
    const char* const pieces[] = {"<a>",
                                  "</a>",
                                  "<a/>",
                                  "<a\"b>",
                                  "<a '=''>",
                                  "<a x='>'>",
                                  "<a x=\"<b>\" y='/'/>",
                                  "-->",
                                  "<!--",
                                  "<![CDATA[",
                                  "]]>",
                                  "<!DOCTYPE ",
                                  "[",
                                  "]",
                                  "<?",
                                  "?>",
                                  "<?xml ",
                                  "<!",
                                  ">",
                                  "/>",
                                  "</a >",
                                  "text",
                                  " ",
                                  "'",
                                  "\"",
                                  "<a\n x = 'y' >",
                                  "</b/>"};
    std::mt19937 random(99);
    int accepted = 0;
    for (int round = 0; round < 200000; ++round) {
        std::string text = "<a>";
        for (auto count = random() % 12; count > 0; --count)
            text += pieces[random() % std::size(pieces)];
        if (random() % 2 == 0) text += "</a>";
        rapidxml::xml_document<char> document;
        std::string copy = text;
        try {
            document.parse<0>(copy.data());
        } catch (const rapidxml::parse_error&) {
            continue;
        }
        ++accepted;
        const int depth = DepthOf(&document);
        // The size only chooses the quick way out: claim a large one, to go the long way.
        ASSERT_TRUE(IsXmlDepthWithin(text.c_str(), 1 << 20, depth)) << text;
        ASSERT_FALSE(IsXmlDepthWithin(text.c_str(), 1 << 20, depth - 1)) << text;
    }
    EXPECT_GT(accepted, 5000);
}

TEST(ZylXmlReaderDeathTest, BrokenContractsEndTheProcess) {
    EXPECT_DEATH(ZylXmlReader(nullptr, ZYL_XML_NODE), "NULL != text");
    EXPECT_DEATH(ZylXmlReader(nullptr, 0, ZYL_XML_NODE), "NULL != text");
    Reader reader("<a/>");
    EXPECT_DEATH(reader->stepIn(nullptr), "NULL != name");
    EXPECT_DEATH(reader->getAttrValue(nullptr), "NULL != name");
    EXPECT_DEATH(reader->stepOut("a"), "Assertion failed");
    EXPECT_DEATH(reader->stepOut(""), "Assertion failed");
    EXPECT_DEATH(Reader("<")->stepIn("a"), "ZylError::ZYL_NO_ERROR == _state");
}

}  // namespace
}  // namespace Quern
