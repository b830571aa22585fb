#include "Serializer/ZYL/ZylParse.h"

#include <charconv>
#include <cstdlib>
#include <limits>
#include <string>
#include <string_view>
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

// Cuts values off a text from the left, as strtok_r would, without changing it. The number readers of the C library
// stop at a delimiter by themselves, so a token needs no terminator for them.
class Tokens {
public:
    explicit Tokens(const char* text) : _text(text) {}

    // Empty at the end of the text.
    std::string_view next() {
        while (IsDelimiter(*_text))
            ++_text;
        const char* const begin = _text;
        while (*_text != '\0' && !IsDelimiter(*_text))
            ++_text;
        return {begin, static_cast<size_t>(_text - begin)};
    }

private:
    const char* _text;
};

// A plain decimal number of up to 18 digits, the common case. False leaves the token to the C library: anything that
// starts with 0 is octal or hexadecimal there, or ends the number early.
bool ReadDecimalQuickly(std::string_view token, long long& number) {
    const bool isMinus = token[0] == '-';
    if (isMinus || token[0] == '+') token.remove_prefix(1);
    if (token.empty() || token.size() > 18 || (token[0] == '0' && token.size() > 1)) return false;
    long long magnitude = 0;
    for (char digit : token) {
        if (!IsDigit(digit)) return false;
        magnitude = 10 * magnitude + (digit - '0');
    }
    number = isMinus ? -magnitude : magnitude;
    return true;
}

// The rules by which the types are read: each turns one token into a value, and knows what stands for a missing one.

template <typename Integer>
struct IntegerRule {
    Integer defaultValue;
    ZylMacroLookup lookUp;
    void* context;

    int missing(Integer& value) const {
        value = defaultValue;
        return ZylError::ZYL_NO_ERROR;
    }

    int convert(std::string_view token, Integer& value) const {
        long long number = 0;
        if (!IsDigit(token[0]) && token[0] != '+' && token[0] != '-') {
            if (lookUp == nullptr) return ZylError::ZYL_UNDEFINED_MACRO;
            if (const int code = lookUp(std::string(token).c_str(), number, context)) return code;
        } else if (!ReadDecimalQuickly(token, number)) {
            char* end;
            if constexpr (sizeof(Integer) <= 2) {
                number = strtol(token.data(), &end, 0);
            } else if constexpr (sizeof(Integer) == 4) {
                number = strtoll(token.data(), &end, 0);
            } else {
                number = static_cast<long long>(strtoull(token.data(), &end, 0));
            }
            if (end == token.data()) return ZylError::ZYL_PARSE_NUMBER_FAILED;
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

    int convert(std::string_view token, Float& value) const {
        double number;
        const auto [stop, error] = std::from_chars(token.data(), token.data() + token.size(), number);
        if (error != std::errc() || stop != token.data() + token.size()) {
            char* end;
            number = strtod(token.data(), &end);
            if (end == token.data()) return ZylError::ZYL_PARSE_NUMBER_FAILED;
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

    int convert(std::string_view token, unsigned int& value) const {
        const bool isTerminated = token.data()[token.size()] == '\0';
        return isTerminated ? conversion(value, token.data()) : conversion(value, std::string(token).c_str());
    }
};

template <typename Value, typename Rule>
int ParseOne(Value& value, const char* text, unsigned int* count, const Rule& rule) {
    ORVANE_ASSERT_TEXT(text != nullptr, "NULL != str");
    const std::string_view token = Tokens(text).next();
    if (token.empty()) {
        if (count == nullptr) return rule.missing(value);
        *count = 0;
        return ZylError::ZYL_NO_ERROR;
    }
    const int code = rule.convert(token, value);
    if (code == ZylError::ZYL_NO_ERROR && count != nullptr) *count = 1;
    return code;
}

template <typename Value, typename Rule>
int ParseMany(Value* values, unsigned int capacity, const char* text, unsigned int* count, const Rule& rule) {
    ORVANE_ASSERT_TEXT(values != nullptr, "NULL != dest");
    ORVANE_ASSERT_TEXT(capacity != 0, "0 != count");
    ORVANE_ASSERT_TEXT(text != nullptr, "NULL != str");
    Tokens tokens(text);
    unsigned int taken = 0;
    for (; taken < capacity; ++taken) {
        const std::string_view token = tokens.next();
        if (token.empty()) break;
        if (const int code = rule.convert(token, values[taken])) return code;
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
