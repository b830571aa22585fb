// Measures one thing against a floor, the least that the work can cost, or a peer, another library that does it, in the
// same run, on a machine that may be noisy.
#ifndef ORVANE_BENCHMARKS_SUPPORT_RATIO_H
#define ORVANE_BENCHMARKS_SUPPORT_RATIO_H

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <vector>

namespace Orvane::Bench {

using Seconds = double;

inline Seconds Now() {
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

struct Comparison {
    double ours;   // median time of one unit of work, in nanoseconds
    double other;  // the same of the floor or peer
    double ratio;  // median of the ratios of neighbouring rounds: noise that lasts longer than a round cancels out
};

inline double Median(std::vector<double> values) {
    std::nth_element(values.begin(), values.begin() + static_cast<long>(values.size() / 2), values.end());
    return values[values.size() / 2];
}

// Runs both in turn, `rounds` times after one warm-up. Each callable does `units` units of work.
template <typename Ours, typename Other>
Comparison Compare(int rounds, double units, Ours ours, Other other) {
    std::vector<double> a, b, ratios;
    for (int round = -1; round < rounds; ++round) {
        const Seconds begin = Now();
        ours();
        const Seconds middle = Now();
        other();
        const Seconds end = Now();
        if (round < 0) continue;
        a.push_back((middle - begin) * 1e9 / units);
        b.push_back((end - middle) * 1e9 / units);
        ratios.push_back(a.back() / b.back());
    }
    return {Median(a), Median(b), Median(ratios)};
}

inline void PrintHead() {
    printf("%-58s %12s %12s %8s  %s\n", "", "ours ns", "other ns", "ratio", "wanted");
}

inline void Print(const char* what, const Comparison& comparison, const char* wanted) {
    printf("%-58s %12.1f %12.1f %8.3f  %s\n", what, comparison.ours, comparison.other, comparison.ratio, wanted);
    fflush(stdout);
}

}  // namespace Orvane::Bench

#endif
