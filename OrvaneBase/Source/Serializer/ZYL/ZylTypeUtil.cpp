#include "Serializer/ZYL/ZylTypeUtil.h"

#include <arpa/inet.h>

#include <algorithm>
#include <charconv>
#include <cstring>

#include "Base/Assert.h"
#include "Serializer/ZYL/ZylError.h"

namespace Quern {
namespace {

// Each print puts a text of at most kMaxShortText characters at a place and returns its end. The texts are made by
// hand: going through printf, as inet_ntop does too, would cost more than all the rest of an XML field.

// As printf's "%*d".
char* PrintNumber(char* place, int value, int width) {
    char digits[12];
    const char* const end = std::to_chars(digits, digits + sizeof digits, value).ptr;
    for (auto count = end - digits; count < width; ++count)
        *place++ = ' ';
    return std::copy(static_cast<const char*>(digits), end, place);
}

// As printf's "%02d": of a negative number, the sign and one digit fill both places.
char* PrintTwo(char* place, int value) {
    if (value < 0 || value > 99) return PrintNumber(place, value, 2);
    *place++ = static_cast<char>('0' + value / 10);
    *place++ = static_cast<char>('0' + value % 10);
    return place;
}

char* Print(char* place, const ZylDate& date) {
    if (1000 <= date.nYear && date.nYear <= 9999) {
        place = PrintTwo(PrintTwo(place, date.nYear / 100), date.nYear % 100);
    } else {
        place = PrintNumber(place, date.nYear, 4);
    }
    *place++ = '-';
    place = PrintTwo(place, date.nMonth);
    *place++ = '-';
    return PrintTwo(place, date.nDay);
}

char* Print(char* place, const ZylTime& time) {
    place = PrintTwo(place, time.nHour);
    *place++ = ':';
    place = PrintTwo(place, time.nMin);
    *place++ = ':';
    return PrintTwo(place, time.nSec);
}

char* Print(char* place, const ZylDateTime& dateTime) {
    place = Print(place, dateTime.date);
    *place++ = ' ';
    return Print(place, dateTime.time);
}

// Network byte order: the first byte in memory is the first number.
struct Address {
    unsigned int ip;
};

char* Print(char* place, const Address& address) {
    unsigned char bytes[4];
    memcpy(bytes, &address.ip, sizeof bytes);
    for (int i = 0; i < 4; ++i) {
        if (i > 0) *place++ = '.';
        place = std::to_chars(place, place + 3, bytes[i]).ptr;
    }
    return place;
}

template <typename Value>
int print2Buf(ZylWriteBuf& dest, const Value& value) {
    return dest.printShort([&](char* place) { return Print(place, value); });
}

template <typename Value>
int print2Buf(char* dest, unsigned long size, const Value& value) {
    ZylWriteBuf buffer(dest, size);
    return print2Buf(buffer, value);
}

// Two digits, or -1.
int TwoDigits(const char* text) {
    const auto isDigit = [](char character) { return '0' <= character && character <= '9'; };
    if (!isDigit(text[0]) || !isDigit(text[1])) return -1;
    return 10 * (text[0] - '0') + text[1] - '0';
}

// The shapes that this library prints, read at a fraction of the cost of strptime. False says nothing about the text:
// strptime has the last word.
bool ReadDateQuickly(const char* text, tm& fields) {
    const int century = TwoDigits(text);
    if (century < 0) return false;
    const int year = TwoDigits(text + 2);
    if (year < 0 || text[4] != '-') return false;
    const int month = TwoDigits(text + 5);
    if (month < 1 || month > 12 || text[7] != '-') return false;
    const int day = TwoDigits(text + 8);
    if (day < 1 || day > 31) return false;
    fields.tm_year = 100 * century + year - 1900;
    fields.tm_mon = month - 1;
    fields.tm_mday = day;
    return true;
}

bool ReadTimeQuickly(const char* text, tm& fields) {
    const int hour = TwoDigits(text);
    if (hour < 0 || hour > 23 || text[2] != ':') return false;
    const int minute = TwoDigits(text + 3);
    if (minute < 0 || minute > 59 || text[5] != ':') return false;
    const int second = TwoDigits(text + 6);
    if (second < 0 || second > 59) return false;
    fields.tm_hour = hour;
    fields.tm_min = minute;
    fields.tm_sec = second;
    return true;
}

bool ReadDateTimeQuickly(const char* text, tm& fields) {
    return ReadDateQuickly(text, fields) && text[10] == ' ' && ReadTimeQuickly(text + 11, fields);
}

// inet_pton's own rules: four numbers up to 255 without leading zeros.
bool ReadIpQuickly(const char* text, unsigned int& ip) {
    unsigned char bytes[4];
    for (int i = 0; i < 4; ++i) {
        if (i > 0 && *text++ != '.') return false;
        if (*text < '0' || *text > '9') return false;
        unsigned int number = 0;
        const char* const begin = text;
        for (; '0' <= *text && *text <= '9' && text - begin < 3; ++text) {
            number = 10 * number + static_cast<unsigned int>(*text - '0');
        }
        if (number > 255 || (*begin == '0' && text - begin > 1)) return false;
        bytes[i] = static_cast<unsigned char>(number);
    }
    if (*text != '\0') return false;
    memcpy(&ip, bytes, sizeof bytes);
    return true;
}

template <typename Value, typename Packed>
int Read(Packed& target, const char* text, bool (*readQuickly)(const char*, tm&), const char* format, int failure) {
    tm fields = {};
    if (!readQuickly(text, fields)) {
        fields = {};
        if (strptime(text, format, &fields) == nullptr) return failure;
    }
    Value value;
    value.fromTm(fields);
    if (!value.isValid()) return failure;
    target = value;
    return ZylError::ZYL_NO_ERROR;
}

template <typename Value>
int Compare(const Value& left, const Value& right) {
    if (left < right) return -1;
    return right < left ? 1 : 0;
}

}  // namespace

int ZylTypeUtil::str2ZylIP(unsigned int& ip, const char* pszIP) {
    ORVANE_ASSERT(NULL != pszIP);
    if (ReadIpQuickly(pszIP, ip)) return ZylError::ZYL_NO_ERROR;
    in_addr address;
    if (inet_pton(AF_INET, pszIP, &address) != 1) return ZylError::ZYL_INVALID_IP;
    ip = address.s_addr;
    return ZylError::ZYL_NO_ERROR;
}

int ZylTypeUtil::str2ZylTime(unsigned int& time, const char* pszTime) {
    ORVANE_ASSERT(NULL != pszTime);
    return Read<ZylTime>(time, pszTime, ReadTimeQuickly, "%H:%M:%S", ZylError::ZYL_INVALID_TIME);
}

int ZylTypeUtil::str2ZylDate(unsigned int& date, const char* pszDate) {
    ORVANE_ASSERT(NULL != pszDate);
    return Read<ZylDate>(date, pszDate, ReadDateQuickly, "%Y-%m-%d", ZylError::ZYL_INVALID_DATE);
}

int ZylTypeUtil::str2ZylDateTime(unsigned long long& dateTime, const char* pszDateTime) {
    ORVANE_ASSERT(NULL != pszDateTime);
    return Read<ZylDateTime>(dateTime, pszDateTime, ReadDateTimeQuickly, "%Y-%m-%d %H:%M:%S",
                             ZylError::ZYL_INVALID_DATETIME);
}

int ZylTypeUtil::zylIp2Str(char* dest, unsigned long size, unsigned int ip) {
    const int code = print2Buf(dest, size, Address{ip});
    if (code == ZylError::ZYL_NO_ERROR) dest[size - 1] = '\0';
    return code;
}

int ZylTypeUtil::zylIp2Str(ZylWriteBuf& dest, unsigned int ip) {
    return print2Buf(dest, Address{ip});
}

int ZylTypeUtil::zylDate2Str(char* dest, unsigned long size, unsigned int date) {
    return print2Buf(dest, size, ZylDate(date));
}

int ZylTypeUtil::zylDate2Str(ZylWriteBuf& dest, unsigned int date) {
    return print2Buf(dest, ZylDate(date));
}

int ZylTypeUtil::zylTime2Str(char* dest, unsigned long size, unsigned int time) {
    return print2Buf(dest, size, ZylTime(time));
}

int ZylTypeUtil::zylTime2Str(ZylWriteBuf& dest, unsigned int time) {
    return print2Buf(dest, ZylTime(time));
}

int ZylTypeUtil::zylDateTime2Str(char* dest, unsigned long size, unsigned long long dateTime) {
    return print2Buf(dest, size, ZylDateTime(dateTime));
}

int ZylTypeUtil::zylDateTime2Str(ZylWriteBuf& dest, unsigned long long dateTime) {
    return print2Buf(dest, ZylDateTime(dateTime));
}

int ZylTypeUtil::UTC2ZylDateTime(unsigned long long& dateTime, long utc) {
    const time_t seconds = utc;
    tm fields;
    if (localtime_r(&seconds, &fields) == nullptr) return ZylError::ZYL_LOCALTIME_FAILED;
    ZylDateTime value;
    value.fromTm(fields);
    if (!value.isValid()) return ZylError::ZYL_INVALID_DATETIME;
    dateTime = value;
    return ZylError::ZYL_NO_ERROR;
}

int ZylTypeUtil::zylDateTime2UTC(long& utc, unsigned long long dateTime) {
    const ZylDateTime value(dateTime);
    if (!value.isValid()) return ZylError::ZYL_INVALID_DATETIME;
    tm fields = {};
    value.toTm(fields);
    fields.tm_isdst = -1;
    const time_t seconds = mktime(&fields);
    if (seconds == -1) return ZylError::ZYL_INVALID_DATETIME;
    utc = seconds;
    return ZylError::ZYL_NO_ERROR;
}

void ZylTypeUtil::zylSetDate2Datetime(unsigned long long& dateTime, unsigned int date) {
    dateTime = (dateTime & 0xFFFFFFFF00000000ULL) | date;
}

void ZylTypeUtil::zylSetTime2Datetime(unsigned long long& dateTime, unsigned int time) {
    dateTime = (dateTime & 0xFFFFFFFFULL) | static_cast<unsigned long long>(time) << 32;
}

int ZylTypeUtil::compareZylTime(unsigned int left, unsigned int right) {
    return Compare(ZylTime(left), ZylTime(right));
}

int ZylTypeUtil::compareZylDate(unsigned int left, unsigned int right) {
    return Compare(ZylDate(left), ZylDate(right));
}

int ZylTypeUtil::compareZylDateTime(unsigned long long left, unsigned long long right) {
    return Compare(ZylDateTime(left), ZylDateTime(right));
}

size_t ZylTypeUtil::wstrlen(const unsigned short* text) {
    ORVANE_ASSERT(NULL != text);
    size_t count = 0;
    while (text[count] != 0)
        ++count;
    return count;
}

}  // namespace Quern
