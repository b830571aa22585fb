// orvane-crash-test: kills the host again and again over the same container, then looks for every acknowledged line.
#include <getopt.h>

#include <cstdio>

#include "CrashCycle.h"
#include "CrashVerdict.h"
#include "Support/Test.h"

using namespace EndToEnd;

namespace {

constexpr const char* kUsage =
    R"(usage: orvane-crash-test [options]

Starts orvane-host, kills it with SIGKILL at a random moment (while it starts and restores the former block, among the
lines, around a flush), and so on over the same container. Then reads the whole log and checks that every line whose log
call had returned is there exactly once, byte for byte, in its thread's order. As fast as they go, lines may fill the
block before it is flushed: then as many may be missing as it has markers of a full block. A pace allows none.

  --cycles N             kills (default: 15)
  --threads N            threads that log (default: 4)
  --mode N               "LogMode", 1 or 2 (default: 2)
  --lines-per-second N   pace of each thread; 0: as fast as it goes (default: 0)
  --fresh                each life in a container of its own, read as the kill left it, without another start
  --seed N               for the same draws again (default: a new one, which is printed)
  --help                 show this

Exit status: 0 if nothing was missing, 1 if something was, 2 for a wrong command line.
)";

struct Arguments {
    unsigned cycles = 15;
    uint64_t seed = std::random_device()();
    bool isFresh = false;
    CrashPlan plan;
};

// False for a wrong command line.
bool Parse(int count, char** words, Arguments& out) {
    const option options[] = {
        {"cycles", required_argument, nullptr, 'c'}, {"threads", required_argument, nullptr, 't'},
        {"mode", required_argument, nullptr, 'm'},   {"lines-per-second", required_argument, nullptr, 'p'},
        {"fresh", no_argument, nullptr, 'f'},        {"seed", required_argument, nullptr, 's'},
        {"help", no_argument, nullptr, 'h'},         {nullptr, 0, nullptr, 0},
    };
    int code;
    while ((code = getopt_long(count, words, "", options, nullptr)) != -1) {
        if (code == 'h') {
            fputs(kUsage, stdout);
            exit(0);
        }
        if (code == '?') return false;
        if (code == 'f') {
            out.isFresh = true;
            continue;
        }
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

struct Totals {
    uint64_t acknowledged = 0, readBack = 0, restoredBlocks = 0, markers = 0;
};

// Whether the log has what it must have.
bool Judge(const Container& container, const CrashPlan& plan, std::vector<CycleRecord> cycles, Totals& totals) {
    CrashVerdict verdict(std::move(cycles), plan.linesPerSecond == 0);
    for (const std::string& line : container.ReadLog(plan.module))
        verdict.Take(line);
    verdict.Finish();
    totals.acknowledged += verdict.Acknowledged();
    totals.readBack += verdict.ReadBack();
    totals.restoredBlocks += verdict.RestoredBlocks();
    totals.markers += verdict.Markers();
    for (const std::string& problem : verdict.Problems())
        fprintf(stderr, "FAILED: %s\n", problem.c_str());
    return verdict.Problems().empty();
}

using Kills = std::map<KillAt, unsigned>;

// The lives of a host that is killed, and what they left.
class CrashTest {
public:
    explicit CrashTest(const Arguments& arguments) : _arguments(arguments), _random(arguments.seed) {}

    // Every life over the same container, which is read once the last block has been brought back.
    bool RunOverOneContainer() {
        auto container = std::make_unique<Container>();
        CrashCycle cycle(*container, _arguments.plan, _random);
        std::vector<CycleRecord> cycles;
        bool isWhole = true;
        for (unsigned i = 0; i < _arguments.cycles && isWhole; ++i)
            isWhole = Live(cycle, cycles);
        isWhole = isWhole && RestoreLastBlock(*container, _arguments.plan);
        return Keep(Judge(*container, _arguments.plan, std::move(cycles), _totals) && isWhole, container);
    }

    // Every life in a container of its own, which is read at once.
    bool RunInFreshContainers() {
        for (unsigned i = 0; i < _arguments.cycles; ++i) {
            auto container = std::make_unique<Container>();
            CrashCycle cycle(*container, _arguments.plan, _random);
            std::vector<CycleRecord> cycles;
            const bool isWhole = Live(cycle, cycles);
            if (!Keep(Judge(*container, _arguments.plan, std::move(cycles), _totals) && isWhole, container))
                return false;
        }
        return true;
    }

    void Print() const {
        printf("mode %d, %u threads, seed %llu: kills", _arguments.plan.logMode, _arguments.plan.threads,
               static_cast<unsigned long long>(_arguments.seed));
        unsigned all = 0;
        for (const auto& [moment, count] : _kills) {
            printf(" %u at %s,", count, NameOf(moment));
            all += count;
        }
        printf(
            " %u in all\nacknowledged lines %llu, read back %llu, restored blocks %llu, overload markers %llu\n", all,
            static_cast<unsigned long long>(_totals.acknowledged), static_cast<unsigned long long>(_totals.readBack),
            static_cast<unsigned long long>(_totals.restoredBlocks), static_cast<unsigned long long>(_totals.markers));
    }

private:
    bool Live(CrashCycle& cycle, std::vector<CycleRecord>& cycles) {
        constexpr uint64_t kSequencesOfCycle = 100000000;
        CycleRecord record{1 + cycles.size() * kSequencesOfCycle, {}};
        const KillAt moment = kKillMoments[_random() % std::size(kKillMoments)];
        std::string problem;
        if (cycle.Run(moment, record.firstSequence, record.acknowledged, problem)) ++_kills[moment];
        cycles.push_back(std::move(record));
        if (!problem.empty()) fprintf(stderr, "FAILED: %s\n", problem.c_str());
        return problem.empty();
    }

    // What a failure left on disk stays there.
    static bool Keep(bool isGood, std::unique_ptr<Container>& container) {
        if (isGood) return true;
        fprintf(stderr, "what was left on disk is kept in %s\n", container->Home().c_str());
        (void)container.release();
        return false;
    }

    const Arguments& _arguments;
    std::mt19937_64 _random;
    Kills _kills;
    Totals _totals;
};

}  // namespace

int main(int count, char** words) {
    Arguments arguments;
    if (!Parse(count, words, arguments)) return 2;
    CrashTest test(arguments);
    const bool isGood = arguments.isFresh ? test.RunInFreshContainers() : test.RunOverOneContainer();
    test.Print();
    return isGood ? 0 : 1;
}
