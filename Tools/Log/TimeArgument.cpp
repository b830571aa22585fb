#include "Log/TimeArgument.h"

#include <algorithm>
#include <charconv>
#include <initializer_list>
#include <string>

namespace OrvaneLog {
namespace {

LocalStamp StampOf(const tm& local, int milliseconds) {
    LocalStamp stamp = 0;
    const auto append = [&stamp](int digits, int value) {
        for (int i = 0; i < digits; ++i)
            stamp *= 10;
        stamp += static_cast<LocalStamp>(value);
    };
    append(4, local.tm_year + 1900);
    append(2, local.tm_mon + 1);
    append(2, local.tm_mday);
    append(2, local.tm_hour);
    append(2, local.tm_min);
    append(2, local.tm_sec);
    append(3, milliseconds);
    return stamp;
}

bool ParseRelative(std::string_view text, time_t now, LocalStamp& stamp) {
    if (text.size() < 3 || text[0] != '-') return false;
    long long count = 0;
    const char* const end = text.data() + text.size() - 1;
    const auto [stop, failure] = std::from_chars(text.data() + 1, end, count);
    if (failure != std::errc() || stop != end || count < 0 || count > 1'000'000'000) return false;
    long long unit = 0;
    switch (text.back()) {
        case 's':
            unit = 1;
            break;
        case 'm':
            unit = 60;
            break;
        case 'h':
            unit = 3600;
            break;
        case 'd':
            unit = 86400;
            break;
        default:
            return false;
    }
    const time_t then = now - static_cast<time_t>(count * unit);
    tm local;
    if (then < 0 || !localtime_r(&then, &local)) return false;
    stamp = StampOf(local, 0);
    return true;
}

// Reads `text` by a format of "9" for a digit and other characters for themselves, into one number for each group.
bool Match(std::string_view text, std::string_view format, int* groups) {
    if (text.size() != format.size()) return false;
    bool inGroup = false;
    size_t next = 0;
    for (size_t i = 0; i < format.size(); ++i) {
        if (format[i] != '9') {
            if (text[i] != format[i]) return false;
            inGroup = false;
            continue;
        }
        if (text[i] < '0' || text[i] > '9') return false;
        if (!inGroup) groups[next++] = 0;
        inGroup = true;
        groups[next - 1] = groups[next - 1] * 10 + (text[i] - '0');
    }
    return true;
}

bool IsDate(int year, int month, int day) {
    static constexpr int kDays[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    if (month < 1 || month > 12 || day < 1) return false;
    const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return day <= kDays[month - 1] + (month == 2 && leap ? 1 : 0);
}

}  // namespace

bool ParseTimeArgument(std::string_view text, time_t now, LocalStamp& stamp) {
    if (text.starts_with('-')) return ParseRelative(text, now, stamp);
    std::string plain(text);
    if (plain.size() > 2 && plain.front() == '[' && plain.back() == ']') plain = plain.substr(1, plain.size() - 2);
    if (plain.size() > 10 && plain[10] == 'T') plain[10] = ' ';
    tm local;
    if (!localtime_r(&now, &local)) return false;
    int date[3] = {local.tm_year + 1900, local.tm_mon + 1, local.tm_mday};
    int whole[7] = {};  // the last for milliseconds
    int* const clock = whole + 3;
    const auto matches = [&plain](std::initializer_list<const char*> formats, int* groups) {
        return std::any_of(formats.begin(), formats.end(),
                           [&](const char* format) { return Match(plain, format, groups); });
    };
    if (matches({"99:99", "99:99:99", "99:99:99 999", "99:99:99.999"}, clock)) {
        std::copy(date, date + 3, whole);
    } else if (!matches({"9999-99-99", "9999-99-99 99:99", "9999-99-99 99:99:99", "9999-99-99 99:99:99 999",
                         "9999-99-99 99:99:99.999"},
                        whole)) {
        return false;
    }
    if (!IsDate(whole[0], whole[1], whole[2]) || clock[0] > 23 || clock[1] > 59 || clock[2] > 60) return false;
    local.tm_year = whole[0] - 1900;
    local.tm_mon = whole[1] - 1;
    local.tm_mday = whole[2];
    local.tm_hour = clock[0];
    local.tm_min = clock[1];
    local.tm_sec = clock[2];
    stamp = StampOf(local, whole[6]);
    return true;
}

}  // namespace OrvaneLog
