#include "Serializer/ZYL/ZylXmlReader.h"

#include <cstdint>
#include <cstring>
#include <new>

#include "Base/Assert.h"
#include "Serializer/ZYL/ZylError.h"
#include "Serializer/ZYL/ZylXmlDepth.h"

namespace Quern {
namespace {

// isspace in the C locale.
bool IsSpace(char character) {
    return character == ' ' || ('\t' <= character && character <= '\r');
}

bool HasName(const rapidxml::xml_node<char>* node, ZylName name) {
    return rapidxml::internal::compare(node->name(), node->name_size(), name.text(), name.size(), true);
}

// Cuts the white space off both ends of a text, in place; `end` is its last character. Null if nothing is left.
const char* strip(char* begin, char* end) {
    while (begin <= end && IsSpace(*begin))
        ++begin;
    if (begin > end || *begin == '\0') return nullptr;
    if (IsSpace(*end)) {
        while (IsSpace(*end))
            --end;
        end[1] = '\0';
    }
    return begin;
}

const char* StrippedValue(rapidxml::xml_base<char>* entry) {
    const size_t size = entry->value_size();
    return size == 0 ? nullptr : strip(entry->value(), entry->value() + size - 1);
}

}  // namespace

ZylXmlReader::ZylXmlReader(char* text, ZylXmlFormat format)
    : _format(format), _state(ZylError::ZYL_NO_ERROR), _current(nullptr), _previous(nullptr) {
    ORVANE_ASSERT(NULL != text);
    _parse(text, strlen(text));
}

ZylXmlReader::ZylXmlReader(const char* text, unsigned long size, ZylXmlFormat format)
    : _format(format), _state(ZylError::ZYL_NO_ERROR), _current(nullptr), _previous(nullptr) {
    ORVANE_ASSERT(NULL != text);
    if (size < SIZE_MAX) _buffer.reset(new (std::nothrow) char[size + 1]);
    if (_buffer == nullptr) {
        _state = ZylError::ZYL_ALLOCATE_FAILED;
        return;
    }
    memcpy(_buffer.get(), text, size);
    _buffer[size] = '\0';
    _parse(_buffer.get(), size);
}

void ZylXmlReader::_parse(char* text, size_t size) {
    if (!IsXmlDepthWithin(text, size, kMaxXmlDepth)) {
        _state = ZylError::ZYL_PARSE_XML_FAILED;
        return;
    }
    try {
        _document.parse<0>(text);
    } catch (const rapidxml::parse_error&) {
        _state = ZylError::ZYL_PARSE_XML_FAILED;
        return;
    } catch (const std::bad_alloc&) {
        _state = ZylError::ZYL_ALLOCATE_FAILED;
        return;
    }
    _current = &_document;
    _previous = nullptr;
}

rapidxml::xml_node<char>* ZylXmlReader::find(ZylName name) const {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    ORVANE_ASSERT_TEXT(name.text() != nullptr, "NULL != name");
    if (_previous != nullptr && HasName(_previous, name)) return _previous->next_sibling(name.text(), name.size());
    return _current->first_node(name.text(), name.size());
}

int ZylXmlReader::stepIn(ZylName name) {
    rapidxml::xml_node<char>* const next = find(name);
    if (next == nullptr) return 1;
    _current = next;
    _previous = nullptr;
    return 0;
}

void ZylXmlReader::stepOut(ZylName name) {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    ORVANE_ASSERT_TEXT(name.text() != nullptr, "NULL != name");
    ORVANE_ASSERT_TEXT(HasName(_current, name), "0 == strcmp(name, _current->name())");
    ORVANE_ASSERT(&_document != _current);
    _previous = _current;
    _current = _current->parent();
}

const char* ZylXmlReader::getEntryValue(ZylName name) {
    return _format == ZYL_XML_ATTRIBUTE ? getAttrValue(name) : getNodeValue(name);
}

const char* ZylXmlReader::getAttrValue(ZylName name) {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    ORVANE_ASSERT_TEXT(name.text() != nullptr, "NULL != name");
    rapidxml::xml_attribute<char>* const attribute = _current->first_attribute(name.text(), name.size());
    return attribute == nullptr ? nullptr : StrippedValue(attribute);
}

// A stepIn and a stepOut, of which only the place last left remains.
const char* ZylXmlReader::getNodeValue(ZylName name) {
    rapidxml::xml_node<char>* const node = find(name);
    if (node == nullptr) return nullptr;
    _previous = node;
    return StrippedValue(node);
}

}  // namespace Quern
