#include "Storage/Log/Logger.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <map>
#include <regex>
#include <thread>

#include "PluginManager/InnerPlugin/OrvaneCoreLogService.h"
#include "PluginManager/PluginManager.h"
#include "Storage/Log/GameLog.h"
#include "Storage/Log/SDKLog.h"
#include "Storage/Log/StageLog.h"
#include "Support/FakeConfigure.h"
#include "Support/RecordDecoder.h"
#include "Support/TestContainer.h"
#include "Support/ThreadedConsole.h"
#include "Support/WaitFor.h"
#include "System/Application/OrvaneAppLifecycle.h"

namespace Quern {
namespace {

using namespace OrvaneTest;
using ::testing::ElementsAre;

const char* const kDevelopmentKeyFile = ORVANE_SOURCE_DIR "/Examples/Keys/development-log.key";

CurvePrivateKey DevelopmentKey() {
    CurvePrivateKey key{};
    EXPECT_TRUE(HexToBuffer(ReadFile(kDevelopmentKeyFile).c_str(), key.data(), key.size()));
    return key;
}

class LoggerTest : public ::testing::Test {
protected:
    LoggerTest() : console(ThreadedConsole::Install()) {
        CacheFolder();
        Foreground();
    }
    ~LoggerTest() override { ConsoleSink::Use(nullptr); }

    static void Foreground() { Orvane::OrvaneAppLifecycle::sharedInstance()->applicationDidBecomeActive(nullptr); }
    static void Background() { Orvane::OrvaneAppLifecycle::sharedInstance()->applicationDidEnterBackground(nullptr); }

    // A quiet logger of that mode. Never destroyed: its flush thread lives on.
    Logger* Make(const std::string& module, int mode) {
        auto* logger = new Logger(module.c_str());
        loggers.emplace_back(logger);
        logger->SetOption("LogMode", mode);
        logger->SetOption("LogConsoleOutput", 0);
        logger->Init();
        // The flush thread looks at the block as soon as it runs, and then waits to be woken.
        EXPECT_TRUE(WaitUntilAllAsleep("XLogThread", console->Count(", sync:0, use mmap:")));
        return logger;
    }
    static void Say(Logger* logger, const std::string& text, ALogPriority level = kLogInfo) {
        logger->Log(level, "some/where/File.cpp", 12, "Function", nullptr, text.c_str());
    }
    // Ends the loggers of this process, and reads what a next one brings back.
    std::string Reopen(const std::string& module, int mode) {
        loggers.clear();
        Make(module, mode);
        return DecodeText(ReadLogFiles(module), DevelopmentKey());
    }

    std::shared_ptr<ThreadedConsole> console;
    FakeConfigure configure;
    std::vector<std::unique_ptr<Logger>> loggers;
};

std::vector<std::string> Texts(const std::string& lines) {
    std::vector<std::string> texts;
    const std::regex line(
        R"(\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d \d{3}\] \| (\w+) \| \[(\w+)\] \|\d+\| File.cpp:12\|Function\| (.*))");
    std::istringstream in(lines);
    for (std::string text; std::getline(in, text);) {
        std::smatch match;
        texts.push_back(std::regex_match(text, match, line) ? match[1].str() + " " + match[3].str() : "? " + text);
    }
    return texts;
}

constexpr char kBegin[] = "? ----------- begin of mmap -----------";
constexpr char kEnd[] = "? ----------- end of mmap -----------";

TEST_F(LoggerTest, ModesOneAndTwoBringTheBlockBackBetweenTheTips) {
    for (const int mode : {1, 2}) {
        const std::string module = "Mode" + std::to_string(mode);
        Logger* logger = Make(module, mode);
        EXPECT_FALSE(std::filesystem::exists(LogFolder(module))) << "nothing to write, no folder";
        Say(logger, "first");
        Say(logger, "second", kLogError);
        EXPECT_EQ(ReadLogFiles(module), "") << "what is in the block is not in a file";
        EXPECT_EQ(std::filesystem::file_size(CacheFolder() + "/" + module + ".mmap3"), 153600u);
        EXPECT_THAT(Texts(Reopen(module, mode)), ElementsAre(kBegin, "Info first", "Error second", kEnd));

        const auto records = DecodeRecords(ReadLogFiles(module), DevelopmentKey());
        ASSERT_EQ(records.size(), 3u);
        EXPECT_EQ(records[0].magic, mode == 2 ? 6 : 8);
        EXPECT_EQ(records[1].magic, mode == 2 ? 7 : 9);
        EXPECT_THAT(FilesIn(LogFolder(module)), ElementsAre(::testing::MatchesRegex(module + "_[0-9]{10}\\.xlog")));
    }
}

// A process was killed within the tip that ends its restoring. What it wrote of it would swallow the next block's
// header.
TEST_F(LoggerTest, ATornEndOfARestoringIsCutOffAndWrittenWhole) {
    const std::string tip = std::string(kEnd + 2) + "\n";
    LogBuffer plain(nullptr, 0, true, "");
    AutoBuffer record;
    ASSERT_TRUE(plain.Write(tip.data(), tip.size(), record));
    const std::string whole(reinterpret_cast<const char*>(record.Ptr()), record.Length());

    const std::string file = "Torn_2026010203.xlog";
    WriteFile(LogFolder("Torn") + "/" + file, whole + whole.substr(0, 60));
    std::vector<uint8_t> memory(sizeof(BlockJournalLayout));
    BlockJournal journal(memory.data());
    journal.Stage(record.Ptr(), record.Length());
    journal.BeginAppend(file.c_str(), static_cast<int64_t>(whole.size()));
    WriteFile(CacheFolder() + "/Torn.journal3", std::string(memory.begin(), memory.end()));

    Logger* logger = Make("Torn", 1);
    Say(logger, "next");
    EXPECT_EQ(ReadFile(LogFolder("Torn") + "/" + file), whole);
    EXPECT_THAT(Texts(Reopen("Torn", 1)), ElementsAre(kEnd, kEnd, kBegin, "Info next", kEnd));
}

TEST_F(LoggerTest, ModeZeroWritesPlainLines) {
    Logger* logger = Make("Plain", 0);
    Say(logger, "first");
    Say(logger, "in two\nlines");
    Say(logger, std::string(5000, 'x'));
    Say(logger, "last");
    loggers.clear();
    const std::string content = ReadLogFiles("Plain");
    EXPECT_THAT(FilesIn(LogFolder("Plain")), ElementsAre(::testing::MatchesRegex("Plain_[0-9]{10}\\.log")));
    EXPECT_FALSE(std::filesystem::exists(CacheFolder() + "/Plain.mmap3"));
    EXPECT_EQ(content.substr(content.find("| first"), 8), "| first\n");
    EXPECT_NE(content.find("| in two\nlines\n"), std::string::npos);
    // The longest line has 4095 bytes and no room for its newline.
    const size_t longest = content.find("lines\n") + 6;
    EXPECT_EQ(content.substr(longest + 4094, 2), "x[");
    EXPECT_EQ(content.substr(content.size() - 7), "| last\n");
}

TEST_F(LoggerTest, LinesOfEveryLengthKeepTheirBytes) {
    Logger* logger = Make("Lengths", 2);
    std::string head;
    Say(logger, "");
    for (const size_t length : {4095u, 4096u, 5000u, 1000000u})
        Say(logger, std::string(length, 'y'));
    Say(logger, "ends in a newline\n");
    const std::string text = Reopen("Lengths", 2);
    std::istringstream in(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    ASSERT_EQ(lines.size(), 8u);
    for (int i = 2; i <= 5; ++i)
        EXPECT_EQ(lines[static_cast<size_t>(i)].size(), 4095u);
    EXPECT_TRUE(lines[6].ends_with("| ends in a newline")) << "no second newline is added";
}

TEST_F(LoggerTest, FiltersByLevelAndNeverPassesFive) {
    Logger* logger = Make("Levels", 1);
    EXPECT_EQ(logger->GetLogLevel(), kLogInfo);
    Say(logger, "hidden", kLogDebug);
    logger->SetLogLevel(kLogDebug);
    Say(logger, "shown", kLogDebug);
    Say(logger, "never", kLogNone);
    Say(logger, "never", static_cast<ALogPriority>(-1));
    Say(logger, "never", static_cast<ALogPriority>(6));
    logger->SetLogLevel(static_cast<ALogPriority>(6));
    logger->SetLogLevel(static_cast<ALogPriority>(-1));
    EXPECT_EQ(logger->GetLogLevel(), kLogDebug) << "no level above 5 and none below 0";
    logger->SetLogLevel(kLogNone);
    Say(logger, "never", kLogError);
    logger->Log(kLogError, nullptr, 0, nullptr, nullptr, nullptr);
    EXPECT_TRUE(console->Count("Levels SetLogLevel:5") == 1);
    EXPECT_TRUE(console->Count("Levels SetLogLevel finished, final LogLevel:5") == 1);
    EXPECT_THAT(Texts(Reopen("Levels", 1)), ElementsAre(kBegin, "Debug shown", kEnd));
}

TEST_F(LoggerTest, ConfigurationGoesBeforeTheCaller) {
    configure.Set("Configured", "LogLevel", "wArNiNg");
    configure.Set("Configured", "LogMode", "1");
    Logger* logger = Make("Configured", 0);
    EXPECT_EQ(logger->GetLogLevel(), kLogWarning);
    logger->SetLogLevel(kLogDebug);
    EXPECT_EQ(logger->GetLogLevel(), kLogWarning);
    logger->SetOption("LogMode", 2);
    logger->Init();
    Say(logger, "deflated", kLogError);
    configure.Set("Configured", "LogLevel", "no such word");
    logger->SetLogLevel(kLogError);
    EXPECT_EQ(logger->GetLogLevel(), kLogError) << "an unknown word changes nothing";
    configure.Set("Configured", "LogLevel", "none");
    logger->OnConfigureRefreshed(nullptr);
    EXPECT_EQ(logger->GetLogLevel(), kLogNone);
    EXPECT_EQ(console->Count("log init module Configured, logMode 1, sync:0, use mmap:1, mmap cost "), 1);
    loggers.clear();
    Make("Configured", 0);
    EXPECT_EQ(DecodeRecords(ReadLogFiles("Configured")).at(1).magic, 9);

    configure.Set("Orvane", "LogMode", "1");
    configure.Set("OrvaneCore", "LogMode", "0");
    Make("Orvane", 2);
    EXPECT_EQ(console->Count("log init module Orvane, logMode 0, sync:1, use mmap:1"), 1)
        << "the project's module reads the core's section too, and that one last";
}

TEST_F(LoggerTest, UnknownModesAndOptionsLeaveThingsAsTheyAre) {
    Logger* logger = Make("Five", 5);
    Say(logger, "plain");
    loggers.clear();
    EXPECT_NE(ReadLogFiles("Five").find("| plain\n"), std::string::npos);

    Logger fresh("Fresh");
    fresh.SetOption(nullptr, 1);
    fresh.SetOption("LogThreadTimeWait", 1);
    fresh.SetOption("LogMode", "2");
    EXPECT_EQ(console->Count("| Logger SetOption key is NULL"), 1);
    EXPECT_EQ(console->Count("| Logger invalid key LogThreadTimeWait"), 1);
}

std::vector<std::string> g_called;
Logger* g_calledLogger;
void Callback(ALogPriority priority, const char* line) {
    g_called.push_back(std::to_string(priority) + " " + std::string(line).substr(std::string(line).rfind("| ") + 2));
    errno = 0;
    if (g_called.size() == 1)
        g_calledLogger->Log(kLogWarning, "f", 1, "g", nullptr, "from inside");  // the mutex is recursive
}

TEST_F(LoggerTest, BeforeInitALineReachesConsoleAndCallbackOnly) {
    Logger logger("Early");
    g_called.clear();
    g_calledLogger = &logger;
    logger.SetCallback(Callback);
    Say(&logger, "early", kLogError);
    EXPECT_THAT(g_called, ElementsAre("4 early", "2 from inside"));
    EXPECT_EQ(console->Count("| early"), 1);
    EXPECT_EQ(FilesIn(LogFolder("Early")).size(), 0u);

    logger.SetOption("LogMode", 0);
    logger.Init();
    logger.SetOption("LogConsoleOutput", 0);
    g_called.assign(1, "");
    errno = ENOENT;
    Say(&logger, "later");
    EXPECT_THAT(g_called, ElementsAre("", "1 later"));
    EXPECT_EQ(console->Count("| later"), 0);
    logger.SetCallback(nullptr);
    errno = ENOENT;
    Say(&logger, "errno is the caller's");
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(g_called.size(), 2u);
}

TEST_F(LoggerTest, HoldsAThousandLinesInTheBackground) {
    Logger* logger = Make("Held", 1);
    Background();
    for (int i = 0; i < 1001; ++i)
        Say(logger, "held " + std::to_string(i));
    Foreground();
    Say(logger, "found them");
    const std::vector<std::string> texts = Texts(Reopen("Held", 1));
    ASSERT_EQ(texts.size(), 1003u);
    for (size_t i = 0; i < 1000; ++i)
        ASSERT_EQ(texts[i + 1], "Info held " + std::to_string(i));
    EXPECT_EQ(texts[1001], "Info found them") << "the line after the thousandth is lost";
}

TEST_F(LoggerTest, HeldBackLinesThatAreMoreThanABlockAllReachTheFile) {
    Logger* logger = Make("HeldLong", 1);
    Background();
    unsigned noise = 1;
    for (int i = 0; i < 1000; ++i) {
        std::string text;
        for (int k = 0; k < 600; ++k)
            text += static_cast<char>('!' + (noise = noise * 1664525 + 1013904223) / 65536 % 90);
        Say(logger, text);
    }
    Foreground();
    Say(logger, "found them");
    const std::string text = Reopen("HeldLong", 1);
    EXPECT_EQ(text.find("[F]["), std::string::npos) << "no marker took the place of a line";
    EXPECT_GE(std::count(text.begin(), text.end(), '\n'), 1001);
}

TEST_F(LoggerTest, AThirdOfTheBlockWakesTheFlushThread) {
    Logger* logger = Make("Flushed", 2);
    std::string expected;
    for (int i = 0; i < 20000 && FilesIn(LogFolder("Flushed")).empty(); ++i)
        Say(logger, "line number " + std::to_string(i));
    ASSERT_TRUE(WaitFor([] { return !ReadLogFiles("Flushed").empty(); }));
    const auto record = DecodeRecords(ReadLogFiles("Flushed"), DevelopmentKey()).at(0);
    EXPECT_GE(record.payload.size() + 73, 51200u);
    EXPECT_LT(record.payload.size(), 76800u);

    const std::vector<std::string> texts = Texts(Reopen("Flushed", 2));
    size_t next = 0;
    for (const std::string& text : texts)
        if (text[0] != '?') {
            EXPECT_EQ(text, "Info line number " + std::to_string(next++));
        }
    EXPECT_GT(next, 500u);
}

// A callback runs under the log mutex, which keeps the flush thread out: what it logs fills the block.
void FillTheBlock(ALogPriority, const char*) {
    static bool isFilling = false;
    if (isFilling) return;
    isFilling = true;
    unsigned noise = 1;
    for (int i = 0; i < 320; ++i) {
        std::string text;
        for (int k = 0; k < 600; ++k)
            text += static_cast<char>('!' + (noise = noise * 1664525 + 1013904223) / 65536 % 90);
        g_calledLogger->Log(kLogInfo, "File.cpp", 12, "Function", nullptr, text.c_str());
    }
    g_calledLogger->SetCallback(nullptr);
    isFilling = false;
}

TEST_F(LoggerTest, MarkersTakeThePlaceOfLinesInAFullBlock) {
    Logger* logger = Make("Full", 1);
    g_calledLogger = logger;
    logger->SetCallback(FillTheBlock);
    Say(logger, "begin");
    ASSERT_TRUE(WaitFor([] { return !ReadLogFiles("Full").empty(); }));
    const std::string text = DecodeText(ReadLogFiles("Full"));
    const size_t marker = text.find("[F][ sg_buffer_async.Length() >= BUFFER_BLOCK_LENTH*4/5, len: ");
    ASSERT_NE(marker, std::string::npos);
    std::istringstream in(text.substr(marker));
    int markers = 0, previous = 122879;
    for (std::string line; std::getline(in, line); ++markers) {
        int length = 0;
        ASSERT_EQ(sscanf(line.c_str(), "[F][ sg_buffer_async.Length() >= BUFFER_BLOCK_LENTH*4/5, len: %d", &length), 1);
        EXPECT_GT(length, previous) << "each marker is written";
        previous = length;
    }
    EXPECT_GT(markers, 10);
    EXPECT_LT(previous, 153600);
    EXPECT_GT(std::count(text.begin(), text.begin() + static_cast<ptrdiff_t>(marker), '\n'), 100);
}

TEST_F(LoggerTest, FourThreadsKeepTheirOrderAndEveryLine) {
    for (const int mode : {0, 1, 2}) {
        const std::string module = "Threads" + std::to_string(mode);
        Logger* logger = Make(module, mode);
        constexpr int kLines = 3000;
        std::vector<std::thread> threads;
        for (int t = 0; t < 4; ++t)
            threads.emplace_back([=] {
                for (int i = 0; i < kLines; ++i)
                    Say(logger, std::to_string(t) + " " + std::to_string(i));
            });
        for (std::thread& thread : threads)
            thread.join();
        std::string text;
        if (mode == 0) {
            loggers.clear();
            text = ReadLogFiles(module);
        } else {
            text = Reopen(module, mode);
        }
        std::map<int, int> next;
        for (const std::string& line : Texts(text)) {
            int thread, number;
            if (sscanf(line.c_str(), "Info %d %d", &thread, &number) != 2) continue;
            ASSERT_EQ(number, next[thread]++) << "thread " << thread << " in mode " << mode;
        }
        for (int t = 0; t < 4; ++t)
            EXPECT_EQ(next[t], kLines) << "mode " << mode;
    }
}

TEST_F(LoggerTest, WhatCannotBeMappedIsKeptInMemory) {
    std::filesystem::create_directories(CacheFolder() + "/Unmapped.mmap3");
    Logger* logger = Make("Unmapped", 2);
    EXPECT_EQ(console->Count("/Unmapped.mmap3) fail: Is a directory"), 1);
    EXPECT_EQ(console->Count("log init module Unmapped, logMode 2, sync:0, use mmap:0"), 1);
    for (int i = 0; i < 20000 && FilesIn(LogFolder("Unmapped")).empty(); ++i)
        Say(logger, "line " + std::to_string(i));
    ASSERT_TRUE(WaitFor([] { return !ReadLogFiles("Unmapped").empty(); }));
    EXPECT_EQ(Texts(DecodeText(ReadLogFiles("Unmapped"), DevelopmentKey())).at(0), "Info line 0");
}

TEST_F(LoggerTest, AShorterMappedFileIsWiped) {
    WriteFile(CacheFolder() + "/Short.mmap3", std::string("\x09\x01\x00\x01\x01\x04", 6) + std::string(100, 'x'));
    Logger* logger = Make("Short", 1);
    EXPECT_EQ(std::filesystem::file_size(CacheFolder() + "/Short.mmap3"), 153600u);
    EXPECT_GE(console->Count("copy data 2 mmap file success"), 1);
    EXPECT_EQ(ReadLogFiles("Short"), "") << "nothing is brought back";
    Say(logger, "new");
    EXPECT_THAT(Texts(Reopen("Short", 1)), ElementsAre(kBegin, "Info new", kEnd));
}

TEST_F(LoggerTest, DorselMustBeOfAnAge) {
    EXPECT_EQ(compareVersion("4.2.027.27094"), 0);
    EXPECT_EQ(compareVersion("4.2.27.27094"), 0) << "fields are numbers";
    EXPECT_EQ(compareVersion("4.2.027.27093"), -1);
    EXPECT_EQ(compareVersion("4.10.0.0"), 1);
    EXPECT_EQ(compareVersion("3.9"), -1);
    EXPECT_EQ(compareVersion("4.2"), -1) << "the rests are compared as decimal numbers: 2 and 2.027";
    EXPECT_EQ(compareVersion("5"), 1);
    EXPECT_EQ(compareVersion(""), -1);
    EXPECT_EQ(compareVersion((std::string(100, '9') + ".1").c_str()), atoi(std::string(31, '9').c_str()) < 4 ? -1 : 1);

    struct DorselPlugin final : Orvane::Plugin::PluginBase {
        const char* GetName() const override { return "Dorsel"; }
        const char* GetVersion() const override { return version; }
        void OnStartup(Orvane::Plugin::IServiceRegister*) override {}
        void OnPostStartup() override {}
        void OnPreShutdown() override {}
        void OnShutdown() override {}
        Orvane::Plugin::IPluginService* GetServiceByName(const char*) override { return nullptr; }
        const char* version = "4.2.026.99999";
    } dorsel;
    Logger ours("Dorsel"), other("Other");
    EXPECT_EQ(ours.GetVersion(), 1) << "no such plugin";
    Orvane::Plugin::PluginManager* manager = Orvane::Plugin::PluginManager::GetInstance();
    manager->Install(&dorsel);
    EXPECT_EQ(ours.GetVersion(), 0);
    EXPECT_EQ(other.GetVersion(), 1);
    dorsel.version = "4.2.027.27095";
    manager->Install(&dorsel);
    EXPECT_EQ(ours.GetVersion(), 1);

    auto* service = Orvane::Plugin::OrvaneCoreLogSerivce::GetInstance();
    Orvane::ILogger* logger = service->GetLogger(&dorsel);
    EXPECT_EQ(service->GetLogger(&dorsel), logger);
    EXPECT_THAT(configure.added, ElementsAre("Dorsel")) << "one observer for each name";
    Orvane::OrvaneSDKLog::GetInstance()->SetLogLevel("Dorsel", kLogError);
    EXPECT_EQ(logger->GetLogLevel(), kLogError);
    Orvane::OrvaneSDKLog::GetInstance()->SetLogLevel("Nobody", kLogError);
    Orvane::OrvaneSDKLog::GetInstance()->SetAllLogLevel(kLogWarning);
    EXPECT_EQ(logger->GetLogLevel(), kLogWarning);
    EXPECT_EQ(GetQuernLogLevel(), kLogWarning);
    manager->Uninstall(&dorsel);
}

TEST_F(LoggerTest, TheCoreLoggerStartsOnceAndTakesTheLogCallOver) {
    XLog(kLogDebug, "a/b.cpp", 1, "F", "before %d", 1);
    EXPECT_EQ(console->Count("| Debug | [OrvaneCore] |"), 1) << "every level reaches the console";
    EXPECT_TRUE(ACheckLogLevel(kLogDebug));
    SetQuernLogCallback(Callback);  // lost: there is no core logger yet
    g_called.assign(1, "");
    SetQuernLogLevel(kLogWarning);
    OrvaneLogInit();
    Orvane::ILogger* core = CoreLogger();
    OrvaneLogInit();
    EXPECT_EQ(CoreLogger(), core);
    EXPECT_EQ(core->GetLogLevel(), kLogWarning);
    EXPECT_FALSE(ACheckLogLevel(kLogInfo));
    EXPECT_THAT(configure.added, ElementsAre("OrvaneCore"));

    SetQuernLogCallback(Callback);
    XLog(kLogInfo, "f", 1, "F", "filtered");
    XLog(kLogWarning, "f", 1, "F", nullptr);
    XLog(kLogWarning, "f", 1, "F", "%s", "passes");
    XLog2(kLogError, "f", 1, "F", "too %d");
    EXPECT_THAT(g_called, ElementsAre("", "2 passes", "4 too %d"));
    SetConsoleOutput(false);
    XLog2(kLogError, "f", 1, "F", "quiet");
    EXPECT_EQ(console->Count("| quiet"), 0);
    SetQuernLogCallback(nullptr);
}

TEST_F(LoggerTest, TheStageLogNeedsAllItsTextsAndItsSwitch) {
    const auto stage = static_cast<IntelliDevStage>(3);
    const auto status = static_cast<IntelliDevStatus>(4);
    XLogDetail(kLogInfo, "f", 1, "F", "M", "S", stage, status, 5, 6, "E", "U", "R", "text %d", 7);
    EXPECT_EQ(console->Count("|IntelliDevLog|  Module:M Session:S Stage:3 Status:4 ErrCode:5 ErrCode2:6 ErrorMsg:E "
                             "UserInfo:U Resv:R text 7"),
              1);
    XLogDetail(kLogInfo, "f", 1, "F", "M", "S", stage, status, 5, 6, nullptr, "U", "R", "text");
    EXPECT_EQ(console->Count("Error, Parameter is NULL."), 1);
    Logger* logger = Make("Stages", 0);
    logger->XLogDetail(kLogInfo, "f", 1, "F", "M", "S", stage, status, 5, 6, "E", "U", nullptr, "text");
    EXPECT_EQ(console->Count("Error, Parameter is NULL."), 2);
    logger->XLogDetail(kLogInfo, "f", 1, "F", "M", "S", stage, status, 5, 6, "E", "U", "R", "switched off");
    loggers.clear();
    EXPECT_EQ(ReadLogFiles("Stages"), "");
}

}  // namespace
}  // namespace Quern
