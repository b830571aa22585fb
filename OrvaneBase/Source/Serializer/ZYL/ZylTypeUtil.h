// Conversions between the packed Zyl values, their texts and the system's clock.
//
// The results are codes of ZylError, 0 for success; a target is left as it was where a conversion fails. All
// operations are safe on any thread.
#ifndef ORVANE_SERIALIZER_ZYL_ZYL_TYPE_UTIL_H
#define ORVANE_SERIALIZER_ZYL_ZYL_TYPE_UTIL_H

#include <cstddef>

#include "Serializer/ZYL/ZylBuf.h"
#include "Serializer/ZYL/ZylTime.h"

namespace Quern {

class ZylTypeUtil {
public:
    // Strict texts: an IPv4 address in dots, "%H:%M:%S", "%Y-%m-%d", "%Y-%m-%d %H:%M:%S" as strptime reads them, so
    // that a text behind the value is of no account, and hours outside 0 to 23 or a signed year, which can be printed,
    // cannot be read. REQUIRES: the text is not null.
    // -12 for an address, -13 for a time, -14 for a date, -15 for a date and time that is malformed or not valid.
    static int str2ZylIP(unsigned int& ip, const char* pszIP);
    static int str2ZylTime(unsigned int& time, const char* pszTime);
    static int str2ZylDate(unsigned int& date, const char* pszDate);
    static int str2ZylDateTime(unsigned long long& dateTime, const char* pszDateTime);

    // Prints "1.2.3.4", and a zero into the last byte of `dest` too. -1, and nothing is written, where the text and its
    // terminator do not fit.
    static int zylIp2Str(char* dest, unsigned long size, unsigned int ip);
    static int zylIp2Str(ZylWriteBuf& dest, unsigned int ip);

    // Print "%4d-%02d-%02d", "%02d:%02d:%02d", or both joined by a blank, valid or not. -1 where the text and its
    // terminator do not fit.
    static int zylDate2Str(char* dest, unsigned long size, unsigned int date);
    static int zylDate2Str(ZylWriteBuf& dest, unsigned int date);
    static int zylTime2Str(char* dest, unsigned long size, unsigned int time);
    static int zylTime2Str(ZylWriteBuf& dest, unsigned int time);
    static int zylDateTime2Str(char* dest, unsigned long size, unsigned long long dateTime);
    static int zylDateTime2Str(ZylWriteBuf& dest, unsigned long long dateTime);

    // Seconds since the epoch to local time. -16 where the C library cannot convert, -15 beyond the valid years.
    static int UTC2ZylDateTime(unsigned long long& dateTime, long utc);
    // Local time to seconds since the epoch; daylight saving time is looked up. -15 for a value that is not valid or
    // that the C library cannot convert, the last second before the epoch included, which looks like its error.
    static int zylDateTime2UTC(long& utc, unsigned long long dateTime);

    // Write the low and the high 32 bits of a date and time.
    static void zylSetDate2Datetime(unsigned long long& dateTime, unsigned int date);
    static void zylSetTime2Datetime(unsigned long long& dateTime, unsigned int time);

    // -1, 0 or 1, field by field from the largest unit.
    static int compareZylTime(unsigned int left, unsigned int right);
    static int compareZylDate(unsigned int left, unsigned int right);
    static int compareZylDateTime(unsigned long long left, unsigned long long right);

    // Count of 16-bit units before the zero. REQUIRES: text is not null.
    static size_t wstrlen(const unsigned short* text);
};

}  // namespace Quern

#endif
