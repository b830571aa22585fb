// orvane-crash-test: kills the host again and again over the same container, then looks for every acknowledged line.
#include <cinttypes>

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

Exit status: 0 if nothing was missing, 1 if something was, 2 for a wrong command line.
)";

struct Arguments {
    uint64_t cycles = 15, seed = std::random_device()();
    bool isFresh = false;
    CrashPlan plan;
};

// False for a wrong command line.
bool Parse(int count, char** words, Arguments& out) {
    const std::map<std::string, uint64_t*> numbers = {{"--cycles", &out.cycles},
                                                      {"--threads", &out.plan.threads},
                                                      {"--mode", &out.plan.logMode},
                                                      {"--lines-per-second", &out.plan.linesPerSecond},
                                                      {"--seed", &out.seed}};
    for (int i = 1; i < count; ++i) {
        const auto number = numbers.find(words[i]);
        if (words[i] == std::string("--fresh")) {
            out.isFresh = true;
        } else if (number == numbers.end() || ++i == count || sscanf(words[i], "%" SCNu64, number->second) != 1) {
            fputs(kUsage, stderr);
            return false;
        }
    }
    return true;
}

// A last life of the host, which brings back the block of the killed one.
bool RestoreLastBlock(const Container& container, const CrashPlan& plan) {
    Process host(container.Host({"--module", plan.module, "--log-mode", std::to_string(plan.logMode)}));
    host.Send("launch\nlog info the crash test ends\n");
    host.CloseInput();
    if (host.Wait().status == 0) return true;
    fprintf(stderr, "the last run failed; it said:\n%s", host.Error().c_str());
    return false;
}

// Whether the log has what it must have.
bool Judge(const Container& container, const CrashPlan& plan, std::vector<LastAcknowledged> cycles,
           CrashTotals& totals) {
    CrashVerdict verdict(std::move(cycles), plan.linesPerSecond == 0, totals);
    for (const std::string& line : container.ReadLog(plan.module))
        verdict.Take(line);
    verdict.Finish();
    for (const std::string& problem : verdict.Problems())
        fprintf(stderr, "FAILED: %s\n", problem.c_str());
    return verdict.Problems().empty();
}

// The lives of a host that is killed, and what they left.
class CrashTest {
public:
    explicit CrashTest(const Arguments& arguments) : _arguments(arguments), _random(arguments.seed) {}

    // Every life over the same container, which is read once the last block has been brought back; or, fresh, each life
    // in a container of its own, which is read at once. What a failure left on disk stays there.
    bool Run() {
        for (uint64_t round = 0; round < (_arguments.isFresh ? _arguments.cycles : 1); ++round) {
            auto container = std::make_unique<Container>();
            CrashCycle cycle(*container, _arguments.plan, _random);
            std::vector<LastAcknowledged> cycles;
            bool isWhole = true;
            while (isWhole && cycles.size() < (_arguments.isFresh ? 1 : _arguments.cycles))
                isWhole = Live(cycle, cycles);
            isWhole = isWhole && (_arguments.isFresh || RestoreLastBlock(*container, _arguments.plan));
            if (Judge(*container, _arguments.plan, std::move(cycles), _totals) && isWhole) continue;
            fprintf(stderr, "what was left on disk is kept in %s\n", container.release()->Home().c_str());
            return false;
        }
        return true;
    }

    void Print() const {
        std::string kills;
        for (const auto& [moment, count] : _kills)
            kills += " " + std::to_string(count) + " at " + kKillMoments[static_cast<int>(moment)] + ",";
        printf("mode %" PRIu64 ", %" PRIu64 " threads, seed %" PRIu64 ": kills%s\nacknowledged lines %" PRIu64
               ", read back %" PRIu64 ", restored blocks %" PRIu64 ", overload markers %" PRIu64 "\n",
               _arguments.plan.logMode, _arguments.plan.threads, _arguments.seed, kills.c_str(), _totals.acknowledged,
               _totals.readBack, _totals.restoredBlocks, _totals.markers);
    }

private:
    bool Live(CrashCycle& cycle, std::vector<LastAcknowledged>& cycles) {
        const auto moment = static_cast<KillAt>(_random() % std::size(kKillMoments));
        const uint64_t first = 1 + cycles.size() * kSequencesOfCycle;
        std::string problem;
        if (cycle.Run(moment, first, cycles.emplace_back(), problem)) ++_kills[moment];
        if (!problem.empty()) fprintf(stderr, "FAILED: %s\n", problem.c_str());
        return problem.empty();
    }

    const Arguments& _arguments;
    std::mt19937_64 _random;
    std::map<KillAt, unsigned> _kills;
    CrashTotals _totals;
};

}  // namespace

int main(int count, char** words) {
    Arguments arguments;
    if (!Parse(count, words, arguments)) return 2;
    CrashTest test(arguments);
    const bool isGood = test.Run();
    test.Print();
    return isGood ? 0 : 1;
}
