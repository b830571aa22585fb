// Reads numbers, dates, times and addresses from the texts of the XML form.
//
// A text may hold several values, separated by blanks, tabs and line ends. Each type has two operations. The single
// form takes the first value; the array form takes values until `capacity` or the end of the text. What is missing
// depends on `count`: given, it receives how many values were taken and nothing else is touched; null, the default
// takes the place of the missing ones. Values behind the first, or behind the capacity, are not looked at.
//
// Integers are read as strtol does with base 0: "0x10" and "010" work, and what follows the digits is of no account. A
// value that does not start with a digit, "+" or "-" is the name of a macro. Integers of 64 bits have no range test:
// out of range they saturate as strtoull does, and a signed one takes its bits.
//
// The results are codes of ZylError: -21 beyond the type's range, -29 where no number can be read, -30 for a macro
// without a look-up, the look-up's own non-zero result, -12, -13 or -14 for a bad address, time or date. The operation
// stops there, with the values before it stored. REQUIRES: text is not null; values is not null; capacity is not 0.
#ifndef ORVANE_SERIALIZER_ZYL_ZYL_PARSE_H
#define ORVANE_SERIALIZER_ZYL_ZYL_PARSE_H

namespace Quern {

// Finds the number that a macro name stands for: 0 and `value` set, or the code to return. A number of 64 bits unsigned
// is given by its bits.
using ZylMacroLookup = int (*)(const char* name, long long& value, void* context);

// X(name, type)
#define ORVANE_ZYL_INTEGERS(X)    \
    X(UInt8, unsigned char)       \
    X(Int8, signed char)          \
    X(UChar, unsigned char)       \
    X(Char, char)                 \
    X(UInt16, unsigned short)     \
    X(Int16, short)               \
    X(UInt32, unsigned int)       \
    X(Int32, int)                 \
    X(UInt64, unsigned long long) \
    X(Int64, long long)
#define ORVANE_ZYL_FLOATS(X) \
    X(Float, float)          \
    X(Double, double)
// X(name, conversion of ZylTypeUtil)
#define ORVANE_ZYL_TEXTS(X) \
    X(Date, str2ZylDate)    \
    X(Time, str2ZylTime)    \
    X(IP, str2ZylIP)

class ZylParse {
public:
#define ORVANE_ZYL_DECLARE(name, type)                                                                 \
    static int parse##name(type& value, const char* text, unsigned int* count, type defaultValue,      \
                           ZylMacroLookup lookUp = nullptr, void* context = nullptr);                  \
    static int parse##name(type* values, unsigned int capacity, const char* text, unsigned int* count, \
                           type defaultValue, ZylMacroLookup lookUp = nullptr, void* context = nullptr);
    ORVANE_ZYL_INTEGERS(ORVANE_ZYL_DECLARE)
#undef ORVANE_ZYL_DECLARE

    // Without macros and without a range test, as strtod reads: -29 where it reads nothing.
#define ORVANE_ZYL_DECLARE(name, type)                                                                 \
    static int parse##name(type& value, const char* text, unsigned int* count, type defaultValue);     \
    static int parse##name(type* values, unsigned int capacity, const char* text, unsigned int* count, \
                           type defaultValue);
    ORVANE_ZYL_FLOATS(ORVANE_ZYL_DECLARE)
#undef ORVANE_ZYL_DECLARE

    // Values in their integer form. The default is a text too, read when it is needed; null stands for the value 0.
#define ORVANE_ZYL_DECLARE(name, conversion)                                                                     \
    static int parse##name(unsigned int& value, const char* text, unsigned int* count, const char* defaultText); \
    static int parse##name(unsigned int* values, unsigned int capacity, const char* text, unsigned int* count,   \
                           const char* defaultText);
    ORVANE_ZYL_TEXTS(ORVANE_ZYL_DECLARE)
#undef ORVANE_ZYL_DECLARE
};

}  // namespace Quern

#endif
