// Prints, behind Google Benchmark's own table, how one benchmark of a run compares with another of the same run.
#ifndef ORVANE_BENCHMARKS_SUPPORT_RATIOS_H
#define ORVANE_BENCHMARKS_SUPPORT_RATIOS_H

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <initializer_list>
#include <map>
#include <string>
#include <vector>

namespace Orvane::Benchmarks {

// A ratio of processor times: of the benchmark `ours` to the benchmark `peer`, by the names in the table.
struct Ratio {
    std::string ours;
    std::string peer;
};

// Keeps the shortest time of each benchmark over its repetitions.
class TimeKeeper : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override {
        for (const Run& run : runs) {
            if (run.error_occurred || run.run_type != Run::RT_Iteration) continue;
            const auto entry = _times.emplace(run.run_name.str(), run.GetAdjustedCPUTime()).first;
            entry->second = std::min(entry->second, run.GetAdjustedCPUTime());
        }
        ConsoleReporter::ReportRuns(runs);
    }
    void Print(const Ratio& ratio) const {
        const auto ours = _times.find(ratio.ours);
        const auto peer = _times.find(ratio.peer);
        if (ours == _times.end() || peer == _times.end()) return;
        std::printf("ratio %s / %s: %.2f\n", ratio.ours.c_str(), ratio.peer.c_str(), ours->second / peer->second);
    }

private:
    std::map<std::string, double> _times;
};

// What main returns.
inline int RunWithRatios(int argc, char** argv, std::initializer_list<Ratio> ratios) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    TimeKeeper keeper;
    benchmark::RunSpecifiedBenchmarks(&keeper);
    for (const Ratio& ratio : ratios)
        keeper.Print(ratio);
    return 0;
}

}  // namespace Orvane::Benchmarks

#endif
