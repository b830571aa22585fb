// Runs the benchmarks of this folder and prints, of the same run, the ratios that matter: the best of the repetitions
// of each side, since what disturbs a run only ever slows it down.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace {

struct Ratio {
    const char* ours;
    const char* theirs;
    double goal;  // at most
};

constexpr Ratio kRatios[] = {
    {"WriteZyl/node", "WriteRapidxmlPrinter/node", 1.0},
    {"WriteZyl/node", "WriteRapidxmlWhole/node", 1.0},
    {"WriteZyl/node", "WriteLibxml2/node", 1.0},
    {"WriteZyl/attribute", "WriteRapidxmlPrinter/attribute", 1.0},
    {"WriteZyl/attribute", "WriteRapidxmlWhole/attribute", 1.0},
    {"WriteZyl/attribute", "WriteLibxml2/attribute", 1.0},
    {"OpenZyl/node", "ReadRapidxml/node", 1.2},
    {"ReadZyl/node", "ReadRapidxml/node", 1.2},
    {"ReadZyl/node", "ReadRapidxmlWhole/node", 1.0},
    {"OpenZyl/attribute", "ReadRapidxml/attribute", 1.2},
    {"ReadZyl/attribute", "ReadRapidxml/attribute", 1.2},
    {"ReadZyl/attribute", "ReadRapidxmlWhole/attribute", 1.0},
    {"ParseZyl/short", "ParseStrtoll/short", 1.3},
    {"ParseZyl/long", "ParseStrtoll/long", 1.3},
    {"ParseZyl/mixed", "ParseStrtoll/mixed", 1.3},
};

class BestReporter : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }

    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.run_type != Run::RT_Iteration || run.error_occurred) continue;
            double& best = _best[run.run_name.function_name];
            const double time = run.GetAdjustedCPUTime();
            if (best == 0 || time < best) best = time;
        }
    }

    void Finalize() override {
        printf("%-22s %-32s %9s %9s %7s %6s\n", "this library", "peer", "ns", "ns", "ratio", "goal");
        for (const Ratio& ratio : kRatios) {
            if (_best.count(ratio.ours) == 0 || _best.count(ratio.theirs) == 0) continue;
            const double ours = _best[ratio.ours];
            const double theirs = _best[ratio.theirs];
            printf("%-22s %-32s %9.0f %9.0f %7.2f %6.1f\n", ratio.ours, ratio.theirs, ours, theirs, ours / theirs,
                   ratio.goal);
        }
    }

private:
    std::map<std::string, double> _best;
};

}  // namespace

int main(int argc, char** argv) {
    // Short runs in random order, many times over: both sides of a ratio then meet the same machine.
    std::vector<char*> arguments(argv, argv + argc);
    std::string defaults[] = {"--benchmark_repetitions=30", "--benchmark_min_time=0.01",
                              "--benchmark_enable_random_interleaving=true"};
    for (std::string& argument : defaults)
        arguments.insert(arguments.begin() + 1, argument.data());
    int count = static_cast<int>(arguments.size());
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data())) return 1;
    BestReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    return 0;
}
