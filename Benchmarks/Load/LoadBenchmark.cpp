// What the library costs a process that loads it and launches with three plugins, above one that loads the same
// dependencies and nothing of ours.

#include <dlfcn.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "Orvane/RunTime.h"
#include "Support/Ratio.h"

namespace {

using namespace Orvane::Bench;
namespace fs = std::filesystem;

constexpr int kRounds = 21;
constexpr const char* kPlugins[] = {"libPell.so", "libRavel.so", "libSample.so"};

struct Cost {
    double milliseconds;  // processor time of the whole process, user and system
    double megabytes;     // private memory, clean and dirty
};

Cost CostOfThisProcess() {
    rusage usage;
    getrusage(RUSAGE_SELF, &usage);
    const auto ms = [](const timeval& t) { return t.tv_sec * 1e3 + t.tv_usec / 1e3; };
    double kilobytes = 0;
    std::ifstream rollup("/proc/self/smaps_rollup");
    for (std::string line; std::getline(rollup, line);)
        if (line.starts_with("Private_Clean:") || line.starts_with("Private_Dirty:"))
            kilobytes += atof(line.c_str() + strlen("Private_Clean:"));
    return {ms(usage.ru_utime) + ms(usage.ru_stime), kilobytes / 1024};
}

bool Open(const std::string& path) {
    if (dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL)) return true;
    fprintf(stderr, "%s\n", dlerror());
    return false;
}

// The shared libraries of this process that are not of this project.
std::set<std::string> Dependencies() {
    std::set<std::string> found;
    std::ifstream maps("/proc/self/maps");
    for (std::string line; std::getline(maps, line);) {
        const size_t path = line.find('/');
        if (path == std::string::npos || line.find(".so") == std::string::npos) continue;
        const std::string file = line.substr(path);
        const bool isOurs = file.find("liborvanecore") != std::string::npos || file.starts_with(ORVANE_PLUGIN_FOLDER);
        if (!isOurs) found.insert(file);
    }
    return found;
}

int Launched(int out) {
    if (!Open(ORVANE_CORE_LIBRARY)) return 1;
    for (const char* plugin : kPlugins)
        if (!Open(std::string(ORVANE_PLUGIN_FOLDER) + "/" + plugin)) return 1;
    orvane_class* cls = orvane_class_lookup("OrvaneAppLifecycle");
    auto* lifecycle = static_cast<orvane_object*>(orvane_class_perform(cls, "sharedInstance", nullptr));
    void* const arguments[] = {nullptr, nullptr};
    if (!orvane_object_perform(lifecycle, "application:didFinishLaunchingWithOptions:", arguments)) return 1;
    const Cost cost = CostOfThisProcess();
    dprintf(out, "%f %f\n", cost.milliseconds, cost.megabytes);
    for (const std::string& file : Dependencies())
        dprintf(out, "%s\n", file.c_str());
    return 0;
}

int Empty(int out, const std::vector<std::string>& dependencies) {
    for (const std::string& file : dependencies)
        if (!Open(file)) return 1;
    const Cost cost = CostOfThisProcess();
    dprintf(out, "%f %f\n", cost.milliseconds, cost.megabytes);
    return 0;
}

// Runs this program anew with those words and gives the lines that it writes.
std::vector<std::string> Run(const std::vector<std::string>& words) {
    int ends[2];
    if (pipe(ends) != 0) return {};
    if (fork() == 0) {
        dup2(ends[1], 3);
        (void)!freopen("/dev/null", "w", stderr);
        std::vector<char*> arguments{const_cast<char*>("bench-load")};
        for (const std::string& word : words)
            arguments.push_back(const_cast<char*>(word.c_str()));
        arguments.push_back(nullptr);
        execv("/proc/self/exe", arguments.data());
        _exit(127);
    }
    close(ends[1]);
    FILE* in = fdopen(ends[0], "r");
    std::vector<std::string> lines;
    char line[4096];
    while (fgets(line, sizeof line, in)) {
        line[strcspn(line, "\n")] = '\0';
        lines.push_back(line);
    }
    fclose(in);
    int status;
    wait(&status);
    return status == 0 ? lines : std::vector<std::string>();
}

Cost Parse(const std::string& line) {
    Cost cost{};
    sscanf(line.c_str(), "%lf %lf", &cost.milliseconds, &cost.megabytes);
    return cost;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc > 1 && strcmp(argv[1], "launched") == 0) return Launched(3);
    if (argc > 1 && strcmp(argv[1], "empty") == 0) return Empty(3, {argv + 2, argv + argc});

    std::string home = (fs::temp_directory_path() / "orvane-bench-XXXXXX").string();
    if (!mkdtemp(home.data())) return 1;
    setenv("ORVANE_HOME", home.c_str(), 1);
    setenv("PELL_EVENTS", (home + "/events.jsonl").c_str(), 1);

    std::vector<double> milliseconds, megabytes, ratios;
    bool isGood = true;
    for (int round = -1; round < kRounds && isGood; ++round) {
        const std::vector<std::string> launched = Run({"launched"});
        if (!(isGood = !launched.empty())) break;
        std::vector<std::string> words{"empty"};
        words.insert(words.end(), launched.begin() + 1, launched.end());
        const std::vector<std::string> empty = Run(words);
        if (!(isGood = !empty.empty())) break;
        if (round < 0) continue;
        const Cost ours = Parse(launched[0]), floor = Parse(empty[0]);
        milliseconds.push_back(ours.milliseconds - floor.milliseconds);
        megabytes.push_back(ours.megabytes - floor.megabytes);
        ratios.push_back(ours.milliseconds / floor.milliseconds);
    }
    std::error_code ignored;
    fs::remove_all(home, ignored);
    if (!isGood) {
        fprintf(stderr, "a run failed\n");
        return 1;
    }
    printf("load and launch with three plugins, above the dependencies alone (medians of %d):\n", kRounds);
    printf("  processor time %.2f ms (%.2f times the floor's)   wanted <= 20 ms\n", Median(milliseconds),
           Median(ratios));
    printf("  private memory %.2f MB                            wanted <= 6 MB\n", Median(megabytes));
    return 0;
}
