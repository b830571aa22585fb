// The XML reader: any text is refused or read, a record that was read comes back from its own XML, and the guard
// against deep nesting knows what the parser does.
#include <algorithm>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <rapidxml/rapidxml.hpp>
#include <string>

#include "PlayerRecord.h"
#include "Serializer/ZYL/ZylXmlDepth.h"

namespace {

void Require(bool condition) {
    if (!condition) abort();
}

int DepthOf(const rapidxml::xml_node<char>* node) {
    int deepest = 0;
    for (const auto* child = node->first_node(); child != nullptr; child = child->next_sibling()) {
        if (child->type() == rapidxml::node_element) deepest = std::max(deepest, 1 + DepthOf(child));
    }
    return deepest;
}

void CheckDepth(const std::string& text) {
    constexpr size_t kNoShortcut = SIZE_MAX;
    if (!Quern::IsXmlDepthWithin(text.c_str(), kNoShortcut, Quern::kMaxXmlDepth)) return;
    rapidxml::xml_document<char> document;
    std::string copy = text;
    try {
        document.parse<0>(copy.data());
    } catch (const rapidxml::parse_error&) {
        return;
    }
    const int depth = DepthOf(&document);
    Require(Quern::IsXmlDepthWithin(text.c_str(), kNoShortcut, depth));
    Require(depth == 0 || !Quern::IsXmlDepthWithin(text.c_str(), kNoShortcut, depth - 1));
}

std::string Write(Example::PlayerRecord& record, Quern::ZylXmlFormat format) {
    char text[16384];
    unsigned long size = 0;
    Require(record.toXmlBuffer(text, sizeof text, &size, format, 0) == 0);
    return {text, size};
}

// The reader strips blanks off the end of a value alone, which may be a zero ("x &#0;"): of such a text the blanks
// stay, and do not come back from the record's own XML, where they are the end.
void StripEnd(char* text) {
    for (size_t size = strlen(text); size > 0 && isspace(static_cast<unsigned char>(text[size - 1])) != 0; --size)
        text[size - 1] = '\0';
}

void CheckRecord(const std::string& text, Quern::ZylXmlFormat format) {
    Example::PlayerRecord record;
    std::string inPlace = text;
    const int code = record.fromXmlBuffer(text.data(), text.size(), format, 0);
    Require(record.fromXmlString(inPlace.data(), format, 0) == code);
    if (code != 0) return;
    StripEnd(record.name);
    for (Example::PlayerItem& item : record.items)
        StripEnd(item.name);
    for (auto written : {Quern::ZYL_XML_NODE, Quern::ZYL_XML_ATTRIBUTE}) {
        const std::string first = Write(record, written);
        Example::PlayerRecord back;
        Require(back.fromXmlBuffer(first.data(), first.size(), written, 0) == 0);
        Require(Write(back, written) == first);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    CheckDepth(text);
    CheckRecord(text, Quern::ZYL_XML_NODE);
    CheckRecord(text, Quern::ZYL_XML_ATTRIBUTE);
    return 0;
}
