#include "Storage/File/FileReplacement.h"

#include <linux/capability.h>
#include <sys/resource.h>
#include <sys/syscall.h>

#include "Support/OwnMounts.h"
#include "Support/Test.h"

namespace Quern {
namespace {

namespace fs = std::filesystem;
using namespace OrvaneTest;

bool Replace(const std::string& path, const std::string& content) {
    FileReplacement file(path);
    return file.Prepare(content) && file.PutInPlace();
}

struct stat StateOf(const std::string& path) {
    struct stat state {};
    EXPECT_EQ(stat(path.c_str(), &state), 0) << path;
    return state;
}

class FileReplacementTest : public testing::Test {
protected:
    const std::string folder = CacheFolder() + "/folder", path = folder + "/file", next = folder + "/.file.orvane-new";
    FileReplacementTest() { fs::create_directory(folder); }
};

TEST_F(FileReplacementTest, KeepsWhatTheFileIsAndLeavesNothingBeside) {
    const std::string link = folder + "/link";
    EXPECT_TRUE(Replace(path, "one"));
    EXPECT_EQ(StateOf(path).st_mode & 0777, 0600u);
    ASSERT_EQ(chmod(path.c_str(), 0640), 0);
    fs::create_symlink(path, link);
    WriteFile(path + ".new", "a user's own");
    WriteFile(next, "what a killed process left, longer than what comes");
    chmod(next.c_str(), 0600);
    EXPECT_TRUE(Replace(link, "two"));
    EXPECT_EQ(ReadFile(path), "two");
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(StateOf(path).st_mode & 0777, 0640u);
    {
        FileReplacement dropped(path);
        EXPECT_TRUE(dropped.Prepare("never put in place"));
    }
    EXPECT_EQ(ReadFile(path), "two");
    EXPECT_THAT(FilesIn(folder), ElementsAre("file", "file.new", "link"));

    fs::create_directory(next);  // then it has another name
    EXPECT_TRUE(Replace(path, "three"));
    EXPECT_EQ(ReadFile(path), "three");
    const std::string longName = folder + "/" + std::string(250, 'n');  // whose new file's would be too long
    FileReplacement inPlace(longName);
    WriteFile(longName, "another's");
    EXPECT_FALSE(inPlace.Prepare("x"));
    EXPECT_EQ(ReadFile(longName), "another's");
    EXPECT_FALSE(Replace("", "x") || Replace(folder, "x") || Replace(folder + "/missing/file", "x"));
}

TEST_F(FileReplacementTest, TakesOverNobodysFileAndHasItsOwnerBeforeItsFirstByte) {
    ASSERT_TRUE(Replace(path, "old"));
    WriteFile(next, "open to all");
    chmod(next.c_str(), 0666);
    const int others = open(next.c_str(), O_RDWR);
    EXPECT_EQ(FileReplacement(path).LeftOver(), "");
    ASSERT_TRUE(Replace(path, "new"));
    EXPECT_EQ(write(others, "forged", 6), 6);
    EXPECT_EQ(ReadFile(path), "new");
    close(others);
    if (chown(path.c_str(), 12345, 12345) != 0) GTEST_SKIP() << "only root may give a file away";
    WriteFile(next, "its owner's");
    chmod(next.c_str(), 0600);
    ASSERT_EQ(chown(next.c_str(), 12345, 12345), 0);
    EXPECT_EQ(FileReplacement(path).LeftOver(), "its owner's");

    FileReplacement file(path);
    fs::rename(folder, folder + ".gone");  // where the path leads from now on is not what was looked at
    fs::create_directory(folder);
    WriteFile(path, "root's own");
    ASSERT_TRUE(file.Prepare("given"));
    EXPECT_EQ(StateOf(folder + ".gone/.file.orvane-new").st_uid, 12345u);
    ASSERT_TRUE(file.PutInPlace());
    EXPECT_EQ(StateOf(folder + ".gone/file").st_uid, 12345u);
    EXPECT_EQ(StateOf(path).st_uid, 0u);
    EXPECT_EQ(ReadFile(path), "root's own");
}

TEST_F(FileReplacementTest, TheNewFileOfAFileThatItsOwnerMayNotWriteIsNoForeignOne) {
    ASSERT_TRUE(Replace(path, "old"));
    chmod(path.c_str(), 0444);
    const auto save = [this](bool isFinish) {
        __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
        __user_cap_data_struct none[2]{};
        syscall(SYS_capset, &header, none);  // root, too, is like anyone else
        WriteFile(next, "left over");
        chmod(next.c_str(), 0444);
        FileReplacement file(path);
        _exit(isFinish ? file.Lock() && file.PutLeftOverInPlace() : file.Prepare("new") && file.PutInPlace());
    };
    EXPECT_EXIT(save(false), testing::ExitedWithCode(1), "");
    EXPECT_EQ(ReadFile(path), "new");
    EXPECT_EXIT(save(true), testing::ExitedWithCode(1), "");
    EXPECT_EQ(ReadFile(path), "left over");
}

TEST_F(FileReplacementTest, AFullDiskLeavesTheOldContent) {
    ASSERT_TRUE(Replace(path, "old"));
    signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
    const rlimit small{16, limit.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    EXPECT_FALSE(Replace(path, std::string(100, 'x')));
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    EXPECT_EQ(ReadFile(path), "old");
    EXPECT_THAT(FilesIn(folder), ElementsAre("file"));
}

TEST_F(FileReplacementTest, WritesInPlaceWhereItCannotReplace) {
    ORVANE_OWN_MOUNTS();
    ASSERT_EQ(mount("", folder.c_str(), "tmpfs", 0, "size=256k"), 0);
    const std::string old(150000, 'o');
    ASSERT_TRUE(Replace(path, old));
    EXPECT_FALSE(Replace(path, std::string(300000, 'n')));  // fits neither beside the old one nor in its place
    EXPECT_EQ(ReadFile(path), old);
    EXPECT_TRUE(Replace(path, std::string(160000, 'n')));
    EXPECT_EQ(ReadFile(path), std::string(160000, 'n'));

    ASSERT_EQ(mount(path.c_str(), path.c_str(), nullptr, MS_BIND, nullptr), 0);
    EXPECT_TRUE(Replace(path, "short"));
    EXPECT_EQ(ReadFile(path), "short");
    ASSERT_EQ(mount("", folder.c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    EXPECT_FALSE(Replace(path, "none"));
    EXPECT_THAT(FilesIn(folder), ElementsAre("file"));
}

TEST_F(FileReplacementTest, GoesPastAWriterWhoIsStopped) {
    int locked[2];
    ASSERT_EQ(pipe(locked), 0);
    const pid_t stopped = Fork([&] {
        FileReplacement file(path);
        const bool isReady = file.Prepare("left over");
        return write(locked[1], &isReady, 1) == 1 ? pause() : 0;
    });
    bool isReady = false;
    ASSERT_EQ(read(locked[0], &isReady, 1), 1);
    ASSERT_TRUE(isReady);
    {
        FileReplacement file(path);
        EXPECT_FALSE(file.Lock());
        kill(stopped, SIGKILL);
        Wait(stopped);
        ASSERT_TRUE(file.Prepare("past it"));
        EXPECT_EQ(file.LeftOver(), "left over");  // and not what this writer wrote
        ASSERT_TRUE(file.PutInPlace());
        EXPECT_EQ(ReadFile(path), "past it");
    }
    WriteFile(next + "-0123456789abcdef", "of one who went past and was killed");
    chmod((next + "-0123456789abcdef").c_str(), 0600);
    ASSERT_TRUE(FileReplacement(path).Lock());  // a look takes nothing away
    FileReplacement file(path);
    ASSERT_TRUE(file.Lock());
    EXPECT_EQ(file.LeftOver(9) + file.LeftOver(8), "left over");  // which has 9 bytes
    ASSERT_TRUE(file.PutLeftOverInPlace());
    EXPECT_EQ(ReadFile(path), "left over");
    ASSERT_TRUE(file.Prepare("next") && file.PutInPlace());
    EXPECT_THAT(FilesIn(folder), ElementsAre("file"));
}

}  // namespace
}  // namespace Quern
