#include "Storage/Log/LogCrypt.h"

#include "Support/LogRecords.h"
#include "Support/Test.h"

namespace Quern {
namespace {

using OrvaneTest::TestPublicKeyDigits;

TEST(LogCrypt, OnlyAPointOfTheCurveInSoManyDigitsMakesAKey) {
    const std::string& digits = TestPublicKeyDigits();
    std::string lower = digits;
    std::transform(lower.begin(), lower.end(), lower.begin(), tolower);
    EXPECT_TRUE(LogCrypt(digits.c_str()).HasKey());
    EXPECT_TRUE(LogCrypt(lower.c_str()).HasKey());
    EXPECT_FALSE(LogCrypt(nullptr).HasKey());
    const std::string rest = digits.substr(1), notOnTheCurve(128, '1');
    for (const std::string& wrong : {std::string(), rest, digits + "0", "g" + rest, notOnTheCurve})
        EXPECT_FALSE(LogCrypt(wrong.c_str()).HasKey()) << wrong;
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

TEST(LogCrypt, TwoMagicsTellTheirHours) {
    uint8_t header[73] = {};
    int begin, end;
    for (const uint8_t magic : {6, 7, 8, 9}) {
        header[0] = magic;
        EXPECT_EQ(LogCrypt::GetLogHour(header, sizeof header, begin, end), magic < 8) << magic;
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

// Where the records of these hours begin and end in a file; else why there are none.
std::string Period(const std::string& content, int beginHour, int endHour) {
    const std::string path = OrvaneTest::CacheFolder() + "/period.xlog";
    OrvaneTest::WriteFile(path, content);
    unsigned long begin = 99, end = 99;
    std::string error;
    return LogCrypt::GetPeriodLogs(path.c_str(), beginHour, endHour, begin, end, error)
               ? std::to_string(begin) + " to " + std::to_string(end)
               : error;
}

TEST(GetPeriodLogs, FindsTheRecordsOfItsHours) {
    const std::string one = Record(7, 8, 8, 10), two = Record(7, 9, 10, 300), three = Record(6, 12, 12, 5);
    const std::string file = one + two + three;
    EXPECT_EQ(Period(file, 9, 11), "84 to 458") << "ends behind the record before the first one past the period";
    EXPECT_EQ(Period(file, 10, 23), "84 to 537")
        << "a record that reaches into the period belongs to it; none reaches the end hour, so the file's end it is";
    EXPECT_EQ(Period(file, 8, 10), "0 to 458");
    EXPECT_EQ(Period(Record(7, 15, 11, 1) + three, 11, 12), "0 to 75")
        << "a begin hour above the end hour counts as the end hour";
}

TEST(GetPeriodLogs, SkipsDamageByteByByte) {
    const std::string garbage("\x07\x09\x06\xFF garbage \x08 with magics in it", 30);
    // Hours that are no magics themselves: inside a damaged record every byte is tried.
    std::string one = Record(7, 3, 3, 20), openTail = Record(7, 3, 3, 4), hostile = openTail;
    openTail.back() = 'x';
    EXPECT_EQ(Period(garbage + openTail + one + garbage, 3, 4), "108 to 232");
    memset(hostile.data() + 5, 0xFF, 4);
    EXPECT_EQ(Period(hostile + one, 3, 4), "78 to 172");
}

TEST(GetPeriodLogs, SaysWhyItFoundNothing) {
    EXPECT_EQ(Period(Record(9, 9, 9, 4), 9, 10),
              "__GetLogHour(buff.Ptr(), buff.Length(), beginHour, endHour) err, before_len:0."
              "begintpos:0, endpos:0, filesize:78.");
    EXPECT_EQ(Period("", 9, 10),
              "ftell(file) + __GetHeaderLen() + sizeof(kMagicEnd)) > file_size error"
              "begintpos:0, endpos:0, filesize:0.");
    EXPECT_EQ(Period(Record(7, 9, 9, 4), 10, 10), "");
    unsigned long begin, end;
    std::string error;
    EXPECT_FALSE(LogCrypt::GetPeriodLogs("/nowhere/at.all", 1, 2, begin, end, error));
    EXPECT_EQ(error, "open file fail:No such file or directory");
    EXPECT_FALSE(LogCrypt::GetPeriodLogs(nullptr, 1, 2, begin, end, error));
}

}  // namespace
}  // namespace Quern
