// Parsing a list of numbers: this library, with its cutting and range tests, against strtoll over the same tokens.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <string>

#include "Serializer/ZYL/ZylParse.h"

namespace {

constexpr unsigned int kCount = 64;

// Numbers of one to `digits` digits; every eighth in hexadecimal where `mixed` is set.
std::string Numbers(int digits, bool mixed) {
    std::string text;
    unsigned long long seed = 88172645463325252ULL;
    for (unsigned int i = 0; i < kCount; ++i) {
        seed ^= seed << 13;
        seed ^= seed >> 7;
        seed ^= seed << 17;
        std::string number = std::to_string(seed).substr(0, 1 + i % static_cast<unsigned>(digits));
        if (mixed && i % 8 == 0) number = "0x" + number;
        text += (i % 3 == 1 ? "-" : "") + number + ' ';
    }
    return text;
}

void ParseZyl(benchmark::State& state, int digits, bool mixed) {
    const std::string text = Numbers(digits, mixed);
    int values[kCount];
    for (auto _ : state) {
        unsigned int count = 0;
        if (Quern::ZylParse::parseInt32(values, kCount, text.c_str(), &count, 0) != 0 || count != kCount) abort();
        benchmark::ClobberMemory();
    }
}

void ParseStrtoll(benchmark::State& state, int digits, bool mixed) {
    const std::string text = Numbers(digits, mixed);
    long long values[kCount];
    for (auto _ : state) {
        const char* next = text.c_str();
        for (long long& value : values) {
            char* end;
            value = strtoll(next, &end, 0);
            next = end;
        }
        benchmark::ClobberMemory();
    }
}

BENCHMARK_CAPTURE(ParseZyl, short, 4, false);
BENCHMARK_CAPTURE(ParseStrtoll, short, 4, false);
BENCHMARK_CAPTURE(ParseZyl, long, 9, false);
BENCHMARK_CAPTURE(ParseStrtoll, long, 9, false);
BENCHMARK_CAPTURE(ParseZyl, mixed, 7, true);
BENCHMARK_CAPTURE(ParseStrtoll, mixed, 7, true);

}  // namespace
