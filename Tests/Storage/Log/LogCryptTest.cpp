#include "Storage/Log/LogCrypt.h"

#include "Support/LogRecords.h"
#include "Support/Test.h"
#include "Support/TestContainer.h"

namespace Quern {
namespace {

using OrvaneTest::TestPublicKeyDigits;

TEST(LogCrypt, OnlyAPointOfTheCurveInSoManyDigitsMakesAKey) {
    const std::string& digits = TestPublicKeyDigits();
    std::string lower = digits;
    for (char& c : lower)
        c = static_cast<char>(tolower(c));
    EXPECT_TRUE(LogCrypt(digits.c_str()).HasKey());
    EXPECT_TRUE(LogCrypt(lower.c_str()).HasKey());
    EXPECT_FALSE(LogCrypt(nullptr).HasKey());
    EXPECT_FALSE(LogCrypt("").HasKey());
    EXPECT_FALSE(LogCrypt(digits.substr(1).c_str()).HasKey());
    EXPECT_FALSE(LogCrypt((digits + "0").c_str()).HasKey());
    EXPECT_FALSE(LogCrypt(("g" + digits.substr(1)).c_str()).HasKey());
    EXPECT_FALSE(LogCrypt(std::string(128, '1').c_str()).HasKey()) << "not on the curve";
}

TEST(LogCrypt, SequenceNumbersSkipZeroAtTheWrap) {
    LogCrypt crypt("");
    uint8_t header[73] = {};
    for (int i = 1; i <= 65535; ++i)
        ASSERT_EQ(crypt.GetSeq(true), i);
    EXPECT_EQ(crypt.GetSeq(false), 0);
    crypt.SetHeaderInfo(header, true);
    EXPECT_EQ(header[1] | header[2] << 8, 1);
    EXPECT_EQ(crypt.LastSeq(), 1);
    crypt.SetHeaderInfo(header, false);
    EXPECT_EQ(header[1] | header[2] << 8, 0);
    EXPECT_EQ(crypt.GetSeq(true), 2) << "a plain record takes no number";
}

TEST(LogCrypt, MagicsAndHours) {
    uint8_t header[73] = {};
    int begin, end;
    for (const bool hasKey : {false, true}) {
        LogCrypt crypt(hasKey ? TestPublicKeyDigits().c_str() : "");
        for (const bool compress : {false, true}) {
            crypt.SetHeaderInfo(header, compress);
            EXPECT_EQ(header[0], (hasKey ? 6 : 8) + (compress ? 1 : 0));
            EXPECT_EQ(LogCrypt::GetLogHour(header, sizeof header, begin, end), hasKey) << "8 and 9 tell no hours";
        }
    }
    header[0] = 7;
    header[3] = 0xFF;
    EXPECT_TRUE(LogCrypt::GetLogHour(header, sizeof header, begin, end));
    EXPECT_EQ(begin, -1) << "hours are signed bytes";
    EXPECT_FALSE(LogCrypt::GetLogHour(header, 72, begin, end));
    EXPECT_EQ(LogCrypt::GetLogLen(header, 72), 0u);
    EXPECT_EQ(LogCrypt::GetLogLen(nullptr, 100), 0u);
}

// A record of a chosen kind and hours with a payload of zeros.
std::string Record(int magic, int begin, int end, size_t length) {
    std::string record(74 + length, '\0');
    record[0] = static_cast<char>(magic);
    record[3] = static_cast<char>(begin);
    record[4] = static_cast<char>(end);
    record[5] = static_cast<char>(length);
    record[6] = static_cast<char>(length >> 8);
    return record;
}

struct Range {
    bool found;
    unsigned long begin, end;
    std::string error;
};

Range Period(const std::string& content, int beginHour, int endHour) {
    const std::string path = OrvaneTest::CacheFolder() + "/period.xlog";
    OrvaneTest::WriteFile(path, content);
    Range range{false, 99, 99, ""};
    range.found = LogCrypt::GetPeriodLogs(path.c_str(), beginHour, endHour, range.begin, range.end, range.error);
    return range;
}

TEST(GetPeriodLogs, FindsTheRecordsOfItsHours) {
    const std::string one = Record(7, 8, 8, 10), two = Record(7, 9, 10, 300), three = Record(6, 12, 12, 5);
    const std::string file = one + two + three;

    Range range = Period(file, 9, 11);
    EXPECT_TRUE(range.found);
    EXPECT_EQ(range.begin, one.size());
    EXPECT_EQ(range.end, one.size() + two.size()) << "ends behind the record before the first one past the period";

    range = Period(file, 10, 23);
    EXPECT_TRUE(range.found);
    EXPECT_EQ(range.begin, one.size()) << "a record that reaches into the period belongs to it";
    EXPECT_EQ(range.end, file.size()) << "no record reaches the end hour, so the file's end it is";

    range = Period(file, 8, 10);
    EXPECT_EQ(range.begin, 0u);
    EXPECT_EQ(range.end, one.size() + two.size());

    range = Period(Record(7, 15, 11, 1) + three, 11, 12);
    EXPECT_TRUE(range.found) << "a begin hour above the end hour counts as the end hour";
    EXPECT_EQ(range.end, 75u);
}

TEST(GetPeriodLogs, SkipsDamageByteByByte) {
    const std::string garbage("\x07\x09\x06\xFF garbage \x08 with magics in it", 30);
    const std::string one = Record(7, 3, 3, 20);
    // Hours that are no magics themselves: inside a damaged record every byte is tried.
    std::string openTail = Record(7, 3, 3, 4);
    openTail.back() = 'x';
    const std::string before = garbage + openTail;
    Range range = Period(before + one + garbage, 3, 4);
    EXPECT_TRUE(range.found) << range.error;
    EXPECT_EQ(range.begin, before.size());
    EXPECT_EQ(range.end, (before + one + garbage).size());

    std::string hostile = Record(7, 3, 3, 4);
    memset(hostile.data() + 5, 0xFF, 4);
    range = Period(hostile + one, 3, 4);
    EXPECT_EQ(range.begin, hostile.size());
}

TEST(GetPeriodLogs, SaysWhyItFoundNothing) {
    Range range = Period(Record(9, 9, 9, 4), 9, 10);
    EXPECT_FALSE(range.found);
    EXPECT_EQ(range.error,
              "__GetLogHour(buff.Ptr(), buff.Length(), beginHour, endHour) err, before_len:0."
              "begintpos:0, endpos:0, filesize:78.");
    range = Period("", 9, 10);
    EXPECT_EQ(range.error,
              "ftell(file) + __GetHeaderLen() + sizeof(kMagicEnd)) > file_size error"
              "begintpos:0, endpos:0, filesize:0.");
    EXPECT_FALSE(Period(Record(7, 9, 9, 4), 10, 10).found);

    unsigned long begin, end;
    std::string error;
    EXPECT_FALSE(LogCrypt::GetPeriodLogs("/nowhere/at.all", 1, 2, begin, end, error));
    EXPECT_EQ(error, "open file fail:No such file or directory");
    EXPECT_FALSE(LogCrypt::GetPeriodLogs(nullptr, 1, 2, begin, end, error));
}

}  // namespace
}  // namespace Quern
