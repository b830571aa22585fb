#include "Serializer/ZYL/ZylXmlReader.h"

#include <cctype>
#include <cstdint>
#include <cstring>
#include <new>

#include "Base/Assert.h"
#include "Serializer/ZYL/ZylError.h"
#include "Serializer/ZYL/ZylXmlDepth.h"

namespace Quern {
namespace {

bool IsSpace(char character) {
    return isspace(static_cast<unsigned char>(character)) != 0;
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
    _parse(text);
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
    _parse(_buffer.get());
}

void ZylXmlReader::_parse(char* text) {
    if (!IsXmlDepthWithin(text, kMaxXmlDepth)) {
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

int ZylXmlReader::stepIn(const char* name) {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    ORVANE_ASSERT(NULL != name);
    const size_t size = strlen(name);
    const bool isRepeated =
        _previous != nullptr && _previous->name_size() == size && memcmp(_previous->name(), name, size) == 0;
    rapidxml::xml_node<char>* const next =
        isRepeated ? _previous->next_sibling(name, size) : _current->first_node(name, size);
    if (next == nullptr) return 1;
    _current = next;
    _previous = nullptr;
    return 0;
}

void ZylXmlReader::stepOut(const char* name) {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    ORVANE_ASSERT(NULL != name);
    ORVANE_ASSERT(0 == strcmp(name, _current->name()));
    ORVANE_ASSERT(&_document != _current);
    _previous = _current;
    _current = _current->parent();
}

const char* ZylXmlReader::getEntryValue(const char* name) {
    return _format == ZYL_XML_ATTRIBUTE ? getAttrValue(name) : getNodeValue(name);
}

const char* ZylXmlReader::getAttrValue(const char* name) {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    ORVANE_ASSERT(NULL != name);
    rapidxml::xml_attribute<char>* const attribute = _current->first_attribute(name);
    return attribute == nullptr ? nullptr : StrippedValue(attribute);
}

const char* ZylXmlReader::getNodeValue(const char* name) {
    if (stepIn(name) != 0) return nullptr;
    rapidxml::xml_node<char>* const node = _current;
    stepOut(name);
    return StrippedValue(node);
}

}  // namespace Quern
