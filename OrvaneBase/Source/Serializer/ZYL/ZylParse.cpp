#include "Serializer/ZYL/ZylParse.h"

#include <charconv>
#include <cstdlib>
#include <limits>
#include <string>
#include <system_error>

#include "Base/Assert.h"
#include "Serializer/ZYL/ZylError.h"
#include "Serializer/ZYL/ZylTypeUtil.h"

namespace Quern {
namespace {

bool IsDelimiter(char character) {
    return character == ' ' || character == '\r' || character == '\n' || character == '\t';
}

bool IsDigit(char character) {
    return '0' <= character && character <= '9';
}

bool IsEnd(char character) {
    return character == '\0' || IsDelimiter(character);
}

// A text is cut into tokens as strtok_r would, without changing it: the number readers of the C library stop at a
// delimiter by themselves, so that a token needs no terminator for them.

// The token at the place or behind it, or null at the end of the text.
const char* NextToken(const char* place) {
    while (IsDelimiter(*place))
        ++place;
    return *place == '\0' ? nullptr : place;
}

// `place` lies in a token.
const char* EndOfToken(const char* place) {
    while (!IsEnd(*place))
        ++place;
    return place;
}

// A plain decimal number of up to 18 digits, the common case, in one pass. Returns the token's end, or null for what is
// left to the C library: anything that starts with 0 is octal or hexadecimal there, or ends the number early.
const char* ReadDecimalQuickly(const char* token, long long& number) {
    const bool isMinus = *token == '-';
    const char* const begin = isMinus || *token == '+' ? token + 1 : token;
    const char* end = begin;
    unsigned long long magnitude = 0;  // garbage beyond 19 digits
    for (; IsDigit(*end); ++end)
        magnitude = 10 * magnitude + static_cast<unsigned char>(*end - '0');
    const auto size = end - begin;
    if (size == 0 || size > 18 || (*begin == '0' && size > 1) || !IsEnd(*end)) return nullptr;
    number = isMinus ? -static_cast<long long>(magnitude) : static_cast<long long>(magnitude);
    return end;
}

// The rules by which the types are read: each turns the token at `place` into a value, moves the place to the token's
// end, and knows what stands for a missing value.

template <typename Integer>
struct IntegerRule {
    Integer defaultValue;
    ZylMacroLookup lookUp;
    void* context;

    int missing(Integer& value) const {
        value = defaultValue;
        return ZylError::ZYL_NO_ERROR;
    }

    int convert(const char*& place, Integer& value) const {
        const char* const token = place;
        long long number = 0;
        if (const char* const end = ReadDecimalQuickly(token, number)) {
            place = end;
        } else if (!IsDigit(*token) && *token != '+' && *token != '-') {
            if (lookUp == nullptr) return ZylError::ZYL_UNDEFINED_MACRO;
            place = EndOfToken(token);
            if (const int code = lookUp(std::string(token, place).c_str(), number, context)) return code;
        } else {
            char* stop;
            if constexpr (sizeof(Integer) <= 2) {
                number = strtol(token, &stop, 0);
            } else if constexpr (sizeof(Integer) == 4) {
                number = strtoll(token, &stop, 0);
            } else {
                number = static_cast<long long>(strtoull(token, &stop, 0));
            }
            if (stop == token) return ZylError::ZYL_PARSE_NUMBER_FAILED;
            place = EndOfToken(stop);
        }
        using Limits = std::numeric_limits<Integer>;
        if constexpr (sizeof(Integer) < sizeof number) {
            if (number < Limits::min() || number > Limits::max()) return ZylError::ZYL_VALUE_OUT_OF_RANGE;
        }
        value = static_cast<Integer>(number);
        return ZylError::ZYL_NO_ERROR;
    }
};

// The plain numbers that the XML form is made of need no strtod, which has the last word on everything else: a sign
// "+", hexadecimal, trailing characters, numbers beyond the range.
template <typename Float>
struct FloatRule {
    Float defaultValue;

    int missing(Float& value) const {
        value = defaultValue;
        return ZylError::ZYL_NO_ERROR;
    }

    int convert(const char*& place, Float& value) const {
        const char* const token = place;
        place = EndOfToken(token);
        double number;
        const auto [stop, error] = std::from_chars(token, place, number);
        if (error != std::errc() || stop != place) {
            char* end;
            number = strtod(token, &end);
            // strtod takes white space that ends no token for blanks in front, and would go on to the next one.
            if (end == token || end > place) return ZylError::ZYL_PARSE_NUMBER_FAILED;
        }
        value = static_cast<Float>(number);
        return ZylError::ZYL_NO_ERROR;
    }
};

struct TextRule {
    int (*conversion)(unsigned int&, const char*);
    const char* defaultText;

    int missing(unsigned int& value) const {
        if (defaultText != nullptr) return conversion(value, defaultText);
        value = 0;
        return ZylError::ZYL_NO_ERROR;
    }

    int convert(const char*& place, unsigned int& value) const {
        const char* const token = place;
        place = EndOfToken(token);
        return *place == '\0' ? conversion(value, token) : conversion(value, std::string(token, place).c_str());
    }
};

template <typename Value, typename Rule>
int ParseOne(Value& value, const char* text, unsigned int* count, const Rule& rule) {
    ORVANE_ASSERT_TEXT(text != nullptr, "NULL != str");
    const char* place = NextToken(text);
    if (place == nullptr) {
        if (count == nullptr) return rule.missing(value);
        *count = 0;
        return ZylError::ZYL_NO_ERROR;
    }
    const int code = rule.convert(place, value);
    if (code == ZylError::ZYL_NO_ERROR && count != nullptr) *count = 1;
    return code;
}

template <typename Value, typename Rule>
int ParseMany(Value* values, unsigned int capacity, const char* text, unsigned int* count, const Rule& rule) {
    ORVANE_ASSERT_TEXT(values != nullptr, "NULL != dest");
    ORVANE_ASSERT_TEXT(capacity != 0, "0 != count");
    ORVANE_ASSERT_TEXT(text != nullptr, "NULL != str");
    const char* place = text;
    unsigned int taken = 0;
    for (; taken < capacity; ++taken) {
        place = NextToken(place);
        if (place == nullptr) break;
        if (const int code = rule.convert(place, values[taken])) return code;
    }
    if (count != nullptr) {
        *count = taken;
        return ZylError::ZYL_NO_ERROR;
    }
    for (; taken < capacity; ++taken) {
        if (const int code = rule.missing(values[taken])) return code;
    }
    return ZylError::ZYL_NO_ERROR;
}

}  // namespace

#define ORVANE_ZYL_DEFINE(name, type)                                                                      \
    int ZylParse::parse##name(type& value, const char* text, unsigned int* count, type defaultValue,       \
                              ZylMacroLookup lookUp, void* context) {                                      \
        return ParseOne(value, text, count, IntegerRule<type>{defaultValue, lookUp, context});             \
    }                                                                                                      \
    int ZylParse::parse##name(type* values, unsigned int capacity, const char* text, unsigned int* count,  \
                              type defaultValue, ZylMacroLookup lookUp, void* context) {                   \
        return ParseMany(values, capacity, text, count, IntegerRule<type>{defaultValue, lookUp, context}); \
    }
ORVANE_ZYL_INTEGERS(ORVANE_ZYL_DEFINE)
#undef ORVANE_ZYL_DEFINE

#define ORVANE_ZYL_DEFINE(name, type)                                                                     \
    int ZylParse::parse##name(type& value, const char* text, unsigned int* count, type defaultValue) {    \
        return ParseOne(value, text, count, FloatRule<type>{defaultValue});                               \
    }                                                                                                     \
    int ZylParse::parse##name(type* values, unsigned int capacity, const char* text, unsigned int* count, \
                              type defaultValue) {                                                        \
        return ParseMany(values, capacity, text, count, FloatRule<type>{defaultValue});                   \
    }
ORVANE_ZYL_FLOATS(ORVANE_ZYL_DEFINE)
#undef ORVANE_ZYL_DEFINE

#define ORVANE_ZYL_DEFINE(name, conversion)                                                                          \
    int ZylParse::parse##name(unsigned int& value, const char* text, unsigned int* count, const char* defaultText) { \
        return ParseOne(value, text, count, TextRule{ZylTypeUtil::conversion, defaultText});                         \
    }                                                                                                                \
    int ZylParse::parse##name(unsigned int* values, unsigned int capacity, const char* text, unsigned int* count,    \
                              const char* defaultText) {                                                             \
        return ParseMany(values, capacity, text, count, TextRule{ZylTypeUtil::conversion, defaultText});             \
    }
ORVANE_ZYL_TEXTS(ORVANE_ZYL_DEFINE)
#undef ORVANE_ZYL_DEFINE

}  // namespace Quern
