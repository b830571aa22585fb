// The parsers: every type, both forms, over any text; the plain numbers against the C library.
#include "Serializer/ZYL/ZylParse.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "Serializer/ZYL/ZylTypeUtil.h"

using Quern::ZylParse;

namespace {

constexpr unsigned int kCapacity = 4;

// Any name stands for a number made of its characters, but that one in four is unknown.
int LookUp(const char* name, long long& value, void*) {
    unsigned long long bits = 0;
    for (; *name != '\0'; ++name)
        bits = 31 * bits + static_cast<unsigned char>(*name);
    value = static_cast<long long>(bits);
    return bits % 4 == 0 ? -30 : 0;
}

void Require(bool condition) {
    if (!condition) abort();
}

// The first value of a list is the value that the single form finds, and a failure there is the same failure.
template <typename Value, typename... More>
void Check(int (*one)(Value&, const char*, unsigned int*, More...),
           int (*many)(Value*, unsigned int, const char*, unsigned int*, More...), const char* text, More... more) {
    Value value{};
    Value values[kCapacity]{};
    unsigned int count = 0;
    unsigned int listed = 0;
    const int code = one(value, text, &count, more...);
    const int listCode = many(values, kCapacity, text, &listed, more...);
    Require(count <= 1 && listed <= kCapacity);
    if (code != 0) Require(listCode == code);
    // Bytes and not values: a floating number may be no number.
    if (count == 1)
        Require(std::string(reinterpret_cast<char*>(&value), sizeof value) ==
                std::string(reinterpret_cast<char*>(values), sizeof value));
    if (listCode == 0) Require((listed > 0) == (count == 1));
    one(value, text, nullptr, more...);
    many(values, kCapacity, text, nullptr, more...);
}

template <typename Value>
using OneInteger = int (*)(Value&, const char*, unsigned int*, Value, Quern::ZylMacroLookup, void*);
template <typename Value>
using ManyIntegers = int (*)(Value*, unsigned int, const char*, unsigned int*, Value, Quern::ZylMacroLookup, void*);
template <typename Value>
using OneFloat = int (*)(Value&, const char*, unsigned int*, Value);
template <typename Value>
using ManyFloats = int (*)(Value*, unsigned int, const char*, unsigned int*, Value);
using OneText = int (*)(unsigned int&, const char*, unsigned int*, const char*);
using ManyTexts = int (*)(unsigned int*, unsigned int, const char*, unsigned int*, const char*);

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string input(reinterpret_cast<const char*>(data), size);
    const char* const text = input.c_str();

#define CHECK(name, type)                                                                           \
    Check<type>(static_cast<OneInteger<type>>(ZylParse::parse##name),                               \
                static_cast<ManyIntegers<type>>(ZylParse::parse##name), text, static_cast<type>(7), \
                static_cast<Quern::ZylMacroLookup>(size % 2 == 0 ? LookUp : nullptr), static_cast<void*>(nullptr));
    ORVANE_ZYL_INTEGERS(CHECK)
#undef CHECK
#define CHECK(name, type)                                           \
    Check<type>(static_cast<OneFloat<type>>(ZylParse::parse##name), \
                static_cast<ManyFloats<type>>(ZylParse::parse##name), text, static_cast<type>(7));
    ORVANE_ZYL_FLOATS(CHECK)
#undef CHECK
#define CHECK(name, conversion)                                                                                     \
    Check<unsigned int>(static_cast<OneText>(ZylParse::parse##name), static_cast<ManyTexts>(ZylParse::parse##name), \
                        text, text);
    ORVANE_ZYL_TEXTS(CHECK)
#undef CHECK

    unsigned long long dateTime = 0;
    if (Quern::ZylTypeUtil::str2ZylDateTime(dateTime, text) == 0) {
        char again[64];
        unsigned long long back = 0;
        Require(Quern::ZylTypeUtil::zylDateTime2Str(again, sizeof again, dateTime) == 0);
        Require(Quern::ZylTypeUtil::str2ZylDateTime(back, again) == 0 && back == dateTime);
    }
    const size_t begin = input.find_first_of("0123456789+-");
    if (begin == 0) {
        unsigned long long value = 0;
        char* end;
        const unsigned long long expected = strtoull(text, &end, 0);
        if (ZylParse::parseUInt64(value, text, nullptr, 0) == 0) Require(value == expected);
    }
    return 0;
}
