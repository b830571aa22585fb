// What the second launch with the same user costs the main thread, to the end of the plugins' last stage, with servers
// that nobody reaches: wall time, and how often it waits for the disk or for the network.

#include <dlfcn.h>
#include <fcntl.h>
#include <netdb.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <string>

#include "Orvane/RunTime.h"
#include "Support/Ratio.h"

namespace {

constexpr int kLaunches = 21;

int g_syncs = 0, g_renames = 0, g_connects = 0, g_lookups = 0;

void Count(int& calls) {
    if (gettid() == getpid()) ++calls;
}

}  // namespace

// The system's calls, as every library of the process finds them.
extern "C" {
int fsync(int file) {
    Count(g_syncs);
    return static_cast<int>(syscall(SYS_fsync, file));
}
int fdatasync(int file) {
    Count(g_syncs);
    return static_cast<int>(syscall(SYS_fdatasync, file));
}
int msync(void* address, size_t length, int flags) {
    Count(g_syncs);
    return static_cast<int>(syscall(SYS_msync, address, length, flags));
}
int renameat(int oldFolder, const char* oldName, int newFolder, const char* newName) noexcept {
    Count(g_renames);
    return static_cast<int>(syscall(SYS_renameat2, oldFolder, oldName, newFolder, newName, 0));
}
int rename(const char* oldName, const char* newName) noexcept {
    return renameat(AT_FDCWD, oldName, AT_FDCWD, newName);
}
int connect(int socket, const sockaddr* address, socklen_t length) {
    Count(g_connects);
    return static_cast<int>(syscall(SYS_connect, socket, address, length));
}
int getaddrinfo(const char* node, const char* service, const addrinfo* hints, addrinfo** result) {
    Count(g_lookups);
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
// calls of both.
int Launch(bool isFirst) {
    const Seconds begin = Now();
    if (!dlopen(ORVANE_LIBRARY, RTLD_NOW | RTLD_GLOBAL)) return 1;
    for (const char* plugin : {"/libPell.so", "/libRavel.so", "/libSample.so"})
        if (!dlopen((std::string(ORVANE_PLUGIN_FOLDER) + plugin).c_str(), RTLD_NOW)) return 1;
    const Seconds loaded = Now(), ownLoaded = OwnTime();
    auto* const lifecycle = static_cast<orvane_object*>(
        orvane_class_perform(orvane_class_lookup("OrvaneAppLifecycle"), "sharedInstance", nullptr));
    if (!orvane_object_perform(lifecycle, "application:didFinishLaunchingWithOptions:", nullptr)) return 1;
    const Seconds launched = Now(), ownLaunched = OwnTime();
    printf("%f %f %f %d %d %d %d\n", (loaded - begin) * 1e3, (launched - loaded) * 1e3, (ownLaunched - ownLoaded) * 1e3,
           g_syncs, g_renames, g_connects, g_lookups);
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
    int syncs = 0, renames = 0, connects = 0, lookups = 0;
};

bool Run(const char* program, const char* which, Result& result) {
    FILE* const child = popen((std::string("exec '") + program + "' " + which).c_str(), "re");
    if (!child) return false;
    const int read = fscanf(child, "%lf %lf %lf %d %d %d %d", &result.load, &result.launch, &result.run, &result.syncs,
                            &result.renames, &result.connects, &result.lookups);
    return pclose(child) == 0 && read == 7;
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
    std::vector<double> loads, launches, runs;
    Result sum;
    bool isDone = Run(self, "first", first);
    for (int i = 0; isDone && i < kLaunches; ++i) {
        Result one;
        isDone = Run(self, "next", one);
        loads.push_back(one.load);
        launches.push_back(one.launch);
        runs.push_back(one.run);
        sum.syncs += one.syncs;
        sum.renames += one.renames;
        sum.connects += one.connects;
        sum.lookups += one.lookups;
    }
    if (!isDone) {
        fprintf(stderr, "a launch failed\n");
        return 1;
    }
    printf("the main thread, %d launches      median    highest  wanted\n", kLaunches);
    const auto print = [](const char* what, const std::vector<double>& times, const char* wanted) {
        printf("  %-32s %6.2f ms %6.2f ms  %s\n", what, Median(times), *std::max_element(times.begin(), times.end()),
               wanted);
    };
    print("library and three plugins loaded", loads, "");
    print("launch", launches, "<= 10 ms");
    print("launch, on the processor", runs, "");
    printf("  syncs %d, renames %d, connects %d, lookups %d in all          wanted: 0\n", sum.syncs, sum.renames,
           sum.connects, sum.lookups);
    printf("  the first launch, which stores the user: %.2f ms, %d syncs, %d renames\n", first.launch, first.syncs,
           first.renames);
    return 0;
}
