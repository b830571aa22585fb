// Bundles under processes that die, and under processes and threads that write at once.
#include <gmock/gmock.h>
#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "Storage/Bundle/BundleImpl.h"
#include "Support/CapturedConsole.h"
#include "Support/TestContainer.h"

namespace Quern {
namespace {

using OrvaneTest::CacheFolder;
using OrvaneTest::CapturedConsole;

constexpr unsigned kPatience = 60;  // seconds until a child counts as hanging

// Runs the body in a process of its own, which is killed if it hangs.
pid_t Fork(const std::function<void()>& body) {
    const pid_t child = fork();
    if (child != 0) return child;
    alarm(kPatience);
    body();
    _exit(0);
}

int Wait(pid_t child) {
    int status = -1;
    waitpid(child, &status, 0);
    return status;
}

void SaveForever(const std::string& path, int from, int progress) {
    BundleImpl bundle(path.c_str());
    bundle.SetCache("s", "filler", std::string(3000, 'x').c_str());
    for (int number = from;; ++number) {
        bundle.Set("s", "number", number);
        if (write(progress, &number, sizeof number) != sizeof number) _exit(1);
    }
}

// What the next start finds, as a word.
std::string Find(const std::string& path, int saved) {
    CapturedConsole console;
    BundleImpl bundle(path.c_str());
    const int number = bundle.Get("s", "number", -1);
    if (number == saved) return "old content";
    if (number == saved + 1) return "new content";
    if (number != -1) return "another number";
    for (const std::string& line : console.Take()) {
        if (line.find("kx_symmetry_decrypt2 failed") != std::string::npos) return "key moved on";
        if (line.starts_with("Error config file")) return "file cut short";
    }
    return "nothing found, nothing said";
}

TEST(BundleProcessTest, AKillDuringASaveLeavesWhatIsStated) {
    constexpr int kKills = 200;
    const std::string path = CacheFolder() + "/game.config";
    std::mt19937 random(std::random_device{}());
    std::map<std::string, int> kinds;
    int saved = 0;
    for (int kill = 0; kill < kKills; ++kill) {
        int progress[2];
        ASSERT_EQ(pipe(progress), 0);
        const pid_t writer = Fork([&] { SaveForever(path, saved + 1, progress[1]); });
        close(progress[1]);
        ASSERT_EQ(read(progress[0], &saved, sizeof saved), static_cast<ssize_t>(sizeof saved));
        usleep(std::uniform_int_distribution<useconds_t>(0, 3000)(random));
        ::kill(writer, SIGKILL);
        EXPECT_EQ(WTERMSIG(Wait(writer)), SIGKILL);
        while (read(progress[0], &saved, sizeof saved) > 0) {
        }
        close(progress[0]);

        int result[2];
        ASSERT_EQ(pipe(result), 0);
        const pid_t reader = Fork([&] {
            const std::string kind = Find(path, saved);
            _exit(write(result[1], kind.data(), kind.size()) > 0 ? 0 : 1);
        });
        close(result[1]);
        char kind[64] = {};
        EXPECT_GT(read(result[0], kind, sizeof kind - 1), 0);
        close(result[0]);
        EXPECT_EQ(Wait(reader), 0);
        ++kinds[kind];
    }
    for (const auto& [kind, count] : kinds)
        printf("%s: %d of %d kills\n", kind.c_str(), count, kKills);
    EXPECT_EQ(kinds["another number"], 0);
    EXPECT_EQ(kinds["file cut short"], 0);
    EXPECT_EQ(kinds["nothing found, nothing said"], 0);
    EXPECT_GT(kinds["old content"] + kinds["new content"], 0);
}

TEST(BundleProcessTest, TwoProcessesOfEightThreadsShareAFile) {
    constexpr int kThreads = 8;
    constexpr int kRounds = 12;
    const std::string path = CacheFolder() + "/game.config";
    CapturedConsole console;
    const auto writer = [&path](int process) {
        BundleImpl bundle(path.c_str());
        std::vector<std::thread> threads;
        for (int thread = 0; thread < kThreads; ++thread) {
            threads.emplace_back([&bundle, process, thread] {
                const std::string key = "thread" + std::to_string(thread);
                for (int round = 1; round <= kRounds; ++round) {
                    if (!bundle.Set("s", key.c_str(), process * 1000 + round)) _exit(1);
                    if (bundle.Get("s", key.c_str(), 0) != process * 1000 + round) _exit(2);
                    AArray keys;
                    bundle.GetAllKeys("s", &keys);
                    if (keys.Count() < 1 || !bundle.IsContainKey("s", key.c_str())) _exit(3);
                }
            });
        }
        for (std::thread& thread : threads)
            thread.join();
        _exit(0);  // the object is not deleted, as that of the default bundle never is
    };
    // In a process nothing races; of two the one that saves last wins, unless their keys and files are mixed.
    const pid_t first = Fork([&] { writer(1); });
    const pid_t second = Fork([&] { writer(2); });
    EXPECT_EQ(Wait(first), 0);
    EXPECT_EQ(Wait(second), 0);
    BundleImpl bundle(path.c_str());
    for (int thread = 0; thread < kThreads; ++thread) {
        const int value = bundle.Get("s", ("thread" + std::to_string(thread)).c_str(), 0);
        const int round = value % 1000;
        EXPECT_TRUE(value == 0 || (value / 1000 >= 1 && value / 1000 <= 2 && round >= 1 && round <= kRounds)) << value;
    }
}

}  // namespace
}  // namespace Quern
