// Reads the XML form: a cursor over a parsed document, driven by generated code.
#ifndef ORVANE_SERIALIZER_ZYL_ZYL_XML_READER_H
#define ORVANE_SERIALIZER_ZYL_ZYL_XML_READER_H

#include <cstdint>
#include <memory>
#include <rapidxml/rapidxml.hpp>

#include "Serializer/ZYL/ZylName.h"
#include "Serializer/ZYL/ZylXmlFormat.h"

namespace Quern {

// Belongs to one thread. Holds the parser's first pool of nodes, 64 KiB, within itself.
//
// REQUIRES of every operation but state(): the state is 0 and the name is not null. Names compare exactly. The texts
// that it returns point into the parsed text.
class ZylXmlReader {
public:
    // Parses in place: `text` is changed and must outlive the reader. REQUIRES: text is not null.
    ZylXmlReader(char* text, ZylXmlFormat format);
    // Parses a copy. REQUIRES: text is not null.
    ZylXmlReader(const char* text, unsigned long size, ZylXmlFormat format);
    ZylXmlReader(const ZylXmlReader&) = delete;
    ZylXmlReader& operator=(const ZylXmlReader&) = delete;

    // 0, -26 where memory ran out, -27 for a text that is no XML or nests elements deeper than kMaxXmlDepth.
    int state() const { return _state; }
    ZylXmlFormat format() const { return _format; }

    // Goes down into the first child of that name or, right behind a stepOut of the same name, into its next sibling of
    // that name, which is how repeated elements are walked. 0, or 1 if there is none and nothing has moved.
    int stepIn(ZylName name);
    // REQUIRES: name is that of the element stepped into.
    void stepOut(ZylName name);

    // The text of a field without the white space around it, or null if there is no such field or no text in it.
    const char* getEntryValue(ZylName name);  // by the layout: one of the two below
    const char* getAttrValue(ZylName name);   // an attribute of the current element
    const char* getNodeValue(ZylName name);   // the text of a child element, reached by stepIn

private:
    using Node = rapidxml::xml_node<char>;

    void _parse(char* text, size_t size);
    // What stepIn goes to, or null.
    Node* find(ZylName name);
    // The first child of the current element that has the name, or null. `bit` is that of the name.
    Node* search(ZylName name, uint64_t bit);

    std::unique_ptr<char[]> _buffer;  // the copy of the text, or null
    ZylXmlFormat _format;
    int _state;
    rapidxml::xml_document<char> _document;
    Node* _current;
    Node* _previous;  // the node last left by stepOut, or null

    // Fields are mostly asked for in the order in which they stand: how far the searches among the children of one
    // element have come. What no child before that place can be called need not be looked for there.
    const Node* _searched = nullptr;  // the element, or null
    Node* _place = nullptr;           // the first child that no search has passed, or null
    uint64_t _passedNames = 0;        // one bit for each name before it; different names may share a bit
};

}  // namespace Quern

#endif
