// The log in bad surroundings: the game goes on, the console says why lines cannot be kept, and what can be kept is.
#include <gmock/gmock.h>
#include <signal.h>

#include <filesystem>
#include <numeric>

#include "Storage/Log/LogRecord.h"
#include "Support/Container.h"
#include "Support/LoadCheck.h"
#include "Support/Process.h"

namespace EndToEnd {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::IsSupersetOf;
using testing::Not;

constexpr char kModule[] = "Game";
constexpr size_t kBlockSize = 153600;
constexpr uint64_t kLines = 1500;  // more than one block
// At a pace at which the flush thread is never outrun.
const std::vector<std::string> kLoad = {"--threads",          "2",    "--lines",  "1500",
                                        "--lines-per-second", "5000", "--ack-fd", "3"};

std::vector<uint64_t> Numbers(uint64_t first, uint64_t last) {
    std::vector<uint64_t> numbers(last - first + 1);
    std::iota(numbers.begin(), numbers.end(), first);
    return numbers;
}

// A header as a process that was killed leaves it in the mapped file.
std::string LeftOverHeader(uint8_t magic, uint32_t length) {
    std::string header(Quern::LogRecord::kHeaderLength, '\0');
    header[0] = static_cast<char>(magic);
    header[1] = 1;
    Quern::LogRecord::StoreU32(reinterpret_cast<uint8_t*>(header.data()) + Quern::LogRecord::kLenAt, length);
    return header;
}

class LogSurroundingsTest : public testing::Test {
protected:
    // A host that logs its load from two threads and ends.
    void RunLoad() { Finish(_container.Host(kLoad)); }

    void Finish(const Command& command) {
        Process host(command);
        host.Send("launch\n");
        host.CloseInput();
        const Ending ending = host.Wait();
        _said = host.Error();
        EXPECT_EQ(ending.exitStatus, 0) << "signal " << ending.signal << "\n" << _said;
        EXPECT_EQ(CountLines(host.Acknowledged()), 2 * kLines);
    }

    // A later run of the same container brings back what is still in the block.
    void RunAgain() {
        Process host(_container.Host({}));
        host.Send("launch\nlog info again\n");
        host.CloseInput();
        EXPECT_EQ(host.Wait().exitStatus, 0) << host.Error();
    }

    void ExpectWholeLoad() {
        RunAgain();
        const auto lines = LoadLinesOf(_container.ReadLog(kModule));
        ASSERT_EQ(lines.size(), 2u);
        for (const auto& [thread, numbers] : lines)
            EXPECT_EQ(numbers, Numbers(1, kLines)) << "thread " << thread;
    }

    // The same in a mount namespace of its own, with a temporary file system over the container's home. Null, and the
    // test skipped, without the right to that.
    std::unique_ptr<Process> StartMounted(const std::string& options, const std::string& before,
                                          const std::vector<std::string>& arguments) {
        fs::create_directories(_container.Home());
        const std::string home = _container.Home().string();
        const std::string mount = "mount -t tmpfs -o " + options + " tmpfs '" + home + "' && cd '" + home + "' && ";
        const std::vector<std::string> unshare = {"unshare", "--mount", "--propagation", "private", "sh", "-c"};
        Command probe;
        probe.words = unshare;
        probe.words.push_back(mount + "true");
        Ending ending;
        std::string error;
        RunToEnd(probe, &ending, &error);
        if (ending.exitStatus != 0) {
            _skipReason = "no right to mount a temporary file system: " + error;
            return nullptr;
        }
        Command command = _container.Host(arguments);
        std::vector<std::string> words = unshare;
        words.push_back(mount + before + " exec \"$0\" \"$@\"");
        words.insert(words.end(), command.words.begin(), command.words.end());
        command.words = words;
        return std::make_unique<Process>(command);
    }

    // A file of the container as the process sees it.
    fs::path Inside(const Process& process, const fs::path& path) const {
        return fs::path("/proc") / std::to_string(process.Id()) / "root" / path.relative_path();
    }

    Container _container;
    std::string _said;  // on standard error
    std::string _skipReason;
};

TEST_F(LogSurroundingsTest, MakesAMissingCacheFolder) {
    ASSERT_FALSE(fs::exists(_container.Home()));
    RunLoad();
    ExpectWholeLoad();
}

TEST_F(LogSurroundingsTest, GoesOnWhereAFileStandsInAFoldersPlace) {
    WriteWholeFile(_container.Home() / "Library", "");
    RunLoad();
    EXPECT_THAT(_said, HasSubstr("Game.mmap3) fail: Not a directory"));
    EXPECT_THAT(_said, HasSubstr("CreatePath " + (_container.Caches() / "OrvaneSDKLog").string() + " failed!"));

    // With the file out of the way the same container works again.
    fs::remove(_container.Home() / "Library");
    WriteWholeFile(_container.Caches() / "OrvaneSDKLog", "");
    RunLoad();
    EXPECT_THAT(_said, HasSubstr("CreatePath " + _container.LogFolder(kModule).string() + " failed!"));
}

TEST_F(LogSurroundingsTest, GoesOnWhereNothingCanBeWritten) {
    const auto host = StartMounted("ro", "", kLoad);
    if (!host) GTEST_SKIP() << _skipReason;
    host->Send("launch\n");
    host->CloseInput();
    EXPECT_EQ(host->Wait().exitStatus, 0) << host->Error();
    EXPECT_EQ(CountLines(host->Acknowledged()), 2 * kLines);
    EXPECT_THAT(host->Error(), HasSubstr("Game.mmap3) fail: "));
    EXPECT_THAT(host->Error(), HasSubstr("OrvaneSDKLog failed!"));
}

// The disk is so full that not even the block fits; later there is room.
TEST_F(LogSurroundingsTest, GoesOnWithAFullDiskAndCatchesUpWhenThereIsRoom) {
    const auto host = StartMounted("size=1m", "head -c 1000000 /dev/zero > ballast;",
                                   {"--threads", "2", "--lines", "0", "--ack-fd", "3"});
    if (!host) GTEST_SKIP() << _skipReason;
    host->Send("launch\n");
    const auto acknowledges = [&](uint64_t more) {
        const uint64_t wanted = CountLines(host->Acknowledged()) + more;
        return host->WaitForAcknowledged([wanted](const std::string& all) { return CountLines(all) >= wanted; });
    };
    ASSERT_TRUE(acknowledges(2000)) << host->Error();
    fs::remove(Inside(*host, _container.Home() / "ballast"));

    // Wait until the file has something, by way of its copy outside.
    const fs::path inside = Inside(*host, _container.LogFolder(kModule));
    const fs::path outside = _container.LogFolder(kModule);
    std::vector<std::string> log;
    for (int round = 0; round < 1000 && LoadLinesOf(log).empty(); ++round) {
        ASSERT_TRUE(acknowledges(100)) << host->Error();
        fs::create_directories(outside);
        for (const auto& entry : fs::directory_iterator(inside)) {
            fs::copy_file(entry.path(), outside / entry.path().filename(), fs::copy_options::overwrite_existing);
        }
        log = _container.ReadLog(kModule);
    }
    EXPECT_FALSE(LoadLinesOf(log).empty());
    EXPECT_FALSE(LoadLinesOf(log).count(kDamaged));
    host->Signal(SIGTERM);
    EXPECT_EQ(host->Wait().exitStatus, 0) << host->Error();
}

TEST_F(LogSurroundingsTest, MakesAFolderAgainThatIsRemovedUnderIt) {
    Process host(_container.Host({"--threads", "2", "--lines", "0", "--lines-per-second", "5000", "--ack-fd", "3"}));
    host.Send("launch\n");
    const auto reached = [](uint64_t count) {
        return [count](const std::string& all) { return CountLines(all) >= count; };
    };
    ASSERT_TRUE(host.WaitForAcknowledged(reached(1000))) << host.Error();
    // A flush may make the folder again while it is being removed.
    std::error_code error;
    do {
        fs::remove_all(_container.Caches(), error);
    } while (error);
    const uint64_t before = CountLines(host.Acknowledged());
    ASSERT_TRUE(host.WaitForAcknowledged(reached(before + 4000))) << host.Error();
    host.Signal(SIGTERM);
    EXPECT_EQ(host.Wait().exitStatus, 0) << host.Error();

    const auto lines = LoadLinesOf(_container.ReadLog(kModule));
    ASSERT_EQ(lines.size(), 2u);
    for (const auto& [thread, numbers] : lines) {
        EXPECT_EQ(numbers, Numbers(numbers.front(), numbers.back())) << "thread " << thread;
    }
}

// Without its mapped file the block lies in memory: flushed parts are kept, the rest dies with the process.
TEST_F(LogSurroundingsTest, FallsBackToMemoryWithoutAMappedFile) {
    fs::create_directories(_container.MappedFile(kModule));
    RunLoad();
    EXPECT_THAT(_said, HasSubstr("Game.mmap3) fail: Is a directory"));
    const auto lines = LoadLinesOf(_container.ReadLog(kModule));
    ASSERT_EQ(lines.size(), 2u);
    for (const auto& [thread, numbers] : lines)
        EXPECT_EQ(numbers, Numbers(1, numbers.back())) << "thread " << thread;
}

// Whatever stands in the mapped files at start, what is logged then is whole.
TEST_F(LogSurroundingsTest, TakesForeignMappedFilesAsTheyAre) {
    std::string noise(kBlockSize, '\0');
    uint32_t state = 1;
    for (char& byte : noise)
        byte = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
    noise[0] = 'x';
    const struct {
        const char* what;
        std::string content;
    } kContents[] = {
        {"empty file", ""},
        {"no header", noise},
        {"shorter than a block", LeftOverHeader(7, 40) + noise.substr(0, 40)},
        {"payload of noise", LeftOverHeader(9, 5000) + noise.substr(0, kBlockSize - 73)},
        {"enciphered payload of noise", LeftOverHeader(7, 5003) + noise.substr(0, kBlockSize - 73)},
        {"empty payload", LeftOverHeader(7, 0) + std::string(kBlockSize - 73, '\0')},
        {"the longest payload that leaves room for its end",
         LeftOverHeader(9, kBlockSize - 74) + std::string(kBlockSize - 73, '\0')},
        {"longer than a block", LeftOverHeader(9, 100) + noise + noise},
    };
    for (const auto& [what, content] : kContents) {
        SCOPED_TRACE(what);
        fs::remove_all(_container.Home());
        WriteWholeFile(_container.MappedFile(kModule), content);
        WriteWholeFile(_container.Caches() / "Game.journal3", noise + noise);
        RunLoad();
        ExpectWholeLoad();
    }
}

// A length that no block can have is the one content that ends the process, with words that name the cause.
TEST_F(LogSurroundingsTest, EndsByAnAssertionAtALengthBeyondTheBlock) {
    WriteWholeFile(_container.MappedFile(kModule),
                   LeftOverHeader(9, kBlockSize - 72) + std::string(kBlockSize - 73, '\0'));
    Process host(_container.Host(kLoad));
    host.Send("launch\n");
    EXPECT_EQ(host.Wait().signal, SIGABRT);
    EXPECT_THAT(host.Error(), HasSubstr("_nLenght <= MaxLength()"));
}

}  // namespace
}  // namespace EndToEnd
