// The packed date, time and address values of the Zyl forms: plain values, convertible to and from integers.
//
// Two values of one type are ordered by what they mean, not by their integer forms.
#ifndef ORVANE_SERIALIZER_ZYL_ZYL_TIME_H
#define ORVANE_SERIALIZER_ZYL_ZYL_TIME_H

#include <compare>
#include <cstdint>
#include <ctime>

namespace Quern {

// An IPv4 address in network byte order.
using zyl_ip_t = unsigned int;

// Integer form: year in bits 0 to 15, month in 16 to 23, day in 24 to 31.
struct ZylDate {
    int16_t nYear = 0;
    uint8_t nMonth = 0;
    uint8_t nDay = 0;

    ZylDate() = default;
    ZylDate(int year, int month, int day)
        : nYear(static_cast<int16_t>(year)), nMonth(static_cast<uint8_t>(month)), nDay(static_cast<uint8_t>(day)) {}
    ZylDate(unsigned int packed);
    operator unsigned int() const;

    // Years -9999 to 9999 of the Gregorian calendar. Month 0 and day 0 pass, on purpose.
    bool isValid() const;
    // Field by field from the year.
    std::strong_ordering operator<=>(const ZylDate& other) const;

    // A year that 16 bits do not hold becomes the nearest that they do, and is then not valid.
    void fromTm(const tm& source);
    // Sets the fields of the date alone.
    void toTm(tm& target) const;
};

// A time of day, or a span: the hours are signed. Integer form: hour in bits 0 to 15, minute in 16 to 23, second in
// 24 to 31.
struct ZylTime {
    int16_t nHour = 0;
    uint8_t nMin = 0;
    uint8_t nSec = 0;

    ZylTime() = default;
    ZylTime(int hour, int minute, int second)
        : nHour(static_cast<int16_t>(hour)), nMin(static_cast<uint8_t>(minute)), nSec(static_cast<uint8_t>(second)) {}
    ZylTime(unsigned int packed);
    operator unsigned int() const;

    // Hours -999 to 999.
    bool isValid() const;
    // Field by field from the hours: of two spans of the same negative hour, the one with more minutes is the greater.
    std::strong_ordering operator<=>(const ZylTime& other) const;

    void fromTm(const tm& source);
    // Sets the fields of the time alone.
    void toTm(tm& target) const;
};

// Integer form: the date in the low 32 bits, the time in the high 32.
struct ZylDateTime {
    ZylDate date;
    ZylTime time;

    ZylDateTime() = default;
    ZylDateTime(const ZylDate& theDate, const ZylTime& theTime) : date(theDate), time(theTime) {}
    ZylDateTime(unsigned long long packed);
    operator unsigned long long() const;

    bool isValid() const;
    // Field by field from the year.
    std::strong_ordering operator<=>(const ZylDateTime& other) const;

    void fromTm(const tm& source);
    void toTm(tm& target) const;
};

}  // namespace Quern

#endif
