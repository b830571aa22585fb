// Bundles under processes that die, and under processes and threads that write at once.
#include <sched.h>
#include <sys/mount.h>
#include <sys/ptrace.h>
#include <sys/resource.h>

#include "Storage/Bundle/BundleImpl.h"
#include "Support/Test.h"

namespace Quern {
namespace {

using namespace OrvaneTest;

constexpr int kValues = 100;

std::string SectionOf(int value) {
    return "s" + std::to_string(value / 25);
}

std::string KeyOf(int value) {
    return "key" + std::to_string(value % 25);
}

// A whole configuration in the place of the one before; each of its values is the number.
void Store(BundleImpl& bundle, int number) {
    Value configuration;
    for (int value = 0; value < kValues; ++value)
        configuration[SectionOf(value).c_str()][KeyOf(value).c_str()] = Value(number);
    BundleImpl::Batch batch(bundle);
    bundle.RemoveAll();
    bundle.Set(configuration);
}

// The number of the configuration; -1 for one that is not whole, or of several.
int Number(BundleImpl& bundle) {
    const int number = bundle.Get("s0", "key0", -1);
    for (int value = 0; value < kValues; ++value)
        if (bundle.Get(SectionOf(value).c_str(), KeyOf(value).c_str(), -1) != number) return -1;
    return number;
}

int SaveForever(const std::string& path, int from, int progress) {
    BundleImpl bundle(path.c_str());
    for (int number = from;; ++number) {
        Store(bundle, number);
        if (write(progress, &number, sizeof number) != sizeof number) return 1;
    }
}

// In memory most of a save is what a kill may fall into; on a disk it is the wait for the disk.
void WorkInMemory(const std::string& folder) {
    if (unshare(CLONE_NEWNS) == 0 && mount("", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
        mount("", folder.c_str(), "tmpfs", 0, nullptr) == 0)
        mkdir(CacheFolder().c_str(), 0700);
}

// Never deleted, which would write plain text.
BundleImpl& OpenAnother(const std::string& path) {
    static auto* const kept = new std::vector<BundleImpl*>;
    return *kept->emplace_back(new BundleImpl(path.c_str()));
}

// What the next start finds, as a word.
std::string Find(const std::string& path, int saved) {
    CapturedConsole console;
    const int number = Number(OpenAnother(path));
    for (const std::string& line : console.Take())
        if (line.starts_with("Error")) return line;
    return number == saved ? "old content" : number == saved + 1 ? "new content" : "another number";
}

TEST(BundleProcessTest, AKillDuringASaveLeavesTheOldContentOrTheNew) {
    const char* const wanted = getenv("ORVANE_STORE_KILLS");
    const int kKills = wanted ? atoi(wanted) : kIsSanitized ? 50 : 1000;
    const std::string path = CacheFolder() + "/game.config";
    const std::string library = path.substr(0, path.rfind("/Caches"));
    WorkInMemory(library);
    std::mt19937 random(std::random_device{}());
    std::map<std::string, int> kinds;
    int saved = 0;
    for (int kill = 0; kill < kKills; ++kill) {
        int progress[2];
        ASSERT_EQ(pipe(progress), 0);
        const pid_t writer = Fork([&] { return SaveForever(path, saved + 1, progress[1]); });
        close(progress[1]);
        ASSERT_EQ(read(progress[0], &saved, sizeof saved), static_cast<ssize_t>(sizeof saved));
        usleep(std::uniform_int_distribution<useconds_t>(0, 1000)(random));
        ::kill(writer, SIGKILL);
        EXPECT_EQ(WTERMSIG(Wait(writer)), SIGKILL);
        while (read(progress[0], &saved, sizeof saved) > 0) {
        }
        close(progress[0]);
        ++kinds[Find(path, saved)];
    }
    for (const auto& [kind, count] : kinds)
        printf("%s: %d of %d kills\n", kind.c_str(), count, kKills);
    EXPECT_EQ(kinds["old content"] + kinds["new content"], kKills);
    EXPECT_LE(FilesIn(library).size(), 3u);  // the caches, the keychain, and what is left of the last kill
    EXPECT_LE(FilesIn(CacheFolder()).size(), 2u);
}

TEST(BundleProcessTest, AKillAtAnySystemCallOfABatchLeavesTheOldConfigurationOrTheNew) {
    const std::string path = CacheFolder() + "/game.config";
    WorkInMemory(path.substr(0, path.rfind("/Caches")));
    CapturedConsole console;
    int saved = 1, calls = 0, taken = 0;
    Store(OpenAnother(path), saved);
    for (bool isThrough = false; !isThrough; calls += kIsSanitized ? 10 : 1) {
        const pid_t writer = Fork([&] {
            BundleImpl& bundle = OpenAnother(path);
            if (ptrace(PTRACE_TRACEME, 0, nullptr, nullptr) != 0) _exit(2);
            raise(SIGSTOP);
            Store(bundle, saved + 1);
            return 0;
        });
        int status = 0;
        ASSERT_EQ(waitpid(writer, &status, 0), writer);
        if (!WIFSTOPPED(status)) GTEST_SKIP() << "tracing is not allowed";
        for (int call = 0; call < calls && WIFSTOPPED(status); ++call) {
            ASSERT_EQ(ptrace(PTRACE_SYSCALL, writer, nullptr, nullptr), 0);
            ASSERT_EQ(waitpid(writer, &status, 0), writer);
        }
        isThrough = WIFEXITED(status);
        if (!isThrough) {
            kill(writer, SIGKILL);
            Wait(writer);
        }
        const int found = Number(OpenAnother(path));
        ASSERT_TRUE(found == saved || found == saved + 1) << found << " behind " << calls << " stops";
        taken += found != saved;
        saved = found;
    }
    EXPECT_GT(calls, 100);
    EXPECT_GT(taken, 1) << "no kill between the new key and the end";
}

TEST(BundleProcessTest, ReadersWaitForNobodyAndSeeWholeConfigurations) {
    const std::string path = CacheFolder() + "/game.config";
    CapturedConsole console;
    BundleImpl& bundle = OpenAnother(path);
    Store(bundle, 1);
    std::atomic<bool> isDone{false};
    std::atomic<long> reads{0}, faults{0}, waits{0};
    Threads readers(3, [&](int) {
        rusage before{}, after{};
        int last = Number(bundle);  // which has the machine bring in what reading needs
        getrusage(RUSAGE_THREAD, &before);
        while (!isDone) {
            const int number = bundle.Get("s3", "key24", -1);
            faults += number < last || !bundle.IsContainKey("s0", "key0");
            last = number;
            ++reads;
        }
        getrusage(RUSAGE_THREAD, &after);
        waits += after.ru_nvcsw - before.ru_nvcsw;
    });
    for (int number = 2; number < (kIsSanitized ? 50 : 300) || reads < 1000; ++number) {
        Store(bundle, number);
        EXPECT_EQ(Number(bundle), number);
    }
    isDone = true;
    readers.Join();
    EXPECT_EQ(faults, 0);
    EXPECT_TRUE(kIsSanitized || waits == 0) << waits << " of " << reads << " reads";
}

TEST(BundleProcessTest, TwoProcessesOfEightThreadsShareAFile) {
    constexpr int kThreads = 8;
    constexpr int kRounds = 12;
    const std::string path = CacheFolder() + "/game.config";
    CapturedConsole console;
    const auto writer = [&path](int process) {
        BundleImpl bundle(path.c_str());
        Threads(kThreads, [&](int thread) {
            const std::string key = "thread" + std::to_string(thread);
            for (int round = 1; round <= kRounds; ++round) {
                if (!bundle.Set("s", key.c_str(), process * 1000 + round)) _exit(1);
                if (bundle.Get("s", key.c_str(), 0) != process * 1000 + round) _exit(2);
                AArray keys;
                bundle.GetAllKeys("s", &keys);
                if (keys.Count() < 1 || !bundle.IsContainKey("s", key.c_str())) _exit(3);
            }
        }).Join();
        _exit(0);  // the object is not deleted, as that of the default bundle never is
        return 0;
    };
    // In a process nothing races; of two the one that saves last wins, unless their keys and files are mixed.
    const pid_t first = Fork([&] { return writer(1); });
    const pid_t second = Fork([&] { return writer(2); });
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
