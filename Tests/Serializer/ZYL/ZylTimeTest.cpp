#include "Serializer/ZYL/ZylTime.h"

#include <gtest/gtest.h>
#include <stdlib.h>

#include <climits>
#include <random>
#include <string>

#include "Serializer/ZYL/ZylBuf.h"
#include "Serializer/ZYL/ZylTypeUtil.h"

namespace Quern {
namespace {

void SetZone(const char* zone) {
    setenv("TZ", zone, 1);
    tzset();
}

TEST(ZylTimeTest, PackedFormsKeepEveryField) {
    EXPECT_EQ(static_cast<unsigned>(ZylDate(2024, 3, 5)), 0x050307E8u);
    EXPECT_EQ(static_cast<unsigned>(ZylTime(-1, 2, 3)), 0x0302FFFFu);
    EXPECT_EQ(static_cast<unsigned long long>(ZylDateTime(ZylDate(2024, 3, 5), ZylTime(-1, 2, 3))),
              0x0302FFFF050307E8ull);
    EXPECT_EQ(sizeof(ZylDate), 4u);
    EXPECT_EQ(sizeof(ZylTime), 4u);
    EXPECT_EQ(sizeof(ZylDateTime), 8u);
    for (unsigned packed : {0u, 0xFFFFFFFFu, 0x80008000u, 0x01028000u}) {
        EXPECT_EQ(static_cast<unsigned>(ZylDate(packed)), packed);
        EXPECT_EQ(static_cast<unsigned>(ZylTime(packed)), packed);
        const unsigned long long both = packed | static_cast<unsigned long long>(~packed) << 32;
        EXPECT_EQ(static_cast<unsigned long long>(ZylDateTime(both)), both);
    }
    EXPECT_EQ(ZylDate(0x01028000u).nYear, -32768);

    unsigned long long dateTime = 0x1111111122222222ull;
    ZylTypeUtil::zylSetDate2Datetime(dateTime, 0xFFFFFFFFu);
    EXPECT_EQ(dateTime, 0x11111111FFFFFFFFull);
    ZylTypeUtil::zylSetTime2Datetime(dateTime, 0x80000000u);
    EXPECT_EQ(dateTime, 0x80000000FFFFFFFFull);
}

TEST(ZylTimeTest, ValidityIsLenientOnlyWhereItIsMeantToBe) {
    for (const ZylDate& date :
         {ZylDate(2000, 2, 29), ZylDate(2024, 2, 29), ZylDate(1900, 2, 28), ZylDate(0, 0, 0), ZylDate(2023, 0, 31),
          ZylDate(2023, 4, 30), ZylDate(-9999, 1, 1), ZylDate(9999, 12, 31), ZylDate(-4, 2, 29), ZylDate(0, 2, 29)}) {
        EXPECT_TRUE(date.isValid()) << date.nYear << '-' << +date.nMonth << '-' << +date.nDay;
    }
    for (const ZylDate& date :
         {ZylDate(1900, 2, 29), ZylDate(2023, 2, 29), ZylDate(2000, 2, 30), ZylDate(2024, 13, 1), ZylDate(2024, 1, 32),
          ZylDate(2024, 0, 32), ZylDate(2024, 4, 31), ZylDate(2024, 6, 31), ZylDate(2024, 9, 31), ZylDate(2024, 11, 31),
          ZylDate(10000, 1, 1), ZylDate(-10000, 1, 1), ZylDate(-100, 2, 29)}) {
        EXPECT_FALSE(date.isValid()) << date.nYear << '-' << +date.nMonth << '-' << +date.nDay;
    }
    EXPECT_TRUE(ZylTime(-999, 59, 59).isValid());
    EXPECT_TRUE(ZylTime(999, 0, 0).isValid());
    for (const ZylTime& time : {ZylTime(1000, 0, 0), ZylTime(-1000, 0, 0), ZylTime(0, 60, 0), ZylTime(0, 0, 60)}) {
        EXPECT_FALSE(time.isValid());
    }
    EXPECT_TRUE(ZylDateTime(ZylDate(2024, 3, 5), ZylTime(0, 0, 0)).isValid());
    EXPECT_FALSE(ZylDateTime(ZylDate(2024, 3, 32), ZylTime(0, 0, 0)).isValid());
    EXPECT_FALSE(ZylDateTime(ZylDate(2024, 3, 5), ZylTime(0, 0, 60)).isValid());
}

TEST(ZylTimeTest, ComparesFieldByFieldFromTheLargest) {
    using U = ZylTypeUtil;
    EXPECT_EQ(U::compareZylTime(ZylTime(-1, 0, 0), ZylTime(0, 0, 0)), -1);
    EXPECT_EQ(U::compareZylTime(ZylTime(1, 59, 59), ZylTime(2, 0, 0)), -1);
    EXPECT_EQ(U::compareZylTime(ZylTime(-1, 30, 0), ZylTime(-1, 0, 0)), 1);
    EXPECT_EQ(U::compareZylTime(ZylTime(1, 2, 3), ZylTime(1, 2, 3)), 0);
    EXPECT_EQ(U::compareZylTime(ZylTime(1, 2, 4), ZylTime(1, 2, 3)), 1);
    EXPECT_EQ(U::compareZylDate(ZylDate(-1, 12, 31), ZylDate(1, 1, 1)), -1);
    EXPECT_EQ(U::compareZylDate(ZylDate(2024, 2, 1), ZylDate(2024, 1, 31)), 1);
    EXPECT_EQ(U::compareZylDate(ZylDate(2024, 2, 1), ZylDate(2024, 2, 1)), 0);
    const ZylDateTime noon(ZylDate(2024, 3, 5), ZylTime(12, 0, 0));
    EXPECT_EQ(U::compareZylDateTime(noon, ZylDateTime(noon.date, ZylTime(12, 0, 1))), -1);
    EXPECT_EQ(U::compareZylDateTime(noon, ZylDateTime(ZylDate(2024, 3, 4), ZylTime(23, 0, 0))), 1);
    EXPECT_EQ(U::compareZylDateTime(noon, noon), 0);
    EXPECT_GT(ZylDate(2024, 1, 1), ZylDate(2023, 12, 31)) << "the integer forms stand the other way round";
    EXPECT_GE(ZylTime(0, 0, 0), ZylTime(-1, 59, 0));
}

// The texts are made without printf; printf says what they have to be.
TEST(ZylTypeUtilTest, PrintsWhatPrintfWould) {
    std::mt19937 random(20240305);
    for (int i = 0; i < 20000; ++i) {
        const auto packed = static_cast<unsigned>(i < 10000 ? random() & 0x0F0F07FF : random());
        char date[32], time[32], both[80], text[64];
        snprintf(date, sizeof date, "%4d-%02d-%02d", ZylDate(packed).nYear, ZylDate(packed).nMonth,
                 ZylDate(packed).nDay);
        snprintf(time, sizeof time, "%02d:%02d:%02d", ZylTime(packed).nHour, ZylTime(packed).nMin,
                 ZylTime(packed).nSec);
        snprintf(both, sizeof both, "%s %s", date, time);
        ASSERT_EQ(ZylTypeUtil::zylDate2Str(text, sizeof text, packed), 0);
        ASSERT_STREQ(text, date);
        ASSERT_EQ(ZylTypeUtil::zylTime2Str(text, sizeof text, packed), 0);
        ASSERT_STREQ(text, time);
        const unsigned long long dateTime = packed | static_cast<unsigned long long>(packed) << 32;
        ASSERT_EQ(ZylTypeUtil::zylDateTime2Str(text, sizeof text, dateTime), 0);
        ASSERT_STREQ(text, both);
    }
    char text[16];
    EXPECT_EQ(ZylTypeUtil::zylDate2Str(text, sizeof text, ZylDate(-5, 1, 2)), 0);
    EXPECT_STREQ(text, "  -5-01-02");
    EXPECT_EQ(ZylTypeUtil::zylTime2Str(text, sizeof text, ZylTime(-1, 0, 0)), 0);
    EXPECT_STREQ(text, "-1:00:00");
    EXPECT_EQ(ZylTypeUtil::zylTime2Str(text, sizeof text, ZylTime(-999, 59, 59)), 0);
    EXPECT_STREQ(text, "-999:59:59");
}

TEST(ZylTypeUtilTest, TextsNeedRoomForTheirTerminator) {
    unsigned ip = 0;
    ASSERT_EQ(ZylTypeUtil::str2ZylIP(ip, "10.0.0.1"), 0);
    char text[64];
    // Each size up to and past what the text takes, in an array and in a buffer.
    const auto check = [&text](auto toArray, auto toBuffer, auto value, const std::string& expected) {
        for (size_t size = 0; size < 40; ++size) {
            const bool fits = size > expected.size();
            EXPECT_EQ(toArray(text, size, value), fits ? 0 : -1) << size;
            EXPECT_TRUE(!fits || expected == text);
            ZylWriteBuf dest(text, size);
            EXPECT_EQ(toBuffer(dest, value), fits ? 0 : -1) << size;
            EXPECT_EQ(dest.position, fits ? expected.size() : 0u);
            EXPECT_TRUE(!fits || expected == text);
        }
    };
    using Array = int (*)(char*, unsigned long, unsigned);
    using Buffer = int (*)(ZylWriteBuf&, unsigned);
    check(static_cast<Array>(&ZylTypeUtil::zylIp2Str), static_cast<Buffer>(&ZylTypeUtil::zylIp2Str), ip, "10.0.0.1");
    check(static_cast<Array>(&ZylTypeUtil::zylDate2Str), static_cast<Buffer>(&ZylTypeUtil::zylDate2Str),
          static_cast<unsigned>(ZylDate(2024, 3, 5)), "2024-03-05");
    check(static_cast<Array>(&ZylTypeUtil::zylTime2Str), static_cast<Buffer>(&ZylTypeUtil::zylTime2Str),
          static_cast<unsigned>(ZylTime(7, 8, 9)), "07:08:09");
    check(static_cast<int (*)(char*, unsigned long, unsigned long long)>(&ZylTypeUtil::zylDateTime2Str),
          static_cast<int (*)(ZylWriteBuf&, unsigned long long)>(&ZylTypeUtil::zylDateTime2Str),
          static_cast<unsigned long long>(ZylDateTime(ZylDate(2024, 3, 5), ZylTime(7, 8, 9))), "2024-03-05 07:08:09");

    memset(text, 'x', sizeof text);
    EXPECT_EQ(ZylTypeUtil::zylIp2Str(text, 20, ip), 0);
    EXPECT_EQ(text[19], '\0') << "the last byte is a terminator too";
    EXPECT_EQ(text[20], 'x');
}

TEST(ZylTypeUtilTest, ReadsStrictTexts) {
    unsigned value = 7;
    EXPECT_EQ(ZylTypeUtil::str2ZylDate(value, "2024-03-05"), 0);
    EXPECT_EQ(value, ZylDate(2024, 3, 5));
    EXPECT_EQ(ZylTypeUtil::str2ZylDate(value, "2024-3-5 and more"), 0);
    EXPECT_EQ(value, ZylDate(2024, 3, 5));
    EXPECT_EQ(ZylTypeUtil::str2ZylDate(value, "   1-12-31"), 0);
    EXPECT_EQ(value, ZylDate(1, 12, 31));
    EXPECT_EQ(ZylTypeUtil::str2ZylDate(value, "0000-01-01"), 0);
    EXPECT_EQ(value, ZylDate(0, 1, 1));
    value = 7;
    for (const char* bad : {"", "2024", "2024-03", "2024-03-", "2024-13-01", "2024-00-01", "2024-01-32", "2024-01-00",
                            "2023-02-29", "1900-02-29", "2024-04-31", "-1-01-01", "20245-01-01", "2024/01/01", "abc"}) {
        EXPECT_EQ(ZylTypeUtil::str2ZylDate(value, bad), -14) << bad;
    }
    EXPECT_EQ(value, 7u) << "a failed conversion leaves its target";

    EXPECT_EQ(ZylTypeUtil::str2ZylTime(value, "23:59:59"), 0);
    EXPECT_EQ(value, ZylTime(23, 59, 59));
    EXPECT_EQ(ZylTypeUtil::str2ZylTime(value, "1:2:3"), 0);
    EXPECT_EQ(value, ZylTime(1, 2, 3));
    for (const char* bad : {"", "24:00:00", "-1:00:00", "12:60:00", "12:00", "12:00:60", "12:00:61", "12:00:62"}) {
        EXPECT_EQ(ZylTypeUtil::str2ZylTime(value, bad), -13) << bad;
    }
    EXPECT_EQ(value, ZylTime(1, 2, 3));

    unsigned long long dateTime = 7;
    EXPECT_EQ(ZylTypeUtil::str2ZylDateTime(dateTime, "2024-02-29 01:02:03"), 0);
    EXPECT_EQ(dateTime, ZylDateTime(ZylDate(2024, 2, 29), ZylTime(1, 2, 3)));
    EXPECT_EQ(ZylTypeUtil::str2ZylDateTime(dateTime, "2024-2-9   1:2:3"), 0);
    EXPECT_EQ(dateTime, ZylDateTime(ZylDate(2024, 2, 9), ZylTime(1, 2, 3)));
    for (const char* bad : {"", "2024-02-29", "2023-02-29 01:02:03", "2024-02-29 01:02:60", "2024-02-29 25:02:00"}) {
        EXPECT_EQ(ZylTypeUtil::str2ZylDateTime(dateTime, bad), -15) << bad;
    }

    EXPECT_EQ(ZylTypeUtil::str2ZylIP(value, "255.0.10.1"), 0);
    const unsigned char bytes[] = {255, 0, 10, 1};
    EXPECT_EQ(memcmp(&value, bytes, sizeof bytes), 0) << "network byte order";
    for (const char* bad : {"", "1.2.3", "1.2.3.4.5", "256.1.1.1", "1.2.3.4 ", " 1.2.3.4", "1.2.3.", ".1.2.3", "1..2.3",
                            "01.2.3.4", "00.0.0.0", "1.2.3.0004", "1.2.3.1000", "::1", "a.b.c.d"}) {
        EXPECT_EQ(ZylTypeUtil::str2ZylIP(value, bad), -12) << bad;
    }
    EXPECT_EQ(memcmp(&value, bytes, sizeof bytes), 0);
}

TEST(ZylTypeUtilTest, EveryClockTextComesBack) {
    std::mt19937 random(7);
    for (int i = 0; i < 20000; ++i) {
        const ZylDate date(static_cast<int>(random() % 10000), static_cast<int>(1 + random() % 12),
                           static_cast<int>(1 + random() % 28));
        const ZylTime time(static_cast<int>(random() % 24), static_cast<int>(random() % 60),
                           static_cast<int>(random() % 60));
        const ZylDateTime dateTime(date, time);
        const auto ip = static_cast<unsigned>(random());
        char text[64];
        unsigned back = 0;
        unsigned long long longBack = 0;
        ASSERT_EQ(ZylTypeUtil::zylDate2Str(text, sizeof text, date), 0);
        ASSERT_EQ(ZylTypeUtil::str2ZylDate(back, text), 0) << text;
        ASSERT_EQ(back, date);
        ASSERT_EQ(ZylTypeUtil::zylTime2Str(text, sizeof text, time), 0);
        ASSERT_EQ(ZylTypeUtil::str2ZylTime(back, text), 0) << text;
        ASSERT_EQ(back, time);
        ASSERT_EQ(ZylTypeUtil::zylDateTime2Str(text, sizeof text, dateTime), 0);
        ASSERT_EQ(ZylTypeUtil::str2ZylDateTime(longBack, text), 0) << text;
        ASSERT_EQ(longBack, dateTime);
        ASSERT_EQ(ZylTypeUtil::zylIp2Str(text, sizeof text, ip), 0);
        ASSERT_EQ(ZylTypeUtil::str2ZylIP(back, text), 0) << text;
        ASSERT_EQ(back, ip);
    }
}

TEST(ZylTypeUtilTest, ConvertsToAndFromTheClock) {
    SetZone("UTC0");
    unsigned long long dateTime = 0;
    EXPECT_EQ(ZylTypeUtil::UTC2ZylDateTime(dateTime, 0), 0);
    EXPECT_EQ(dateTime, ZylDateTime(ZylDate(1970, 1, 1), ZylTime(0, 0, 0)));
    EXPECT_EQ(ZylTypeUtil::UTC2ZylDateTime(dateTime, -1), 0);
    EXPECT_EQ(dateTime, ZylDateTime(ZylDate(1969, 12, 31), ZylTime(23, 59, 59)));
    long utc = 7;
    EXPECT_EQ(ZylTypeUtil::zylDateTime2UTC(utc, dateTime), -15) << "looks like mktime's error";
    EXPECT_EQ(utc, 7);
    constexpr long kLastSecond = 253402300799;  // 9999-12-31 23:59:59
    EXPECT_EQ(ZylTypeUtil::UTC2ZylDateTime(dateTime, kLastSecond), 0);
    EXPECT_EQ(ZylTypeUtil::zylDateTime2UTC(utc, dateTime), 0);
    EXPECT_EQ(utc, kLastSecond);
    EXPECT_EQ(ZylTypeUtil::UTC2ZylDateTime(dateTime, kLastSecond + 1), -15);
    constexpr long kFirstSecond = -377705116800;  // -9999-01-01 00:00:00
    EXPECT_EQ(ZylTypeUtil::UTC2ZylDateTime(dateTime, kFirstSecond), 0);
    EXPECT_EQ(dateTime, ZylDateTime(ZylDate(-9999, 1, 1), ZylTime(0, 0, 0)));
    EXPECT_EQ(ZylTypeUtil::zylDateTime2UTC(utc, dateTime), 0);
    EXPECT_EQ(utc, kFirstSecond);
    EXPECT_EQ(ZylTypeUtil::UTC2ZylDateTime(dateTime, kFirstSecond - 1), -15);
    // The year 67456 has the low 16 bits of 1920; the year 2147483647 overflows when 1900 are added to it.
    EXPECT_EQ(ZylTypeUtil::UTC2ZylDateTime(dateTime, 2066500000000), -15);
    EXPECT_EQ(ZylTypeUtil::UTC2ZylDateTime(dateTime, 67767976233532799), -15);
    EXPECT_EQ(ZylTypeUtil::UTC2ZylDateTime(dateTime, LONG_MAX), -16);
    EXPECT_EQ(ZylTypeUtil::zylDateTime2UTC(utc, ZylDateTime(ZylDate(2023, 2, 29), ZylTime())), -15);
    // A negative hour reaches back into the day before.
    EXPECT_EQ(ZylTypeUtil::zylDateTime2UTC(utc, ZylDateTime(ZylDate(1970, 1, 2), ZylTime(-2, 0, 0))), 0);
    EXPECT_EQ(utc, 22 * 3600);

    SetZone("CET-1CEST,M3.5.0,M10.5.0/3");
    for (long moment : {1709658903L, 1720000000L, 1700000000L}) {  // winter, summer, winter
        EXPECT_EQ(ZylTypeUtil::UTC2ZylDateTime(dateTime, moment), 0);
        EXPECT_EQ(ZylTypeUtil::zylDateTime2UTC(utc, dateTime), 0);
        EXPECT_EQ(utc, moment);
    }
}

TEST(ZylTypeUtilTest, CountsUnits) {
    const unsigned short text[] = {0x41, 0xFFFF, 0, 0x42};
    EXPECT_EQ(ZylTypeUtil::wstrlen(text), 2u);
    EXPECT_EQ(ZylTypeUtil::wstrlen(text + 2), 0u);
}

TEST(ZylTypeUtilDeathTest, NullTextsEndTheProcess) {
    unsigned value = 0;
    unsigned long long longValue = 0;
    EXPECT_DEATH(ZylTypeUtil::str2ZylIP(value, nullptr), "NULL != pszIP");
    EXPECT_DEATH(ZylTypeUtil::str2ZylTime(value, nullptr), "NULL != pszTime");
    EXPECT_DEATH(ZylTypeUtil::str2ZylDate(value, nullptr), "NULL != pszDate\\)");
    EXPECT_DEATH(ZylTypeUtil::str2ZylDateTime(longValue, nullptr), "NULL != pszDateTime");
    EXPECT_DEATH(ZylTypeUtil::wstrlen(nullptr), "Assertion failed");
}

}  // namespace
}  // namespace Quern
