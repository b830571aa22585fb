#include "Serializer/ZYL/ZylBufUtil.h"

#include <cstdarg>
#include <optional>

#include "Base/Assert.h"
#include "Serializer/ZYL/ZylError.h"
#include "Serializer/ZYL/ZylTypeUtil.h"

namespace Quern {
namespace {

constexpr char kIndent[] = "    ";

using Index = std::optional<unsigned int>;

// The indent and the name, followed by the separator or by ": ".
int PrintName(ZylWriteBuf& dest, int indent, char separator, const char* variable, Index index, bool withSeparator) {
    ORVANE_ASSERT(NULL != variable);
    if (const int code = ZylBufUtil::printMultiStr(dest, kIndent, indent)) return code;
    if (index) {
        return withSeparator ? dest.textize("%s[%u]%c", variable, *index, separator)
                             : dest.textize("%s[%u]: ", variable, *index);
    }
    return withSeparator ? dest.textize("%s%c", variable, separator) : dest.textize("%s: ", variable);
}

// The whole of a line: the name, what `printValue` prints, the separator.
template <typename PrintValue>
int PrintLine(ZylWriteBuf& dest, int indent, char separator, const char* variable, Index index,
              const PrintValue& printValue) {
    if (const int code = PrintName(dest, indent, separator, variable, index, false)) return code;
    if (const int code = printValue()) return code;
    return dest.writeCharWithNull(separator);
}

int PrintFormatted(ZylWriteBuf& dest, int indent, char separator, const char* variable, Index index, const char* format,
                   va_list arguments) {
    return PrintLine(dest, indent, separator, variable, index, [&] { return dest.vtextize(format, arguments); });
}

int PrintText(ZylWriteBuf& dest, int indent, char separator, const char* variable, Index index, const char* text) {
    return PrintLine(dest, indent, separator, variable, index, [&]() -> int {
        return text == nullptr ? ZylError::ZYL_ARGUMENT_IS_NULL : dest.textize("%s", text);
    });
}

int PrintUnits(ZylWriteBuf& dest, int indent, char separator, const char* variable, Index index,
               const unsigned short* text) {
    return PrintLine(dest, indent, separator, variable, index, [&]() -> int {
        if (text == nullptr) return ZylError::ZYL_ARGUMENT_IS_NULL;
        const size_t units = ZylTypeUtil::wstrlen(text) + 1;
        for (size_t i = 0; i < units; ++i) {
            if (const int code = dest.textize(" 0x%04x", text[i])) return code;
        }
        return ZylError::ZYL_NO_ERROR;
    });
}

template <typename Packed>
int PrintConverted(ZylWriteBuf& dest, int indent, char separator, const char* variable, Index index,
                   int (*convert)(ZylWriteBuf&, Packed), Packed value) {
    return PrintLine(dest, indent, separator, variable, index, [&] { return convert(dest, value); });
}

}  // namespace

int ZylBufUtil::printMultiStr(ZylWriteBuf& dest, const char* str, int times) {
    for (int i = 0; i < times; ++i) {
        if (const int code = dest.textize("%s", str)) return code;
    }
    return ZylError::ZYL_NO_ERROR;
}

int ZylBufUtil::printVariable(ZylWriteBuf& dest, int indent, char separator, const char* variable, bool withSeparator) {
    return PrintName(dest, indent, separator, variable, std::nullopt, withSeparator);
}

int ZylBufUtil::printVariable(ZylWriteBuf& dest, int indent, char separator, const char* variable, unsigned int index,
                              bool withSeparator) {
    return PrintName(dest, indent, separator, variable, index, withSeparator);
}

int ZylBufUtil::printVariable(ZylWriteBuf& dest, int indent, char separator, const char* variable, const char* format,
                              ...) {
    va_list arguments;
    va_start(arguments, format);
    const int code = PrintFormatted(dest, indent, separator, variable, std::nullopt, format, arguments);
    va_end(arguments);
    return code;
}

int ZylBufUtil::printVariable(ZylWriteBuf& dest, int indent, char separator, const char* variable, unsigned int index,
                              const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int code = PrintFormatted(dest, indent, separator, variable, index, format, arguments);
    va_end(arguments);
    return code;
}

int ZylBufUtil::printArray(ZylWriteBuf& dest, int indent, char separator, const char* variable, long long count) {
    ORVANE_ASSERT(NULL != variable);
    if (const int code = printMultiStr(dest, kIndent, indent)) return code;
    const auto last =
        static_cast<long long>(static_cast<unsigned long long>(count) - 1);  // any count wraps, none traps
    return dest.textize("%s[0 : %lld]:", variable, last);
}

int ZylBufUtil::printString(ZylWriteBuf& dest, int indent, char separator, const char* variable, const char* text) {
    return PrintText(dest, indent, separator, variable, std::nullopt, text);
}

int ZylBufUtil::printString(ZylWriteBuf& dest, int indent, char separator, const char* variable, unsigned int index,
                            const char* text) {
    return PrintText(dest, indent, separator, variable, index, text);
}

int ZylBufUtil::printWString(ZylWriteBuf& dest, int indent, char separator, const char* variable,
                             const unsigned short* text) {
    return PrintUnits(dest, indent, separator, variable, std::nullopt, text);
}

int ZylBufUtil::printWString(ZylWriteBuf& dest, int indent, char separator, const char* variable, unsigned int index,
                             const unsigned short* text) {
    return PrintUnits(dest, indent, separator, variable, index, text);
}

#define ORVANE_ZYL_DEFINE(name, conversion, type)                                                                     \
    int ZylBufUtil::name(ZylWriteBuf& dest, int indent, char separator, const char* variable, type value) {           \
        return PrintConverted<type>(dest, indent, separator, variable, std::nullopt, ZylTypeUtil::conversion, value); \
    }                                                                                                                 \
    int ZylBufUtil::name(ZylWriteBuf& dest, int indent, char separator, const char* variable, unsigned int index,     \
                         type value) {                                                                                \
        return PrintConverted<type>(dest, indent, separator, variable, index, ZylTypeUtil::conversion, value);        \
    }
ORVANE_ZYL_DEFINE(printZylIP, zylIp2Str, unsigned int)
ORVANE_ZYL_DEFINE(printZylTime, zylTime2Str, unsigned int)
ORVANE_ZYL_DEFINE(printZylDate, zylDate2Str, unsigned int)
ORVANE_ZYL_DEFINE(printZylDateTime, zylDateTime2Str, unsigned long long)
#undef ORVANE_ZYL_DEFINE

}  // namespace Quern
