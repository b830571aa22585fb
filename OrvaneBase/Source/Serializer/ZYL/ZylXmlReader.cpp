#include "Serializer/ZYL/ZylXmlReader.h"

#include <cstdint>
#include <cstring>
#include <new>

#include "Base/Assert.h"
#include "Serializer/ZYL/ZylError.h"
#include "Serializer/ZYL/ZylShortText.h"
#include "Serializer/ZYL/ZylXmlDepth.h"

namespace Quern {
namespace {

// isspace in the C locale.
bool IsSpace(char character) {
    return character == ' ' || ('\t' <= character && character <= '\r');
}

// Inlined by force: every search runs through it, and a shared copy costs a tenth of the reader's own time.
inline __attribute__((always_inline)) bool HasName(const rapidxml::xml_base<char>* entry, ZylName name) {
    return entry->name_size() == name.size() && IsSameText(entry->name(), name.text(), name.size());
}

rapidxml::xml_node<char>* NextOf(rapidxml::xml_node<char>* node) {
    return node->next_sibling();
}
rapidxml::xml_attribute<char>* NextOf(rapidxml::xml_attribute<char>* attribute) {
    return attribute->next_attribute();
}

// The first entry, from the given one on, that has the name, or null.
template <typename Entry>
Entry* FirstOf(Entry* entry, ZylName name) {
    while (entry != nullptr && !HasName(entry, name))
        entry = NextOf(entry);
    return entry;
}

// The same bit for equal names, most often another for different ones. An empty name has to be terminated.
uint64_t BitOfName(const char* name, size_t size) {
    const auto character = [name](size_t index) { return static_cast<unsigned char>(name[index]); };
    return uint64_t{1} << ((size + 5u * character(0) + 3u * character(size / 2)) % 64);
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

inline ZylXmlReader::Node* ZylXmlReader::find(ZylName name) {
    ORVANE_ASSERT(ZylError::ZYL_NO_ERROR == _state);
    ORVANE_ASSERT_TEXT(name.text() != nullptr, "NULL != name");
    if (_previous != nullptr && HasName(_previous, name)) return FirstOf(_previous->next_sibling(), name);
    const uint64_t bit = BitOfName(name.text(), name.size());
    const bool isNextInOrder = _searched == _current && (_passedNames & bit) == 0 && _place != nullptr;
    if (!isNextInOrder || !HasName(_place, name)) return search(name, bit);
    Node* const child = _place;
    _passedNames |= bit;
    _place = child->next_sibling();
    return child;
}

ZylXmlReader::Node* ZylXmlReader::search(ZylName name, uint64_t bit) {
    if (_searched != _current) {
        _searched = _current;
        _place = _current->first_node();
        _passedNames = 0;
    }
    if ((_passedNames & bit) != 0) return FirstOf(_current->first_node(), name);
    Node* const child = FirstOf(_place, name);
    if (child == nullptr) return nullptr;
    for (; _place != child; _place = _place->next_sibling())
        _passedNames |= BitOfName(_place->name(), _place->name_size());
    _passedNames |= bit;
    _place = child->next_sibling();
    return child;
}

int ZylXmlReader::stepIn(ZylName name) {
    Node* const next = find(name);
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
    rapidxml::xml_attribute<char>* const attribute = FirstOf(_current->first_attribute(), name);
    return attribute == nullptr ? nullptr : StrippedValue(attribute);
}

// A stepIn and a stepOut, of which only the place last left remains.
const char* ZylXmlReader::getNodeValue(ZylName name) {
    Node* const node = find(name);
    if (node == nullptr) return nullptr;
    _previous = node;
    return StrippedValue(node);
}

}  // namespace Quern
