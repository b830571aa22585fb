// The log in bad surroundings: the game goes on, the console says why lines cannot be kept, and what can be kept is.

#include "Support/Container.h"
#include "Support/LoadCheck.h"
#include "Support/Process.h"
#include "Support/Test.h"

namespace EndToEnd {
namespace {

namespace fs = std::filesystem;

constexpr char kModule[] = "Game";
constexpr uint64_t kLines = 1500;  // more than one block

class LogSurroundingsTest : public testing::Test {
protected:
    // A host in a mount namespace of its own, with a temporary file system over the container's home. Null, and the
    // test skipped, without the right to that.
    std::unique_ptr<Process> StartMounted(const std::string& options, const std::string& before,
                                          const std::vector<std::string>& arguments) {
        fs::create_directories(_container.Home());
        const std::string home = _container.Home().string();
        const std::string mount = "mount -t tmpfs -o " + options + " tmpfs '" + home + "' && cd '" + home + "' && ";
        if (RunToEnd({{"unshare", "--mount", "sh", "-c", mount + "true"}, {}, ""}).status != 0) return nullptr;
        Command command = _container.Host(arguments);
        command.words.insert(command.words.begin(), {"unshare", "--mount", "--propagation", "private", "sh", "-c",
                                                     mount + before + " exec \"$0\" \"$@\""});
        return std::make_unique<Process>(command);
    }

    // A file of the container as the process sees it.
    fs::path Inside(const Process& process, const fs::path& path) const {
        return fs::path("/proc") / std::to_string(process.Id()) / "root" / path.relative_path();
    }

    Container _container;
};

TEST_F(LogSurroundingsTest, GoesOnWhereNothingCanBeWritten) {
    const auto host =
        StartMounted("ro", "", {"--threads", "2", "--lines", "1500", "--lines-per-second", "5000", "--ack-fd", "3"});
    if (!host) GTEST_SKIP() << "no right to mount a temporary file system";
    host->Send("launch\n");
    host->CloseInput();
    EXPECT_EQ(host->Wait().status, 0) << host->Error();
    EXPECT_EQ(CountLines(host->Acknowledged()), 2 * kLines);
    EXPECT_THAT(host->Error(), HasSubstr("Game.mmap3) fail: "));
    EXPECT_THAT(host->Error(), HasSubstr("OrvaneSDKLog failed!"));
}

// The disk is so full that not even the block fits; later there is room.
TEST_F(LogSurroundingsTest, GoesOnWithAFullDiskAndCatchesUpWhenThereIsRoom) {
    const auto host = StartMounted("size=1m", "head -c 1000000 /dev/zero > ballast;",
                                   {"--threads", "2", "--lines", "0", "--ack-fd", "3"});
    if (!host) GTEST_SKIP() << "no right to mount a temporary file system";
    host->Send("launch\n");
    const auto acknowledges = [&](uint64_t more) {
        const uint64_t wanted = CountLines(host->Acknowledged()) + more;
        return host->WaitForAcknowledged([wanted](const std::string& all) { return CountLines(all) >= wanted; });
    };
    ASSERT_TRUE(acknowledges(2000)) << host->Error();
    fs::remove(Inside(*host, _container.Home() / "ballast"));

    // Wait until the file has something.
    std::vector<std::string> log;
    for (int round = 0; round < 1000 && LoadLinesOf(log).empty(); ++round) {
        ASSERT_TRUE(acknowledges(100)) << host->Error();
        Command reader{{ORVANE_LOG_PROGRAM, "--quiet", "--key", ORVANE_LOG_KEY_FILE}, {}, ""};
        for (const auto& entry : fs::directory_iterator(Inside(*host, _container.LogFolder(kModule))))
            reader.words.push_back(entry.path());
        log = SplitLines(RunToEnd(reader).output);
    }
    EXPECT_FALSE(LoadLinesOf(log).empty());
    EXPECT_FALSE(LoadLinesOf(log).count(kDamaged));

    host->Signal(SIGTERM);
    EXPECT_EQ(host->Wait().status, 0) << host->Error();
}

}  // namespace
}  // namespace EndToEnd
