#include "Storage/Log/CoreLog.h"
#include "Storage/Log/DorselVersion.h"
#include "Storage/Log/Logger.h"

#include <regex>

#include "Orvane/OrvaneCore.h"
#include "PluginManager/InnerPlugin/OrvaneCoreLogService.h"
#include "Storage/Log/GameLog.h"
#include "Storage/Log/LoggerFixture.h"
#include "Storage/Log/SDKLog.h"
#include "Storage/Log/StageLog.h"
#include "Support/FakeInfoDictionary.h"
#include "Support/FakePlugins.h"
#include "Support/Test.h"

namespace Quern {
namespace {

using namespace OrvaneTest;

TEST_F(LoggerTest, ModeZeroWritesPlainLines) {
    Logger* logger = Make("Plain", 0);
    Say(logger, "first");
    Say(logger, "in two\nlines");
    Say(logger, std::string(5000, 'x'));
    Say(logger, "last");
    loggers.clear();
    const std::string content = ReadLogFiles("Plain");
    EXPECT_THAT(FilesIn(LogFolder("Plain")), ElementsAre(MatchesRegex("Plain_[0-9]{10}\\.log")));
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
    const std::vector<std::string> lines = SplitLines(Reopen("Lengths", 2));
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
    EXPECT_TRUE(console.Count("Levels SetLogLevel:5") == 1);
    EXPECT_TRUE(console.Count("Levels SetLogLevel finished, final LogLevel:5") == 1);
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
    EXPECT_EQ(console.Count("log init module Configured, logMode 1, sync:0, use mmap:1, mmap cost "), 1);
    loggers.clear();
    Make("Configured", 0);
    EXPECT_EQ(DecodeRecords(ReadLogFiles("Configured")).at(1).magic, 9);

    configure.Set("Orvane", "LogMode", "1");
    configure.Set("OrvaneCore", "LogMode", "0");
    Make("Orvane", 2);
    EXPECT_EQ(console.Count("log init module Orvane, logMode 0, sync:1, use mmap:1"), 1)
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
    EXPECT_EQ(console.Count("| Logger SetOption key is NULL"), 1);
    EXPECT_EQ(console.Count("| Logger invalid key LogThreadTimeWait"), 1);
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
    EXPECT_EQ(console.Count("| early"), 1);
    EXPECT_EQ(FilesIn(LogFolder("Early")).size(), 0u);

    logger.SetOption("LogMode", 0);
    logger.Init();
    logger.SetOption("LogConsoleOutput", 0);
    g_called.assign(1, "");
    errno = ENOENT;
    Say(&logger, "later");
    EXPECT_THAT(g_called, ElementsAre("", "1 later"));
    EXPECT_EQ(console.Count("| later"), 0);
    logger.SetCallback(nullptr);
    errno = ENOENT;
    Say(&logger, "errno is the caller's");
    EXPECT_EQ(errno, ENOENT);
    EXPECT_EQ(g_called.size(), 2u);
}

TEST_F(LoggerTest, DorselMustBeOfAnAge) {
    // Fields are numbers, the rests of "4.2" are compared as decimals (2 and 2.027), and a field is cut behind 31
    // digits.
    const std::string longest = std::string(30, '0') + "9.1", cut = "0" + longest;
    std::string orders;
    for (const char* version : {"4.2.027.27094", "4.2.27.27094", "4.2.027.27093", "4.10.0.0", "3.9", "4.2", "5", "",
                                longest.c_str(), cut.c_str()})
        orders += Format("%d ", compareVersion(version));
    EXPECT_EQ(orders, "0 0 -1 1 -1 -1 1 -1 1 -1 ");

    IdlePlugin dorsel("Dorsel", "4.2.026.99999");
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
    EXPECT_EQ(console.Count("| Debug | [OrvaneCore] |"), 1) << "every level reaches the console";
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
    EXPECT_EQ(console.Count("| quiet"), 0);
    SetQuernLogCallback(nullptr);
}

TEST_F(LoggerTest, TheStageLogNeedsAllItsTextsAndItsSwitch) {
    const auto stage = static_cast<IntelliDevStage>(3);
    const auto status = static_cast<IntelliDevStatus>(4);
    XLogDetail(kLogInfo, "f", 1, "F", "M", "S", stage, status, 5, 6, "E", "U", "R", "text %d", 7);
    EXPECT_EQ(console.Count("|IntelliDevLog|  Module:M Session:S Stage:3 Status:4 ErrCode:5 ErrCode2:6 ErrorMsg:E "
                            "UserInfo:U Resv:R text 7"),
              1);
    XLogDetail(kLogInfo, "f", 1, "F", "M", "S", stage, status, 5, 6, nullptr, "U", "R", "text");
    EXPECT_EQ(console.Count("Error, Parameter is NULL."), 1);
    Logger* logger = Make("Stages", 0);
    logger->XLogDetail(kLogInfo, "f", 1, "F", "M", "S", stage, status, 5, 6, "E", "U", nullptr, "text");
    EXPECT_EQ(console.Count("Error, Parameter is NULL."), 2);
    logger->XLogDetail(kLogInfo, "f", 1, "F", "M", "S", stage, status, 5, 6, "E", "U", "R", "switched off");
    loggers.clear();
    EXPECT_EQ(ReadLogFiles("Stages"), "");
}

void CallbackThatLogsAStage(ALogPriority, const char* line) {
    g_called.push_back(line);
    XLogDetail(kLogInfo, "f", 1, "F", "M", "S", IntelliDevStage{}, IntelliDevStatus{}, 0, 0, "E", "U", "R", "text");
}

// The first stage line looks for the switch, and the log tells what it does not find.
TEST_F(LoggerTest, ACallbackMayLogAStageAboutTheLookForItsSwitch) {
    OrvaneLogInit();
    SetQuernLogCallback(CallbackThatLogsAStage);
    g_called.clear();
    CallbackThatLogsAStage(kLogInfo, "");
    SetQuernLogCallback(nullptr);
    ASSERT_EQ(g_called.size(), 2u);
    EXPECT_TRUE(g_called[1].ends_with(" is NULL"));
}

TEST_F(LoggerTest, ThresholdsMayBeSetFromTheFirstMomentOnAnyThread) {
    constexpr int kNames = 50;
    Threads threads(2, [](int) {
        for (int i = 0; i < kNames; ++i) {
            Orvane::OrvaneSDKLog::GetInstance()->SetAllLogLevel(kLogWarning);
            Orvane::OrvaneSDKLog::GetInstance()->SetLogLevel(std::to_string(i).c_str(), kLogError);
        }
    });
    IdlePlugin plugin("", "1.0");
    auto* service = Orvane::Plugin::OrvaneCoreLogSerivce::GetInstance();
    for (int i = 0; i < kNames; ++i) {
        const std::string name = std::to_string(i);
        plugin.name = name.c_str();
        EXPECT_NE(service->GetLogger(&plugin), nullptr);
    }
    threads.Join();
    EXPECT_EQ(service->GetLoggerCollection()->size(), static_cast<size_t>(kNames));
}

// The look-up of the game's id logs that the manifest has no section for it.
TEST(GameLog, ACoreCallbackMayHandLinesOnToIt) {
    CacheFolder();
    const FakeInfoDictionary manifest;
    OrvaneLogInit();
    OrvaneCore_SetQuernLogLevel(kLogDebug);
    static int handedOn = 0;
    OrvaneCore_SetQuernLogCallback([](ALogPriority level, const char* line) {
        ++handedOn;
        orvane_log_logx(level, line, __FILE__, __LINE__, __func__, nullptr);
    });
    orvane_log_set_loglevel(kLogError);
    OrvaneCore_SetQuernLogCallback(nullptr);
    EXPECT_GT(handedOn, 0);
    EXPECT_EQ(orvane_log_get_loglevel(), kLogError);
}

}  // namespace
}  // namespace Quern
