// What the second launch with the same user costs the main thread, to the end of the plugins' last stage, with servers
// that nobody reaches: wall time, and how often it waits for the disk or for the network.

#include <dlfcn.h>
#include <fcntl.h>
#include <netdb.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>
#include <vector>

#include "Orvane/RunTime.h"
#include "Support/Ratio.h"

namespace {

constexpr int kLaunches = 21;
constexpr double kMostMilliseconds = 10;  // of the median launch
constexpr unsigned kPatience = 30;        // seconds that one launch may take, with all that it waits for

// What the main thread should not do.
enum Call { kSync, kRename, kLink, kConnect, kLookup, kCalls };
constexpr const char* kCallNames[kCalls] = {"syncs", "renames", "links", "connects", "lookups"};
int g_calls[kCalls] = {};

void Count(Call call) {
    if (gettid() == getpid()) ++g_calls[call];
}

}  // namespace

// The system's calls, as every library of the process finds them.
extern "C" {
int fsync(int file) {
    Count(kSync);
    return static_cast<int>(syscall(SYS_fsync, file));
}
int fdatasync(int file) {
    Count(kSync);
    return static_cast<int>(syscall(SYS_fdatasync, file));
}
int msync(void* address, size_t length, int flags) {
    Count(kSync);
    return static_cast<int>(syscall(SYS_msync, address, length, flags));
}
int renameat2(int oldFolder, const char* oldName, int newFolder, const char* newName, unsigned flags) noexcept {
    Count(kRename);
    return static_cast<int>(syscall(SYS_renameat2, oldFolder, oldName, newFolder, newName, flags));
}
int renameat(int oldFolder, const char* oldName, int newFolder, const char* newName) noexcept {
    return renameat2(oldFolder, oldName, newFolder, newName, 0);
}
int rename(const char* oldName, const char* newName) noexcept {
    return renameat2(AT_FDCWD, oldName, AT_FDCWD, newName, 0);
}
int linkat(int oldFolder, const char* oldName, int newFolder, const char* newName, int flags) noexcept {
    Count(kLink);
    return static_cast<int>(syscall(SYS_linkat, oldFolder, oldName, newFolder, newName, flags));
}
int link(const char* oldName, const char* newName) noexcept {
    return linkat(AT_FDCWD, oldName, AT_FDCWD, newName, 0);
}
int connect(int socket, const sockaddr* address, socklen_t length) {
    Count(kConnect);
    return static_cast<int>(syscall(SYS_connect, socket, address, length));
}
int getaddrinfo(const char* node, const char* service, const addrinfo* hints, addrinfo** result) {
    Count(kLookup);
    return reinterpret_cast<decltype(&getaddrinfo)>(dlsym(RTLD_NEXT, "getaddrinfo"))(node, service, hints, result);
}
}

namespace {

using namespace Orvane::Bench;

// The processor time that the calling thread has had.
Seconds OwnTime() {
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1e-9;
}

// One launch, told on standard output: milliseconds to load and to launch, those of the launch that it ran, and the
// calls of both. It ends by an alarm if it takes too long.
int Launch(bool isFirst) {
    alarm(kPatience);
    const Seconds begin = Now();
    if (!dlopen(ORVANE_LIBRARY, RTLD_NOW | RTLD_GLOBAL)) return 1;
    for (const char* plugin : {"/libPell.so", "/libRavel.so", "/libSample.so"})
        if (!dlopen((std::string(ORVANE_PLUGIN_FOLDER) + plugin).c_str(), RTLD_NOW)) return 1;
    const Seconds loaded = Now(), ownLoaded = OwnTime();
    auto* const lifecycle = static_cast<orvane_object*>(
        orvane_class_perform(orvane_class_lookup("OrvaneAppLifecycle"), "sharedInstance", nullptr));
    if (!orvane_object_perform(lifecycle, "application:didFinishLaunchingWithOptions:", nullptr)) return 1;
    const Seconds launched = Now(), ownLaunched = OwnTime();
    printf("%f %f %f", (loaded - begin) * 1e3, (launched - loaded) * 1e3, (ownLaunched - ownLoaded) * 1e3);
    for (const int calls : g_calls)
        printf(" %d", calls);
    fflush(stdout);
    // What the first one writes behind is there for the others.
    struct stat state {};
    const std::string defaults = std::string(getenv("ORVANE_HOME")) + "/Library/UserDefaults.json";
    while (isFirst && stat(defaults.c_str(), &state) != 0)
        usleep(1000);
    _exit(0);
}

struct Result {
    double load = 0, launch = 0, run = 0;
    int calls[kCalls] = {};
};

bool Run(const char* program, const char* which, Result& result) {
    FILE* const child = popen((std::string("exec '") + program + "' " + which).c_str(), "re");
    if (!child) return false;
    int read = fscanf(child, "%lf %lf %lf", &result.load, &result.launch, &result.run);
    for (int& calls : result.calls)
        read += fscanf(child, "%d", &calls);
    const int status = pclose(child);
    if (status == 0 && read == 3 + kCalls) return true;
    const bool isOverdue = WIFSIGNALED(status) && WTERMSIG(status) == SIGALRM;
    fprintf(stderr, "a launch failed: %s\n", isOverdue ? "it took too long" : "it did not come to its end");
    return false;
}

const char* Verdict(bool isMet) {
    return isMet ? "met" : "MISSED";
}

std::string Counted(const int* calls) {
    std::string text;
    for (int call = 0; call < kCalls; ++call)
        text += (call ? ", " : "") + std::to_string(calls[call]) + " " + kCallNames[call];
    return text;
}

void MakeGame(const std::string& home) {
    mkdir(home.c_str(), 0700);
    setenv("ORVANE_HOME", home.c_str(), 1);
    setenv("ORVANE_INFO_PLIST", (home + "/Info.plist").c_str(), 1);
    setenv("RAVEL_ACCOUNT", (home + "/account").c_str(), 1);
    setenv("PELL_EVENTS", (home + "/events.jsonl").c_str(), 1);
    std::ofstream(home + "/account") << "openid=someone\nchannel=7\n";
    // Addresses that are kept for documents: nobody answers there.
    std::ofstream(home + "/Info.plist")
        << "<plist version=\"1.0\"><dict><key>Orvane</key><dict><key>GameId</key><string>30045</string></dict>"
           "<key>OrvaneCore</key><dict><key>YarrowEnable</key><true/>"
           "<key>YarrowUrl</key><string>http://192.0.2.1/traceids</string>"
           "<key>RemoteConfigUrl</key><string>http://192.0.2.1</string></dict></dict></plist>\n";
}

}  // namespace

int main(int count, char** arguments) {
    if (count > 1) return Launch(strcmp(arguments[1], "first") == 0);
    char self[4096] = {};
    if (readlink("/proc/self/exe", self, sizeof self - 1) < 0) return 1;
    const char* const home = getenv("ORVANE_HOME");
    MakeGame(home ? home : "/tmp/bench-launch-" + std::to_string(getpid()));
    Result first;
    if (!Run(self, "first", first)) return 1;
    std::vector<double> loads, launches, runs;
    int calls[kCalls] = {};
    for (int i = 0; i < kLaunches; ++i) {
        Result one;
        if (!Run(self, "next", one)) return 1;
        loads.push_back(one.load);
        launches.push_back(one.launch);
        runs.push_back(one.run);
        for (int call = 0; call < kCalls; ++call)
            calls[call] += one.calls[call];
    }
    printf("the main thread, %d launches           median     highest  wanted\n", kLaunches);
    const auto print = [](const char* what, const std::vector<double>& times) {
        printf("  %-32s %6.2f ms   %6.2f ms", what, Median(times), *std::max_element(times.begin(), times.end()));
    };
    print("library and three plugins loaded", loads);
    printf("\n");
    print("launch", launches);
    printf("  <= %.0f ms: %s\n", kMostMilliseconds, Verdict(Median(launches) <= kMostMilliseconds));
    print("launch, on the processor", runs);
    const bool isQuiet = std::all_of(calls, calls + kCalls, [](int count) { return count == 0; });
    printf("\n  %s in all  0 of each: %s\n", Counted(calls).c_str(), Verdict(isQuiet));
    printf("  the first launch, which stores the user: %.2f ms, %s\n", first.launch, Counted(first.calls).c_str());
    return 0;
}
