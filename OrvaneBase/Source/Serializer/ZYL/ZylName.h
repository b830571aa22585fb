// The name argument of the XML writer and reader: a C string that converts by itself at the call.
#ifndef ORVANE_SERIALIZER_ZYL_ZYL_NAME_H
#define ORVANE_SERIALIZER_ZYL_ZYL_NAME_H

#include <cstddef>
#include <cstring>
#include <string_view>

namespace Quern {

// Borrows the text for the call. It is measured there, so that the compiler knows the length of a literal.
class ZylName {
public:
    // A null has the size 0, and text() gives it back: what it means is for the operation to say.
    ZylName(const char* name) : _text(name), _size(name == nullptr ? 0 : strlen(name)) {}

    const char* text() const { return _text; }
    size_t size() const { return _size; }
    std::string_view view() const { return {_text, _size}; }

private:
    const char* _text;
    size_t _size;
};

}  // namespace Quern

#endif
