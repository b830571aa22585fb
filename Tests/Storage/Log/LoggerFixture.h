// Loggers of a test, in a container of its own, and what they wrote.
#ifndef ORVANE_TESTS_STORAGE_LOG_LOGGER_FIXTURE_H
#define ORVANE_TESTS_STORAGE_LOG_LOGGER_FIXTURE_H

#include <regex>

#include "Storage/Log/Logger.h"
#include "Support/FakeConfigure.h"
#include "Support/LogRecords.h"
#include "Support/Test.h"
#include "System/Application/OrvaneAppLifecycle.h"

namespace OrvaneTest {

class LoggerTest : public ::testing::Test {
protected:
    LoggerTest() {
        CacheFolder();
        Foreground();
    }

    static void Foreground() { Orvane::OrvaneAppLifecycle::sharedInstance()->applicationDidBecomeActive(nullptr); }
    static void Background() { Orvane::OrvaneAppLifecycle::sharedInstance()->applicationDidEnterBackground(nullptr); }

    // A quiet logger of that mode. Never destroyed: its flush thread lives on.
    Quern::Logger* Make(const std::string& module, int mode) {
        auto* logger = new Quern::Logger(module.c_str());
        loggers.emplace_back(logger);
        logger->SetOption("LogMode", mode);
        logger->SetOption("LogConsoleOutput", 0);
        logger->Init();
        AwaitFlushThreads();
        return logger;
    }
    // A flush thread looks at the block as soon as it runs, and then waits to be woken.
    void AwaitFlushThreads() { EXPECT_TRUE(WaitUntilAllAsleep("XLogThread", console.Count(", sync:0, use mmap:"))); }
    static void Say(Quern::Logger* logger, const std::string& text, ALogPriority level = kLogInfo) {
        logger->Log(level, "some/where/File.cpp", 12, "Function", nullptr, text.c_str());
    }
    // Ends the loggers of this process, and reads what a next one brings back.
    std::string Reopen(const std::string& module, int mode) {
        AwaitFlushThreads();  // one that is at work would end with its logger, the others wait on
        loggers.clear();
        Make(module, mode);
        return DecodeText(ReadLogFiles(module), DevelopmentKey());
    }

    CapturedConsole console;
    FakeConfigure configure;
    std::vector<std::unique_ptr<Quern::Logger>> loggers;
};

inline std::vector<std::string> Texts(const std::string& lines) {
    std::vector<std::string> texts;
    const std::regex line(
        R"(\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d \d{3}\] \| (\w+) \| \[(\w+)\] \|\d+\| File.cpp:12\|Function\| (.*))");
    for (const std::string& text : SplitLines(lines)) {
        std::smatch match;
        texts.push_back(std::regex_match(text, match, line) ? match[1].str() + " " + match[3].str() : "? " + text);
    }
    return texts;
}

inline constexpr char kBegin[] = "? ----------- begin of mmap -----------";
inline constexpr char kEnd[] = "? ----------- end of mmap -----------";

}  // namespace OrvaneTest

#endif
