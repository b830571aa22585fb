#include "Downloads.h"

#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>

#include "BarePeer.h"
#include "Support/Ratio.h"
#include "System/Application/MainRunLoop.h"
#include "System/WWW/Task/WWW.h"

namespace Orvane::Bench {
namespace {

using Quern::DownloadFileTask;
using Quern::WWW;

constexpr long long kGigabyte = 1LL << 30;

double ResidentMegabytes() {
    long pages = 0, ignored = 0;
    std::ifstream("/proc/self/statm") >> ignored >> pages;
    return static_cast<double>(pages) * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1 << 20);
}

struct Watched final : DownloadFileTask::Listener {
    void OnDownloadBegin(DownloadFileTask*, long long) override {}
    void OnDownloadProgress(DownloadFileTask*, long long, long long) override {
        ++progresses;
        mostMemory = std::max(mostMemory, ResidentMegabytes());
    }
    void OnDownloadFinished(DownloadFileTask*, Quern::WWWErrorCode error, long long) override {
        isGood = error == Quern::kWWWErrorNone;
        Quern::MainRunLoop::Current().Stop();
    }
    int progresses = 0;
    double mostMemory = 0;
    bool isGood = false;
};

}  // namespace

void MeasureDownload(const BenchServer& server) {
    std::string folder = (std::filesystem::temp_directory_path() / "orvane-bench-XXXXXX").string();
    if (!mkdtemp(folder.data())) return;
    const std::string url = server.Url(kGigabyte), path = folder + "/file";
    Watched watched;
    Seconds ourSeconds = 0;
    double memoryBefore = 0;
    const auto ours = [&] {
        DownloadFileTask* const task = WWW::DownloadFile(url.c_str(), path.c_str());
        task->SetListener(&watched);
        memoryBefore = memoryBefore > 0 ? memoryBefore : ResidentMegabytes();
        const Seconds begin = Now();
        task->Resume();
        Quern::MainRunLoop::Current().Run();
        ourSeconds += Now() - begin;
        WWW::Destroy(task);
        if (!watched.isGood) printf("a download failed\n");
        std::filesystem::remove(path);
    };
    const auto bare = [&] {
        if (!DownloadHere(url, path)) printf("a bare download failed\n");
        std::filesystem::remove(path);
    };
    Print("1 GB to a file / bare libcurl, default buffers", Compare(7, 1 << 20, ours, bare), "<= 1.0");
    printf("  %.1f calls of progress a second (wanted <= 60), memory grows by %.2f MB (wanted <= 2)\n",
           watched.progresses / ourSeconds, watched.mostMemory - memoryBefore);
    std::filesystem::remove_all(folder);
}

int ExitInFlight(const char* url) {
    constexpr int kTransfers = 8;
    for (int i = 0; i < kTransfers; ++i)
        WWW::Request(url)->Get();
    WWW::Request("http://name.that.hangs.test/")->Get();
    usleep(50000);
    const Seconds now = Now();
    if (write(3, &now, sizeof now) != sizeof now) return 1;
    exit(0);
}

void MeasureExit(const BenchServer& server) {
    std::vector<double> milliseconds;
    for (int round = 0; round < 11; ++round) {
        int out[2];
        if (pipe(out) != 0) return;
        const pid_t child = fork();
        if (child == 0) {
            dup2(out[1], 3);
            execl("/proc/self/exe", "bench-www", "exit", server.Url(64LL << 30).c_str(), nullptr);
            _exit(127);
        }
        Seconds begin = 0;
        if (read(out[0], &begin, sizeof begin) != sizeof begin) printf("the child failed\n");
        waitpid(child, nullptr, 0);
        milliseconds.push_back((Now() - begin) * 1e3);
        close(out[0]);
        close(out[1]);
    }
    printf("exit with 8 transfers and a lookup in flight: %.1f ms at the median (wanted <= 100)\n",
           Median(milliseconds));
}

}  // namespace Orvane::Bench
