// The name argument of the XML writer and reader.
#ifndef ORVANE_SERIALIZER_ZYL_ZYL_NAME_H
#define ORVANE_SERIALIZER_ZYL_ZYL_NAME_H

#include <cstddef>
#include <cstring>
#include <string_view>

namespace Quern {

// A C string, measured at the call: the length of a literal is then known to the compiler. Null stays visible.
class ZylName {
public:
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
