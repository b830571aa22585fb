#include "Serializer/ZYL/ZylTime.h"

#include "Serializer/ZYL/ZylBuf.h"
#include "Serializer/ZYL/ZylTypeUtil.h"
#include "Support/Test.h"

namespace Quern {
namespace {

using Util = ZylTypeUtil;

TEST(ZylTimeTest, PackedFormsKeepEveryField) {
    const ZylDateTime both(ZylDate(2024, 3, 5), ZylTime(-1, 2, 3));
    EXPECT_EQ(static_cast<unsigned long long>(both), 0x0302FFFF050307E8ull);
    EXPECT_TRUE(sizeof(ZylDate) == 4 && sizeof(ZylTime) == 4 && sizeof(ZylDateTime) == 8);
    for (unsigned long long packed : {0ull, ~0ull, 0x8000800001028000ull, 0x0102800080008000ull})
        EXPECT_EQ(static_cast<unsigned long long>(ZylDateTime(packed)), packed);
    EXPECT_EQ(ZylDate(0x01028000u).nYear, -32768);
    unsigned long long dateTime = 0x1111111122222222ull;
    Util::zylSetDate2Datetime(dateTime, 0xFFFFFFFFu);
    EXPECT_EQ(dateTime, 0x11111111FFFFFFFFull);
    Util::zylSetTime2Datetime(dateTime, 0x80000000u);
    EXPECT_EQ(dateTime, 0x80000000FFFFFFFFull);
}

TEST(ZylTimeTest, ValidityIsLenientOnlyWhereItIsMeantToBe) {
    for (const ZylDate& date :
         {ZylDate(2000, 2, 29), ZylDate(2024, 2, 29), ZylDate(1900, 2, 28), ZylDate(0, 0, 0), ZylDate(2023, 0, 31),
          ZylDate(2023, 4, 30), ZylDate(-9999, 1, 1), ZylDate(9999, 12, 31), ZylDate(-4, 2, 29)})
        EXPECT_TRUE(date.isValid()) << date.nYear << '-' << +date.nMonth << '-' << +date.nDay;
    for (const ZylDate& date :
         {ZylDate(1900, 2, 29), ZylDate(2023, 2, 29), ZylDate(2000, 2, 30), ZylDate(2024, 13, 1), ZylDate(2024, 1, 32),
          ZylDate(2024, 0, 32), ZylDate(2024, 4, 31), ZylDate(2024, 6, 31), ZylDate(2024, 9, 31), ZylDate(2024, 11, 31),
          ZylDate(10000, 1, 1), ZylDate(-10000, 1, 1), ZylDate(-100, 2, 29)})
        EXPECT_FALSE(date.isValid()) << date.nYear << '-' << +date.nMonth << '-' << +date.nDay;
    const ZylDate day(2024, 3, 5);
    for (const ZylTime& time : {ZylTime(-999, 59, 59), ZylTime(999, 0, 0)})
        EXPECT_TRUE(ZylDateTime(day, time).isValid());
    for (const ZylTime& time : {ZylTime(1000, 0, 0), ZylTime(-1000, 0, 0), ZylTime(0, 60, 0), ZylTime(0, 0, 60)})
        EXPECT_FALSE(ZylDateTime(day, time).isValid());
    EXPECT_FALSE(ZylDateTime(ZylDate(2024, 3, 32), ZylTime(0, 0, 0)).isValid());
}

TEST(ZylTimeTest, ComparesFieldByFieldFromTheLargest) {
    // Each in ascending order, which is not that of the integer forms.
    const ZylTime times[] = {{-2, 59, 59}, {-1, 0, 0}, {-1, 30, 0}, {0, 0, 0},
                             {1, 2, 3},    {1, 2, 4},  {1, 59, 59}, {2, 0, 0}};
    const ZylDate dates[] = {{-1, 12, 31}, {1, 1, 1}, {2023, 12, 31}, {2024, 1, 31}, {2024, 2, 1}, {2024, 2, 2}};
    const auto check = [](const auto& values, auto compare) {
        for (size_t i = 0; i < std::size(values); ++i) {
            for (size_t j = 0; j < std::size(values); ++j)
                EXPECT_EQ(compare(values[i], values[j]), i < j ? -1 : i > j ? 1 : 0) << i << ' ' << j;
        }
    };
    check(times, Util::compareZylTime);
    check(dates, Util::compareZylDate);
    const ZylDateTime both[] = {{dates[3], times[4]}, {dates[4], times[0]}, {dates[4], times[1]}};
    check(both, Util::compareZylDateTime);
}

// The texts are made without printf; printf says what they have to be, and how much room they need.
TEST(ZylTypeUtilTest, PrintsWhatPrintfWould) {
    std::mt19937_64 random(20240305);
    const auto check = [&random](auto toArray, auto toBuffer, auto value, const std::string& expected) {
        char text[64];
        const size_t size = expected.size() + random() % 2;
        ZylWriteBuf dest(text, size);
        const bool fits = size > expected.size();
        ASSERT_EQ(toBuffer(dest, value), fits ? 0 : -1);
        ASSERT_EQ(dest.position, fits ? size - 1 : 0u);
        ASSERT_TRUE(!fits || text == expected);
        ASSERT_EQ(toArray(text, size, value), fits ? 0 : -1);
        ASSERT_EQ(toArray(text, sizeof text, value), 0);
        ASSERT_EQ(text, expected);
    };
    using Array = int (*)(char*, unsigned long, unsigned);
    using Buffer = int (*)(ZylWriteBuf&, unsigned);
    const auto checkAll = [&check](const ZylDateTime& both) {
        char date[32], time[32], ip[32];
        snprintf(date, sizeof date, "%4d-%02d-%02d", both.date.nYear, both.date.nMonth, both.date.nDay);
        snprintf(time, sizeof time, "%02d:%02d:%02d", both.time.nHour, both.time.nMin, both.time.nSec);
        const unsigned packed = both.time;
        snprintf(ip, sizeof ip, "%u.%u.%u.%u", packed & 255, packed >> 8 & 255, packed >> 16 & 255, packed >> 24);
        check(Array{Util::zylDate2Str}, Buffer{Util::zylDate2Str}, both.date, date);
        check(Array{Util::zylTime2Str}, Buffer{Util::zylTime2Str}, both.time, time);
        using LongArray = int (*)(char*, unsigned long, unsigned long long);
        using LongBuffer = int (*)(ZylWriteBuf&, unsigned long long);
        check(LongArray{Util::zylDateTime2Str}, LongBuffer{Util::zylDateTime2Str}, both,
              std::string(date) + ' ' + time);
        check(Array{Util::zylIp2Str}, Buffer{Util::zylIp2Str}, packed, ip);
    };
    for (int hour : {-32768, -999, -100, -10, -1, 0, 9, 100, 32767})
        checkAll(ZylDateTime(ZylDate(hour, 1, 255), ZylTime(hour, 0, 99)));
    for (int i = 0; i < 20000; ++i)
        checkAll(ZylDateTime(random() & (i < 10000 ? 0x0F0F07FF0F0F07FF : ~0ull)));
    char text[64];
    memset(text, 'x', sizeof text);
    EXPECT_EQ(Util::zylIp2Str(text, 20, 0), 0);
    EXPECT_TRUE(text[19] == '\0' && text[20] == 'x') << "the last byte is a terminator too";
}

TEST(ZylTypeUtilTest, ReadsStrictTexts) {
    const auto check = [](auto read, const char* text, int code, auto expected) {
        decltype(expected) value = 7;
        EXPECT_EQ(read(value, text), code) << text;
        EXPECT_EQ(value, code == 0 ? expected : 7) << text << ": a failed conversion leaves its target";
    };
    check(Util::str2ZylDate, "2024-03-05", 0, unsigned{ZylDate(2024, 3, 5)});
    check(Util::str2ZylDate, "2024-3-5 and more", 0, unsigned{ZylDate(2024, 3, 5)});
    check(Util::str2ZylDate, "   1-12-31", 0, unsigned{ZylDate(1, 12, 31)});
    check(Util::str2ZylDate, "0000-01-01", 0, unsigned{ZylDate(0, 1, 1)});
    for (const char* bad : {"", "2024", "2024-03", "2024-03-", "2024-13-01", "2024-00-01", "2024-01-32", "2024-01-00",
                            "2023-02-29", "1900-02-29", "2024-04-31", "-1-01-01", "20245-01-01", "2024/01/01", "abc"})
        check(Util::str2ZylDate, bad, -14, 0u);
    check(Util::str2ZylTime, "23:59:59", 0, unsigned{ZylTime(23, 59, 59)});
    check(Util::str2ZylTime, "1:2:3", 0, unsigned{ZylTime(1, 2, 3)});
    for (const char* bad : {"", "24:00:00", "-1:00:00", "12:60:00", "12:00", "12:00:60", "12:00:61", "12:00:62"})
        check(Util::str2ZylTime, bad, -13, 0u);
    const ZylDateTime leapDay(ZylDate(2024, 2, 29), ZylTime(1, 2, 3));
    for (const char* good : {"2024-02-29 01:02:03", "2024-2-29   1:2:3"})
        check(Util::str2ZylDateTime, good, 0, static_cast<unsigned long long>(leapDay));
    for (const char* bad : {"", "2024-02-29", "2023-02-29 01:02:03", "2024-02-29 01:02:60", "2024-02-29 25:02:00"})
        check(Util::str2ZylDateTime, bad, -15, 0ull);
    check(Util::str2ZylIP, "255.0.10.1", 0, 0x010A00FFu);  // network byte order
    for (const char* bad : {"", "1.2.3", "1.2.3.4.5", "256.1.1.1", "1.2.3.4 ", " 1.2.3.4", "1.2.3.", ".1.2.3", "1..2.3",
                            "01.2.3.4", "00.0.0.0", "1.2.3.0004", "1.2.3.1000", "::1", "a.b.c.d"})
        check(Util::str2ZylIP, bad, -12, 0u);
    const unsigned short units[] = {0x41, 0xFFFF, 0, 0x42};
    EXPECT_TRUE(Util::wstrlen(units) == 2 && Util::wstrlen(units + 2) == 0);
}

TEST(ZylTypeUtilTest, ConvertsToAndFromTheClock) {
    const auto setZone = [](const char* zone) {
        setenv("TZ", zone, 1);
        tzset();
    };
    unsigned long long dateTime = 0;
    long utc = 7;
    setZone("UTC0");
    const std::pair<long, ZylDateTime> pairs[] = {{0, {ZylDate(1970, 1, 1), ZylTime(0, 0, 0)}},
                                                  {253402300799, {ZylDate(9999, 12, 31), ZylTime(23, 59, 59)}},
                                                  {-377705116800, {ZylDate(-9999, 1, 1), ZylTime(0, 0, 0)}}};
    for (const auto& [moment, expected] : pairs) {
        EXPECT_EQ(Util::UTC2ZylDateTime(dateTime, moment), 0);
        EXPECT_EQ(dateTime, expected);
        EXPECT_EQ(Util::zylDateTime2UTC(utc, dateTime), 0);
        EXPECT_EQ(utc, moment);
    }
    // The year 67456 has the low 16 bits of 1920; the year 2147483647 overflows when 1900 are added to it.
    for (long beyond : {253402300800, -377705116801, 2066500000000, 67767976233532799})
        EXPECT_EQ(Util::UTC2ZylDateTime(dateTime, beyond), -15);
    EXPECT_EQ(Util::UTC2ZylDateTime(dateTime, LONG_MAX), -16);
    EXPECT_EQ(Util::UTC2ZylDateTime(dateTime, -1), 0);
    utc = 7;
    EXPECT_EQ(Util::zylDateTime2UTC(utc, dateTime), -15) << "looks like mktime's error";
    EXPECT_EQ(Util::zylDateTime2UTC(utc, ZylDateTime(ZylDate(2023, 2, 29), ZylTime())), -15);
    EXPECT_EQ(utc, 7);
    // A negative hour reaches back into the day before.
    EXPECT_EQ(Util::zylDateTime2UTC(utc, ZylDateTime(ZylDate(1970, 1, 2), ZylTime(-2, 0, 0))), 0);
    EXPECT_EQ(utc, 22 * 3600);

    setZone("CET-1CEST,M3.5.0,M10.5.0/3");
    for (long moment : {1709658903L, 1720000000L, 1700000000L}) {  // winter, summer, winter
        EXPECT_EQ(Util::UTC2ZylDateTime(dateTime, moment), 0);
        EXPECT_EQ(Util::zylDateTime2UTC(utc, dateTime), 0);
        EXPECT_EQ(utc, moment);
    }
}

}  // namespace
}  // namespace Quern
