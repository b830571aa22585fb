// The writers behind `visualize`: one line of a dump each, into a buffer.
//
// All of them print `indent` times four blanks, then the name: "name: ", or "name[index]: " for an element of a list.
// They return codes of ZylError, 0 for success; a line that does not fit may leave its beginning behind. REQUIRES: the
// name is not null. A null text gives -8.
#ifndef ORVANE_SERIALIZER_ZYL_ZYL_BUF_UTIL_H
#define ORVANE_SERIALIZER_ZYL_ZYL_BUF_UTIL_H

#include "Serializer/ZYL/ZylBuf.h"

namespace Quern {

class ZylBufUtil {
public:
    // `str`, `times` times over; nothing where `times` is not positive.
    static int printMultiStr(ZylWriteBuf& dest, const char* str, int times);

    // The name alone: followed by the separator, or by ": " for a value that the caller prints.
    static int printVariable(ZylWriteBuf& dest, int indent, char separator, const char* variable, bool withSeparator);
    static int printVariable(ZylWriteBuf& dest, int indent, char separator, const char* variable, unsigned int index,
                             bool withSeparator);
    // The name, a formatted value and the separator.
    static int printVariable(ZylWriteBuf& dest, int indent, char separator, const char* variable, const char* format,
                             ...) __attribute__((format(printf, 5, 6)));
    static int printVariable(ZylWriteBuf& dest, int indent, char separator, const char* variable, unsigned int index,
                             const char* format, ...) __attribute__((format(printf, 6, 7)));

    // The head of a list: "name[0 : last]:", without a separator.
    static int printArray(ZylWriteBuf& dest, int indent, char separator, const char* variable, long long count);

    static int printString(ZylWriteBuf& dest, int indent, char separator, const char* variable, const char* text);
    static int printString(ZylWriteBuf& dest, int indent, char separator, const char* variable, unsigned int index,
                           const char* text);
    // Each 16-bit unit as " 0x0041", the terminating zero included, so that a reader sees the end of the text.
    static int printWString(ZylWriteBuf& dest, int indent, char separator, const char* variable,
                            const unsigned short* text);
    static int printWString(ZylWriteBuf& dest, int indent, char separator, const char* variable, unsigned int index,
                            const unsigned short* text);

    // The texts of ZylTypeUtil.
    static int printZylIP(ZylWriteBuf& dest, int indent, char separator, const char* variable, unsigned int ip);
    static int printZylIP(ZylWriteBuf& dest, int indent, char separator, const char* variable, unsigned int index,
                          unsigned int ip);
    static int printZylTime(ZylWriteBuf& dest, int indent, char separator, const char* variable, unsigned int time);
    static int printZylTime(ZylWriteBuf& dest, int indent, char separator, const char* variable, unsigned int index,
                            unsigned int time);
    static int printZylDate(ZylWriteBuf& dest, int indent, char separator, const char* variable, unsigned int date);
    static int printZylDate(ZylWriteBuf& dest, int indent, char separator, const char* variable, unsigned int index,
                            unsigned int date);
    static int printZylDateTime(ZylWriteBuf& dest, int indent, char separator, const char* variable,
                                unsigned long long dateTime);
    static int printZylDateTime(ZylWriteBuf& dest, int indent, char separator, const char* variable, unsigned int index,
                                unsigned long long dateTime);
};

}  // namespace Quern

#endif
