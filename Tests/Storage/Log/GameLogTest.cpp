#include "Storage/Log/GameLog.h"

#include "Orvane/Game.h"
#include "Orvane/OrvaneCore.h"
#include "Storage/Log/LoggerFixture.h"
#include "Support/FakeInfoDictionary.h"
#include "Support/Test.h"

namespace OrvaneTest {
namespace {

constexpr char kInitMissing[] = "the game's log is not kept: orvane_log_init";
constexpr char kLaunchMissing[] = "the game's log waits in memory";

class GameLogState : public LoggerTest {
protected:
    GameLogState() {
        manifest.Set("Orvane", "GameId", FakeInfoDictionary::Text("Game"));
        orvane_log_set_option_int("LogConsoleOutput", 0);
    }

    static void Say() { orvane_log_logx(kLogInfo, "a line", __FILE__, __LINE__, __func__, nullptr); }
    void Open(int mode) {
        orvane_log_set_option_int("LogMode", mode);
        orvane_log_init();
        AwaitFlushThreads();
    }

    FakeInfoDictionary manifest;
};

TEST_F(GameLogState, OfABlockFollowsTheApplication) {
    Background();
    EXPECT_EQ(gs_OrvaneGameLogState(), kOrvaneLogNotKept);
    Say();
    Say();
    EXPECT_EQ(console.Count(kInitMissing), 1) << "said once";
    Open(1);
    EXPECT_EQ(gs_OrvaneGameLogState(), kOrvaneLogWaits);
    EXPECT_EQ(console.Count(kLaunchMissing), 0) << "nothing has been logged";
    Say();
    Say();
    EXPECT_EQ(console.Count(kLaunchMissing), 1);
    Foreground();
    EXPECT_EQ(gs_OrvaneGameLogState(), kOrvaneLogDurable);
    Background();
    EXPECT_EQ(gs_OrvaneGameLogState(), kOrvaneLogWaits);
}

TEST_F(GameLogState, OfABlockThatHasNoFolderIsTold) {
    std::filesystem::remove_all(CacheFolder());
    WriteFile(CacheFolder(), "in the way of the folder");
    Open(1);
    Foreground();
    EXPECT_EQ(gs_OrvaneGameLogState(), kOrvaneLogNotKept);
    Say();
    Say();
    EXPECT_EQ(console.Count("the game's log is not kept: its file"), 1);
}

TEST_F(GameLogState, OfAPlainFileTellsWhetherItCanBeWritten) {
    Open(0);
    Say();
    EXPECT_EQ(gs_OrvaneGameLogState(), kOrvaneLogBuffered);
    std::filesystem::remove_all(CacheFolder() + "/OrvaneSDKLog");
    WriteFile(CacheFolder() + "/OrvaneSDKLog", "in the way of the folder");
    Say();
    EXPECT_EQ(gs_OrvaneGameLogState(), kOrvaneLogNotKept);
    std::filesystem::remove(CacheFolder() + "/OrvaneSDKLog");
    Say();
    EXPECT_EQ(gs_OrvaneGameLogState(), kOrvaneLogBuffered);
    EXPECT_EQ(console.Count(kInitMissing) + console.Count(kLaunchMissing), 0);
}

TEST_F(GameLogState, OfABlockThatCannotBeMappedIsNotDurable) {
    std::filesystem::create_directory(CacheFolder() + "/Game.mmap3");
    Open(2);
    Say();
    EXPECT_EQ(gs_OrvaneGameLogState(), kOrvaneLogBuffered);
}

}  // namespace
}  // namespace OrvaneTest
