#include "Storage/File/WholeFile.h"

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <string>

#include "Support/TestContainer.h"

namespace Quern {
namespace {

namespace fs = std::filesystem;
using OrvaneTest::CacheFolder;
using OrvaneTest::FilesIn;
using OrvaneTest::ReadFile;
using OrvaneTest::WriteFile;
using testing::ElementsAre;

bool Replace(const std::string& path, const std::string& content) {
    return FileReplacement(path.c_str(), content).PutInPlace();
}

TEST(FileReplacement, KeepsWhatTheFileIsAndLeavesNothingBeside) {
    const std::string path = CacheFolder() + "/file", link = CacheFolder() + "/link";
    EXPECT_TRUE(Replace(path, "one"));
    ASSERT_EQ(chmod(path.c_str(), 0640), 0);
    fs::create_symlink(path, link);
    WriteFile(path + ".new", "what a killed process left, longer than what comes");
    EXPECT_TRUE(Replace(link, "two"));
    EXPECT_EQ(ReadFile(path), "two");
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(fs::status(path).permissions(), fs::perms(0640));
    { const FileReplacement dropped(path.c_str(), "never put in place"); }
    EXPECT_EQ(ReadFile(path), "two");
    EXPECT_THAT(FilesIn(CacheFolder()), ElementsAre("file", "link"));

    fs::create_directory(path + ".new");  // then it is written in place
    EXPECT_TRUE(Replace(path, "three"));
    EXPECT_EQ(ReadFile(path), "three");
    EXPECT_FALSE(Replace("", "x") || Replace(CacheFolder(), "x") || Replace(CacheFolder() + "/missing/file", "x"));
}

TEST(FileReplacement, AFullDiskLeavesTheOldContent) {
    const std::string path = CacheFolder() + "/file";
    ASSERT_TRUE(Replace(path, "old"));
    signal(SIGXFSZ, SIG_IGN);
    rlimit limit{};
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &limit), 0);
    const rlimit small{16, limit.rlim_max};
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    EXPECT_FALSE(Replace(path, std::string(100, 'x')));
    ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
    EXPECT_EQ(ReadFile(path), "old");
    EXPECT_THAT(FilesIn(CacheFolder()), ElementsAre("file"));
}

TEST(FileReplacement, ProcessesThatWriteAtOnceMixNothing) {
    const std::string path = CacheFolder() + "/file";
    constexpr int kProcesses = 4;
    constexpr size_t kSize = 20000;
    for (int process = 0; process < kProcesses; ++process) {
        if (fork() != 0) continue;
        bool done = true;
        for (int round = 0; round < 50; ++round) {
            done &= Replace(path, std::string(kSize + static_cast<size_t>(round), static_cast<char>('a' + process)));
            const std::string read = ReadFile(path);
            done &= read.size() >= kSize && read.find_first_not_of(read[0]) == std::string::npos;
        }
        _exit(done ? 0 : 1);
    }
    for (int process = 0; process < kProcesses; ++process) {
        int status = -1;
        wait(&status);
        EXPECT_EQ(status, 0);
    }
    EXPECT_THAT(FilesIn(CacheFolder()), ElementsAre("file"));
}

}  // namespace
}  // namespace Quern
