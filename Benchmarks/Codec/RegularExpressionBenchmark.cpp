// slre_match over the names of a log folder, as the upload's filter uses it, beside two engines that compile a pattern
// once; and what hostile patterns cost. Wanted: no slower than std::regex.
#define PCRE2_CODE_UNIT_WIDTH 8

#include <benchmark/benchmark.h>
#include <pcre2.h>

#include <regex>
#include <string>
#include <vector>

#include "Serializer/Codec/RegularExpression.h"

namespace {

constexpr int kNames = 1000;
// Every engine knows these forms, and they match the same names with each.
const char kPattern[] = "^orvane(core|sdk)_[0-9]+_[0-9]+\\.(log|mmap3)$";

std::vector<std::string> LogNames() {
    std::vector<std::string> names;
    for (int i = 0; i < kNames; ++i) {
        const std::string number = std::to_string(20261100 + i % 31) + "_" + std::to_string(i);
        switch (i % 4) {
            case 0:
                names.push_back("OrvaneCore_" + number + ".log");
                break;
            case 1:
                names.push_back("OrvaneSDK_" + number + ".mmap3");
                break;
            case 2:
                names.push_back("OrvaneCore_" + number + ".log.zip");
                break;
            default:
                names.push_back("Unity_" + number + ".log");
                break;
        }
    }
    return names;
}

void Finish(benchmark::State& state, int matches) {
    if (matches != kNames / 2) state.SkipWithError("the engine matches other names");
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations()) * kNames);
}

void SlreOverLogNames(benchmark::State& state) {
    const std::vector<std::string> names = LogNames();
    int matches = 0;
    for (auto _ : state) {
        matches = 0;
        for (const std::string& name : names) {
            matches += Quern::slre_match(kPattern, name.data(), static_cast<int>(name.size()), nullptr, 0,
                                         Quern::kSlreIgnoreCase) >= 0;
        }
    }
    Finish(state, matches);
}

void StdRegexOverLogNames(benchmark::State& state) {
    const std::vector<std::string> names = LogNames();
    const std::regex pattern(kPattern, std::regex::icase | std::regex::optimize);
    int matches = 0;
    for (auto _ : state) {
        matches = 0;
        for (const std::string& name : names)
            matches += std::regex_search(name, pattern);
    }
    Finish(state, matches);
}

void Pcre2OverLogNames(benchmark::State& state) {
    const std::vector<std::string> names = LogNames();
    int error;
    PCRE2_SIZE errorAt;
    pcre2_code* const code = pcre2_compile(reinterpret_cast<PCRE2_SPTR>(kPattern), PCRE2_ZERO_TERMINATED,
                                           PCRE2_CASELESS, &error, &errorAt, nullptr);
    pcre2_match_data* const match = pcre2_match_data_create_from_pattern(code, nullptr);
    int matches = 0;
    for (auto _ : state) {
        matches = 0;
        for (const std::string& name : names) {
            matches +=
                pcre2_match(code, reinterpret_cast<PCRE2_SPTR>(name.data()), name.size(), 0, 0, match, nullptr) > 0;
        }
    }
    pcre2_match_data_free(match);
    pcre2_code_free(code);
    Finish(state, matches);
}

// Groups in groups, none of which can match in the end: range(0) of them over range(1) bytes.
void HostileNestedGroups(benchmark::State& state) {
    std::string pattern = ".*";
    for (int64_t i = 0; i < state.range(0); ++i)
        pattern = "(" + pattern + ")b";
    pattern = "^" + pattern + "!";
    const std::string subject(static_cast<size_t>(state.range(1)), 'a');
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            Quern::slre_match(pattern.c_str(), subject.data(), static_cast<int>(subject.size()), nullptr, 0, 0));
    }
}

// Repetitions one behind the other.
void HostileRepetitions(benchmark::State& state) {
    std::string pattern = "^";
    for (int64_t i = 0; i < state.range(0); ++i)
        pattern += ".*";
    pattern += "!";
    const std::string subject(static_cast<size_t>(state.range(1)), 'a');
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            Quern::slre_match(pattern.c_str(), subject.data(), static_cast<int>(subject.size()), nullptr, 0, 0));
    }
}

// Repetitions inside one another.
void HostileNestedRepetitions(benchmark::State& state) {
    std::string pattern = "a*";
    for (int64_t i = 0; i < state.range(0); ++i)
        pattern = "(" + pattern + ")*";
    pattern = "^" + pattern + "!";
    const std::string subject(static_cast<size_t>(state.range(1)), 'a');
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            Quern::slre_match(pattern.c_str(), subject.data(), static_cast<int>(subject.size()), nullptr, 0, 0));
    }
}

BENCHMARK(SlreOverLogNames)->Unit(benchmark::kMicrosecond);
BENCHMARK(StdRegexOverLogNames)->Unit(benchmark::kMicrosecond);
BENCHMARK(Pcre2OverLogNames)->Unit(benchmark::kMicrosecond);
BENCHMARK(HostileNestedGroups)->ArgsProduct({{1, 2, 3}, {16, 32, 64}})->Unit(benchmark::kMicrosecond);
BENCHMARK(HostileRepetitions)->ArgsProduct({{1, 2, 3, 4}, {16, 32, 64}})->Unit(benchmark::kMicrosecond);
BENCHMARK(HostileNestedRepetitions)->ArgsProduct({{1, 2, 3}, {16, 32, 64}})->Unit(benchmark::kMicrosecond);

}  // namespace
