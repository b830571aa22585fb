#include "Serializer/ZYL/ZylXmlReader.h"

#include "Serializer/ZYL/ZylXmlDepth.h"
#include "Support/Test.h"

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
    EXPECT_EQ(reader->stepIn("a"), 1) << "not a child of the document";
    EXPECT_EQ(reader->stepIn("R"), 1) << "names compare exactly";
    EXPECT_EQ(reader->stepIn("r"), 0);
    EXPECT_STREQ(reader->getNodeValue("a"), "1");
    EXPECT_EQ(reader->stepIn("a"), 0);
    reader->stepOut("a");
    EXPECT_EQ(reader->stepIn("a"), 1) << "the one in c is not a sibling";
    EXPECT_EQ(reader->stepIn("c"), 0) << "nothing has moved";
    EXPECT_STREQ(reader->getNodeValue("a"), "3");
    reader->stepOut("c");
    EXPECT_STREQ(reader->getNodeValue("a"), "1") << "the walk over a starts again after c";
    reader->stepOut("r");
    EXPECT_EQ(reader->stepIn("r"), 1) << "there is no second root";
}

void AddElements(std::mt19937& random, int depth, int& count, std::string& text) {
    for (auto children = random() % 8; children > 0; --children) {
        const std::string name(1 + random() % 2, static_cast<char>('a' + random() % 5));
        text += '<' + name + " id='" + std::to_string(count++) + "'>";
        if (depth > 0) AddElements(random, depth - 1, count, text);
        text += "</" + name + '>';
    }
}

// The reader remembers how far it has searched. Random walks meet the elements that a search from the start would find.
TEST(ZylXmlReaderTest, SearchesFindWhatSearchesFromTheStartWould) {
    std::mt19937 random(17);
    for (int round = 0; round < 500; ++round) {
        std::string text = "<r>";
        int count = 0;
        AddElements(random, 2, count, text);
        text += "</r>";
        Reader reader(text);
        rapidxml::xml_document<char> document;
        document.parse<0>(text.data());
        rapidxml::xml_node<char>* current = document.first_node();
        rapidxml::xml_node<char>* previous = nullptr;
        ASSERT_EQ(reader->stepIn("r"), 0);
        for (int step = 0; step < 100; ++step) {
            if (random() % 3 == 0 && current->parent() != &document) {
                reader->stepOut(current->name());
                previous = current;
                current = current->parent();
                continue;
            }
            const std::string name(1 + random() % 2, static_cast<char>('a' + random() % 6));
            const bool goesOn = previous != nullptr && previous->name() == name;
            auto* const next = goesOn ? previous->next_sibling(name.c_str()) : current->first_node(name.c_str());
            ASSERT_EQ(reader->stepIn(name.c_str()), next == nullptr ? 1 : 0);
            if (next == nullptr) continue;
            ASSERT_STREQ(reader->getAttrValue("id"), next->first_attribute("id")->value());
            current = next;
            previous = nullptr;
        }
    }
}

TEST(ZylXmlReaderTest, ValuesLoseTheWhiteSpaceAroundThem) {
    const struct {
        const char* name;
        const char* inNode;
        const char* inAttribute;
    } rows[] = {
        {"a", "x y", "5"},       {"b", nullptr, nullptr},       {"c", nullptr, nullptr}, {"d", "z", "a\"b"},
        {"e", "q", nullptr},     {"f", "<&A'", nullptr},        {"g", "k", nullptr},  // the first run of text
        {"h", nullptr, nullptr},  // character data is not a node's value
        {"i", ".", nullptr},     {"nothing", nullptr, nullptr},
    };
    for (ZylXmlFormat format : {ZYL_XML_NODE, ZYL_XML_ATTRIBUTE}) {
        Reader reader(
            "<?xml version='1.0'?><!-- <x> --><!DOCTYPE r [ <!ELEMENT r> ]>\n"
            "<r a=' 5 ' b='  ' c='' d=\"a&quot;b\"><a>\n x y \t\r\n</a><b> \n\t </b><c/><d>z</d><e>  q</e>"
            "<f>&lt;&amp;&#x41;&apos;</f><g>k<x/>l</g><h><![CDATA[raw]]></h><i> \v\f.\v\f </i></r>",
            format);
        ASSERT_EQ(reader->state(), 0);
        EXPECT_EQ(reader->getAttrValue("a"), nullptr) << "the document has no attributes";
        ASSERT_EQ(reader->stepIn("r"), 0);
        for (const auto& row : rows) {
            EXPECT_STREQ(reader->getNodeValue(row.name), row.inNode);
            EXPECT_STREQ(reader->getAttrValue(row.name), row.inAttribute);
        }
        EXPECT_STREQ(reader->getEntryValue("a"), format == ZYL_XML_NODE ? "x y" : "5");
    }
}

TEST(ZylXmlReaderTest, ParsesInPlaceOrACopy) {
    char text[] = "<a> 1 </a><b";
    EXPECT_EQ(ZylXmlReader(text, 10, ZYL_XML_NODE).state(), 0) << "nothing past the size is read";
    EXPECT_STREQ(text, "<a> 1 </a><b");
    text[10] = '\0';
    ZylXmlReader inPlace(text, ZYL_XML_NODE);
    EXPECT_EQ(inPlace.getNodeValue("a"), text + 4);
    EXPECT_STREQ(text + 4, "1");
}

TEST(ZylXmlReaderTest, DamagedTextsAreErrors) {
    for (const char* bad : {"a", "<", "<a", "<a>", "<a x>", "<a x=>", "<a x='1>", "<a></a", "</a>", "<a/><", "<!--",
                            "<?", "<![CDATA[", "<!DOCTYPE [", "<a>&#x110000;</a>", "<a>&#65</a>", "<>"}) {
        EXPECT_EQ(StateOf(bad), -27) << bad;
    }
    for (const char* good : {"", "\xEF\xBB\xBF <a/>", "<a>&#0;</a>"})
        EXPECT_EQ(StateOf(good), 0) << good;
    EXPECT_EQ(Reader("<a>&#0;</a>")->getNodeValue("a"), nullptr);
    EXPECT_STREQ(Reader("<a> x &#0;</a>")->getNodeValue("a"), "x ") << "blanks before a zero are not at the end";
    EXPECT_EQ(ZylXmlReader("", ULONG_MAX, ZYL_XML_NODE).state(), -26);
}

TEST(ZylXmlReaderTest, RefusesElementsNestedTooDeep) {
    const auto nested = [](int depth, const std::string& open) {
        std::string text;
        for (int i = 0; i < 2 * depth; ++i)
            text += i < depth ? open : "</a>";
        return text;
    };
    EXPECT_EQ(StateOf(nested(1000000, "<a>")), -27);
    // What only looks like an end tag does not hide the depth.
    for (const char* open : {"<a>", "<a><!--></a>-->", "<a><![CDATA[></a>]]>", "<a><?x ></a> ?>",
                             "<a><!DOCTYPE x [<!E></a>]>", "<a x='></a>'>", "<a\"><!x</a>", "<a x=\"/\">"}) {
        EXPECT_EQ(StateOf(nested(kMaxXmlDepth, open)), 0) << open;
        EXPECT_EQ(StateOf(nested(kMaxXmlDepth + 1, open)), -27) << open;
    }
    std::string wide = "<a>";
    for (int i = 0; i < 3 * kMaxXmlDepth; ++i)
        wide += "<b/>";
    EXPECT_EQ(StateOf(wide + "</a>"), 0);
}

TEST(ZylXmlReaderDeathTest, BrokenContractsEndTheProcess) {
    Reader reader("<a/>");
    EXPECT_DEATH(reader->stepOut("a"), "Assertion failed");
    EXPECT_DEATH(Reader("<")->stepIn("a"), "ZylError::ZYL_NO_ERROR == _state");
}

}  // namespace
}  // namespace Quern
