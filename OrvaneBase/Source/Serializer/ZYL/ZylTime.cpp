#include "Serializer/ZYL/ZylTime.h"

#include <algorithm>

namespace Quern {
namespace {

// The large field goes through its unsigned form: a negative year would else set the bits of month and day.
unsigned int Pack(int16_t large, uint8_t middle, uint8_t small) {
    return static_cast<uint16_t>(large) | static_cast<unsigned int>(middle) << 16 |
           static_cast<unsigned int>(small) << 24;
}

int16_t LargeOf(unsigned int packed) {
    return static_cast<int16_t>(static_cast<uint16_t>(packed));
}
uint8_t MiddleOf(unsigned int packed) {
    return static_cast<uint8_t>(packed >> 16);
}
uint8_t SmallOf(unsigned int packed) {
    return static_cast<uint8_t>(packed >> 24);
}

bool IsLeapYear(int year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int DaysOfMonth(int year, int month) {
    switch (month) {
        case 2:
            return IsLeapYear(year) ? 29 : 28;
        case 4:
        case 6:
        case 9:
        case 11:
            return 30;
        default:
            return 31;
    }
}

}  // namespace

ZylDate::ZylDate(unsigned int packed) : nYear(LargeOf(packed)), nMonth(MiddleOf(packed)), nDay(SmallOf(packed)) {}

ZylDate::operator unsigned int() const {
    return Pack(nYear, nMonth, nDay);
}

bool ZylDate::isValid() const {
    return -9999 <= nYear && nYear <= 9999 && nMonth < 13 && nDay <= DaysOfMonth(nYear, nMonth);
}

std::strong_ordering ZylDate::operator<=>(const ZylDate& other) const {
    if (const auto order = nYear <=> other.nYear; order != 0) return order;
    if (const auto order = nMonth <=> other.nMonth; order != 0) return order;
    return nDay <=> other.nDay;
}

void ZylDate::fromTm(const tm& source) {
    nYear = static_cast<int16_t>(std::clamp<long long>(source.tm_year + 1900LL, INT16_MIN, INT16_MAX));
    nMonth = static_cast<uint8_t>(source.tm_mon + 1);
    nDay = static_cast<uint8_t>(source.tm_mday);
}

void ZylDate::toTm(tm& target) const {
    target.tm_year = nYear - 1900;
    target.tm_mon = nMonth - 1;
    target.tm_mday = nDay;
}

ZylTime::ZylTime(unsigned int packed) : nHour(LargeOf(packed)), nMin(MiddleOf(packed)), nSec(SmallOf(packed)) {}

ZylTime::operator unsigned int() const {
    return Pack(nHour, nMin, nSec);
}

bool ZylTime::isValid() const {
    return -999 <= nHour && nHour <= 999 && nMin < 60 && nSec < 60;
}

std::strong_ordering ZylTime::operator<=>(const ZylTime& other) const {
    if (const auto order = nHour <=> other.nHour; order != 0) return order;
    if (const auto order = nMin <=> other.nMin; order != 0) return order;
    return nSec <=> other.nSec;
}

void ZylTime::fromTm(const tm& source) {
    nHour = static_cast<int16_t>(source.tm_hour);
    nMin = static_cast<uint8_t>(source.tm_min);
    nSec = static_cast<uint8_t>(source.tm_sec);
}

void ZylTime::toTm(tm& target) const {
    target.tm_hour = nHour;
    target.tm_min = nMin;
    target.tm_sec = nSec;
}

ZylDateTime::ZylDateTime(unsigned long long packed)
    : date(static_cast<unsigned int>(packed)), time(static_cast<unsigned int>(packed >> 32)) {}

ZylDateTime::operator unsigned long long() const {
    const unsigned int low = date;
    const unsigned int high = time;
    return low | static_cast<unsigned long long>(high) << 32;
}

bool ZylDateTime::isValid() const {
    return date.isValid() && time.isValid();
}

std::strong_ordering ZylDateTime::operator<=>(const ZylDateTime& other) const {
    if (const auto order = date <=> other.date; order != 0) return order;
    return time <=> other.time;
}

void ZylDateTime::fromTm(const tm& source) {
    date.fromTm(source);
    time.fromTm(source);
}

void ZylDateTime::toTm(tm& target) const {
    date.toTm(target);
    time.toTm(target);
}

}  // namespace Quern
