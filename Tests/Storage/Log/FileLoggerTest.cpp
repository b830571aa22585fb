#include "Storage/Log/FileLogger.h"

#include "Storage/Log/BlockJournal.h"
#include "Support/Test.h"

namespace Quern {
namespace {

using namespace OrvaneTest;
namespace fs = std::filesystem;

class FileLoggerTest : public ::testing::Test {
protected:
    FileLoggerTest() { CacheFolder(); }
    static void Append(AFileLogger& logger, const std::string& data) { logger.Log2File(data.data(), data.size()); }

    CapturedConsole console;
};

TEST_F(FileLoggerTest, NamesFilesByModuleAndHour) {
    const std::string longest(109, 'm'), tooLong(110, 'm');
    for (const auto& [module, expected] : {std::pair{longest, longest}, std::pair{tooLong, std::string("Quern")}}) {
        AFileLogger sync(module.c_str(), kAppendSync, 0, kLogStartOver);
        AFileLogger async(module.c_str(), kAppendAsync, 0, kLogStartOver);
        sync.LogToFile("line\n");
        Append(async, "record");
        EXPECT_THAT(FilesIn(LogFolder(module)), ElementsAre(MatchesRegex(expected + "_[0-9]{10}\\.log"),
                                                            MatchesRegex(expected + "_[0-9]{10}\\.xlog")));
    }
}

TEST_F(FileLoggerTest, AsyncDataIsThereAtOnceAndSyncDataWhenTheStreamPassesItOn) {
    AFileLogger async("Async", kAppendAsync, 0, kLogStartOver);
    Append(async, "one");
    EXPECT_EQ(ReadLogFiles("Async"), "one");
    Append(async, "two");
    EXPECT_EQ(ReadLogFiles("Async"), "onetwo");
    Append(async, "");
    async.Log2File(nullptr, 5);
    async.LogToFile(nullptr);
    EXPECT_EQ(ReadLogFiles("Async"), "onetwo");
    {
        AFileLogger sync("Sync", kAppendSync, 0, kLogStartOver);
        sync.LogToFile("buffered\n");
        EXPECT_EQ(ReadLogFiles("Sync"), "");
    }
    EXPECT_EQ(ReadLogFiles("Sync"), "buffered\n");
}

TEST_F(FileLoggerTest, AFolderOrFileThatIsTakenAwayComesBack) {
    for (const TAppenderMode mode : {kAppendSync, kAppendAsync}) {
        {
            AFileLogger logger("Back", mode, 0, kLogStartOver);
            Append(logger, "one");
            fs::remove_all(CacheFolder() + "/OrvaneSDKLog");
            Append(logger, "two");
            for (const std::string& name : FilesIn(LogFolder("Back")))
                fs::remove(LogFolder("Back") + "/" + name);
            Append(logger, "three");
        }
        EXPECT_EQ(ReadLogFiles("Back"), "three");
    }
    EXPECT_EQ(console.Count(), 0);
}

// The open file does not tell that a folder above it has been renamed.
TEST_F(FileLoggerTest, AFolderThatIsTakenAwayAtTheTurnOfAnHourComesBack) {
    const std::string all = CacheFolder() + "/OrvaneSDKLog";
    {
        AFileLogger logger("Turn", kAppendSync, 0, kLogStartOver);
        int zone = 0;
        // A thread of its own breaks the time down anew, in a zone in which it is an hour later.
        const auto appendAnHourLater = [&](const std::string& data) {
            setenv("TZ", ("UTC-" + std::to_string(zone++)).c_str(), 1);
            std::thread([&] { Append(logger, data); }).join();
        };
        appendAnHourLater("one");
        fs::rename(all, all + ".old");
        appendAnHourLater("two");
        fs::rename(all, all + ".later");
        WriteFile(all, "a file in the folder's place");
        appendAnHourLater("lost");
        fs::remove(all);
        --zone;
        appendAnHourLater("three");
    }
    EXPECT_EQ(ReadFile(all + ".later/Turn/" + FilesIn(all + ".later/Turn").at(0)), "two");
    EXPECT_EQ(ReadLogFiles("Turn"), "three");
}

TEST_F(FileLoggerTest, SaysOnTheConsoleWhatItCannotMakeAndTriesAgain) {
    WriteFile(CacheFolder() + "/OrvaneSDKLog", "a file in the folder's place");
    AFileLogger logger("Blocked", kAppendAsync, 0, kLogStartOver);
    Append(logger, "lost");
    EXPECT_EQ(console.Count("CreatePath " + LogFolder("Blocked") + " failed!"), 1);
    fs::remove(CacheFolder() + "/OrvaneSDKLog");
    fs::create_directories(CacheFolder() + "/OrvaneSDKLog");
    WriteFile(LogFolder("Blocked"), "and here");
    Append(logger, "lost");
    EXPECT_EQ(console.Count("Failed to Open log files"), 1);
    EXPECT_EQ(console.Count("| OpenLogFile failed!"), 1);
    fs::remove(LogFolder("Blocked"));
    Append(logger, "kept");
    EXPECT_EQ(ReadLogFiles("Blocked"), "kept");
}

TEST_F(FileLoggerTest, SizeLimitsWithBothExceedOps) {
    const std::string mebibyte(1 << 20, 'a');
    AFileLogger drops("Drops", kAppendAsync, 1, kLogDrop);
    Append(drops, mebibyte);
    Append(drops, "b");  // the limit itself is not above the limit
    EXPECT_EQ(ReadLogFiles("Drops").size(), mebibyte.size() + 1);
    Append(drops, "c");
    EXPECT_EQ(ReadLogFiles("Drops").size(), mebibyte.size() + 1);
    EXPECT_EQ(console.Count("| Info | [OrvaneCore] |"), 1);
    EXPECT_EQ(console.Count("| _logFile size exceed return"), 1);

    AFileLogger startsOver("StartsOver", kAppendAsync, 1, kLogStartOver);
    Append(startsOver, mebibyte);
    Append(startsOver, "b");
    Append(startsOver, "c");
    EXPECT_EQ(ReadLogFiles("StartsOver"), "c");

    for (const int limit : {0, -1}) {
        AFileLogger noLimit("NoLimit", kAppendAsync, limit, kLogDrop);
        Append(noLimit, mebibyte);
        Append(noLimit, "b");
    }
    EXPECT_EQ(ReadLogFiles("NoLimit").size(), 2 * mebibyte.size() + 2);
    AFileLogger otherOp("OtherOp", kAppendAsync, 1, static_cast<LogExceedOp>(2));
    Append(otherOp, mebibyte + "b");
    Append(otherOp, "c");
    EXPECT_EQ(ReadLogFiles("OtherOp").size(), mebibyte.size() + 2);
}

TEST_F(FileLoggerTest, ADropLeavesNothingBehindThatTheJournalWouldNotLearn) {
    AFileLogger logger("Told", kAppendAsync, 1, kLogDrop);
    Append(logger, std::string((1 << 20) + 1, 'a'));
    Append(logger, "dropped");
    const std::string name = FilesIn(LogFolder("Told")).at(0);
    fs::resize_file(LogFolder("Told") + "/" + name, 3);  // as who rotates files by copying does
    std::vector<uint8_t> memory(sizeof(BlockJournalLayout));
    BlockJournal journal(memory.data());
    logger.Log2File("kept", 4, &journal);
    EXPECT_EQ(ReadLogFiles("Told"), "aaakept");
    const auto* layout = reinterpret_cast<const BlockJournalLayout*>(memory.data());
    EXPECT_EQ(layout->fileName, name);
    EXPECT_EQ(layout->fileOffset, 3);
}

TEST_F(FileLoggerTest, WithinAnHourASyncFileThatStartsOverCostsTheLineThatFindsItTooLong) {
    AFileLogger logger("Rare", kAppendSync, 1, kLogStartOver);
    Append(logger, std::string((1 << 20) + 1, 'a'));
    Append(logger, "lost\n");
    EXPECT_EQ(console.Count("Failed to Open log files"), 1);
    EXPECT_EQ(console.Count("| OpenLogFile failed!"), 1);
    EXPECT_THAT(FilesIn(LogFolder("Rare")), IsEmpty());
    Append(logger, "kept\n");
    EXPECT_EQ(FilesIn(LogFolder("Rare")).size(), 1u);
}

TEST_F(FileLoggerTest, AFileThatIsTooLongAndCannotBeRemovedCostsTheDataOfThatCallAlone) {
    AFileLogger logger("Stuck", kAppendSync, 1, kLogStartOver);
    Append(logger, std::string((1 << 20) + 1, 'a'));
    const std::string path = LogFolder("Stuck") + "/" + FilesIn(LogFolder("Stuck")).at(0);
    fs::remove(path);
    WriteFile(path + "/in the way", "a folder in the file's place");
    Append(logger, "lost\n");
    EXPECT_EQ(console.Count("| _logFile is null or file not exist"), 1);
    fs::remove_all(path);
    Append(logger, "kept\n");
    EXPECT_EQ(FilesIn(LogFolder("Stuck")).size(), 1u);
}

std::string NameOf(const std::string& module, int hoursAgo, const std::string& ext) {
    const time_t then = time(nullptr) - hoursAgo * 3600;
    tm local = *localtime(&then);
    char stamp[32];
    strftime(stamp, sizeof stamp, "%Y%m%d%H", &local);
    return module + "_" + stamp + "." + ext;
}

TEST_F(FileLoggerTest, StampsAreReadFromNamesAndNothingElse) {
    tm local{};
    local.tm_year = 126;
    local.tm_mon = 2;
    local.tm_mday = 4;
    local.tm_hour = 5;
    EXPECT_EQ(GetLogFileTimeStamp("Any_2026030405.log"), mktime(&local));
    EXPECT_EQ(GetLogFileTimeStamp("_2026030405.xlog"), mktime(&local));
    for (const char* invalid :
         {"nounderscore.log", "two_under_2026030405.log", "M_2026030405", "M_2026030405.log.gz", "M_2026030405.txt",
          "M_202603040.log", "M_20260304055.log", "M_2026o30405.log", "M_.log", "_", ""})
        EXPECT_EQ(GetLogFileTimeStamp(invalid), 0) << invalid;
    EXPECT_EQ(GetLogFileTimeStamp(nullptr), 0);
    EXPECT_EQ(console.Count("logFile is invalid "), 6);
    EXPECT_EQ(console.Count("logFile Ext is invalid M_2026030405.txt , ext txt"), 1);
    EXPECT_EQ(console.Count("logTime is invalid "), 4);
    EXPECT_TRUE(isDigits("0123456789"));
    EXPECT_FALSE(isDigits("12a"));
}

TEST_F(FileLoggerTest, TheSweepTakesTheCountFirstAndThenTheAge) {
    const auto fill = [](const std::string& module) {
        for (const int age : {1, 5, 20, 300})
            WriteFile(LogFolder(module) + "/" + NameOf(module, age, age == 5 ? "log" : "xlog"), "x");
        WriteFile(LogFolder(module) + "/stray", "x");
        WriteFile(LogFolder(module) + "/" + NameOf(module, 0, "txt"), "x");
    };
    fill("Aged");
    AFileLogger::RemoveOldLogFiles("Aged", 10, -1);
    EXPECT_THAT(FilesIn(LogFolder("Aged")), ElementsAre(NameOf("Aged", 5, "log"), NameOf("Aged", 1, "xlog")));
    EXPECT_EQ(console.Count("RemoveOldLog log fileName "), 4);

    fill("Counted");
    AFileLogger::RemoveOldLogFiles("Counted", 10, 3);
    EXPECT_THAT(FilesIn(LogFolder("Counted")), ElementsAre(NameOf("Counted", 5, "log"), NameOf("Counted", 1, "xlog")));
    EXPECT_EQ(console.Count("RemoveOldLog log fileName "), 5) << "three went by count, silently, and one by age";

    AFileLogger::RemoveOldLogFiles("Counted", 10000, 0);
    EXPECT_THAT(FilesIn(LogFolder("Counted")), IsEmpty());
    AFileLogger::RemoveOldLogFiles("Never", 0, 0);
    AFileLogger::RemoveOldLogFiles(nullptr, 0, 0);

    fill("With_underscore");
    AFileLogger::RemoveOldLogFiles("With_underscore", 10000, -1);
    EXPECT_THAT(FilesIn(LogFolder("With_underscore")), IsEmpty())
        << "a module's own underscore makes its files invalid";
}

}  // namespace
}  // namespace Quern
