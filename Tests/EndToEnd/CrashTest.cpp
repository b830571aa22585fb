// orvane-crash-test: kills the host again and again over the same container, then looks for every acknowledged line.
#include <getopt.h>

#include <cstdio>
#include <cstdlib>
#include <map>
#include <memory>
#include <random>

#include "CrashCycle.h"
#include "CrashVerdict.h"

using namespace EndToEnd;

namespace {

constexpr const char* kUsage =
    R"(usage: orvane-crash-test [options]

Starts orvane-host, kills it with SIGKILL at a random moment (while it starts and restores the former block, among the
lines, around a flush), and so on over the same container. Then reads the whole log and checks that every line whose log
call had returned is there exactly once, byte for byte, in its thread's order.

  --cycles N             kills (default: 15)
  --threads N            threads that log (default: 4)
  --mode N               "LogMode", 1 or 2 (default: 2)
  --lines-per-second N   pace of each thread; 0: as fast as it goes (default: 0)
  --seed N               for the same draws again (default: a new one, which is printed)
  --help                 show this

Exit status: 0 if nothing was missing, 1 if something was, 2 for a wrong command line.
)";

struct Arguments {
    unsigned cycles = 15;
    uint64_t seed = std::random_device()();
    CrashPlan plan;
};

// False for a wrong command line.
bool Parse(int count, char** words, Arguments& out) {
    const option options[] = {
        {"cycles", required_argument, nullptr, 'c'},
        {"threads", required_argument, nullptr, 't'},
        {"mode", required_argument, nullptr, 'm'},
        {"lines-per-second", required_argument, nullptr, 'p'},
        {"seed", required_argument, nullptr, 's'},
        {"help", no_argument, nullptr, 'h'},
        {nullptr, 0, nullptr, 0},
    };
    int code;
    while ((code = getopt_long(count, words, "", options, nullptr)) != -1) {
        if (code == 'h') {
            fputs(kUsage, stdout);
            exit(0);
        }
        if (code == '?') return false;
        char* end = nullptr;
        const unsigned long long number = strtoull(optarg, &end, 10);
        if (!*optarg || *end) {
            fprintf(stderr, "orvane-crash-test: not a number: %s\n", optarg);
            return false;
        }
        if (code == 'c') out.cycles = static_cast<unsigned>(number);
        if (code == 't') out.plan.threads = static_cast<unsigned>(number);
        if (code == 'm') out.plan.logMode = static_cast<int>(number);
        if (code == 'p') out.plan.linesPerSecond = static_cast<unsigned>(number);
        if (code == 's') out.seed = number;
    }
    return optind == count;
}

// A last life of the host, which brings back the block of the killed one.
bool RestoreLastBlock(const Container& container, const CrashPlan& plan) {
    Process host(container.Host({"--module", plan.module, "--log-mode", std::to_string(plan.logMode)}));
    host.Send("launch\nlog info the crash test ends\n");
    host.CloseInput();
    if (host.Wait().exitStatus == 0) return true;
    fprintf(stderr, "the last run failed; it said:\n%s", host.Error().c_str());
    return false;
}

int Judge(const Container& container, const CrashPlan& plan, std::vector<CycleRecord> cycles) {
    CrashVerdict verdict(std::move(cycles));
    for (const std::string& line : container.ReadLog(plan.module))
        verdict.Take(line);
    verdict.Finish();
    printf("acknowledged lines %llu, read back %llu, restored blocks %llu, overload markers %llu\n",
           static_cast<unsigned long long>(verdict.Acknowledged()), static_cast<unsigned long long>(verdict.ReadBack()),
           static_cast<unsigned long long>(verdict.RestoredBlocks()),
           static_cast<unsigned long long>(verdict.Markers()));
    for (const std::string& problem : verdict.Problems())
        fprintf(stderr, "FAILED: %s\n", problem.c_str());
    return verdict.Problems().empty() ? 0 : 1;
}

}  // namespace

int main(int count, char** words) {
    Arguments arguments;
    if (!Parse(count, words, arguments)) return 2;
    std::mt19937_64 random(arguments.seed);
    auto container = std::make_unique<Container>();
    CrashCycle cycle(*container, arguments.plan, random);

    constexpr uint64_t kSequencesOfCycle = 100000000;
    std::vector<CycleRecord> cycles;
    std::map<KillAt, unsigned> kills;
    std::string problem;
    for (unsigned i = 0; i < arguments.cycles && problem.empty(); ++i) {
        CycleRecord record{1 + i * kSequencesOfCycle, {}};
        const KillAt moment = kKillMoments[random() % std::size(kKillMoments)];
        if (cycle.Run(moment, record.firstSequence, record.acknowledged, problem)) ++kills[moment];
        cycles.push_back(std::move(record));
    }
    printf("mode %d, %u threads, seed %llu: kills", arguments.plan.logMode, arguments.plan.threads,
           static_cast<unsigned long long>(arguments.seed));
    for (const KillAt moment : kKillMoments)
        printf(" %u at %s,", kills[moment], NameOf(moment));
    printf(" %zu in all\n", cycles.size());
    if (!problem.empty()) fprintf(stderr, "FAILED: %s\n", problem.c_str());

    const bool isWhole = problem.empty() && RestoreLastBlock(*container, arguments.plan);
    const int result = Judge(*container, arguments.plan, std::move(cycles));
    if (isWhole && result == 0) return 0;
    fprintf(stderr, "what was left on disk is kept in %s\n", container->Home().c_str());
    (void)container.release();
    return 1;
}
