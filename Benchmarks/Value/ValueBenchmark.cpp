// The variant beside jsoncpp's, which holds the same kinds of things in the same kind of map: a tree of 10,000 entries,
// as a large answer of the configuration server makes it. Wanted: no slower at any of the three.

#include <benchmark/benchmark.h>
#include <json/value.h>

#include <string>
#include <vector>

#include "Base/Container/Value.h"
#include "Support/Ratios.h"

namespace {

constexpr size_t kModules = 100;
constexpr size_t kKeysOfModule = 100;

std::vector<std::string> Names(const char* prefix, size_t count) {
    std::vector<std::string> names;
    for (size_t i = 0; i < count; ++i)
        names.push_back(prefix + std::to_string(i * 7919 % count));  // not in the map's order
    return names;
}

const std::vector<std::string> kModuleNames = Names("Module", kModules);
const std::vector<std::string> kKeyNames = Names("SettingOfModule", kKeysOfModule);

template <typename Tree>
Tree Build() {
    Tree root;
    for (const std::string& module : kModuleNames) {
        Tree& entries = root[module.c_str()];
        for (size_t i = 0; i < kKeysOfModule; ++i) {
            Tree& entry = entries[kKeyNames[i].c_str()];
            switch (i % 4) {
                case 0:
                    entry = Tree(static_cast<int>(i));
                    break;
                case 1:
                    entry = Tree(0.5 * static_cast<double>(i));
                    break;
                case 2:
                    entry = Tree(i % 8 == 2);
                    break;
                default:
                    entry = Tree("https://example.com/path");
                    break;
            }
        }
    }
    return root;
}

void CountEntries(benchmark::State& state) {
    state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * kModules * kKeysOfModule));
}

// Destroying is part of building and of copying.
template <typename Tree>
void Build(benchmark::State& state) {
    for (auto _ : state)
        benchmark::DoNotOptimize(Build<Tree>());
    CountEntries(state);
}

template <typename Tree>
void Copy(benchmark::State& state) {
    const Tree tree = Build<Tree>();
    for (auto _ : state)
        benchmark::DoNotOptimize(Tree(tree));
    CountEntries(state);
}

// Two equal trees: every entry is looked at.
template <typename Tree>
void Compare(benchmark::State& state) {
    const Tree left = Build<Tree>(), right = Build<Tree>();
    bool same = true;
    for (auto _ : state)
        same &= left == right;
    if (!same) state.SkipWithError("equal trees differ");
    CountEntries(state);
}

void Measure(const char* name, benchmark::internal::Function* function) {
    benchmark::RegisterBenchmark(name, function)->Unit(benchmark::kMicrosecond);
}

}  // namespace

int main(int argc, char** argv) {
    Measure("Build", Build<Quern::Value>);
    Measure("JsonBuild", Build<Json::Value>);
    Measure("Copy", Copy<Quern::Value>);
    Measure("JsonCopy", Copy<Json::Value>);
    Measure("Compare", Compare<Quern::Value>);
    Measure("JsonCompare", Compare<Json::Value>);
    return Orvane::Benchmarks::RunWithRatios(
        argc, argv, {{"Build", "JsonBuild"}, {"Copy", "JsonCopy"}, {"Compare", "JsonCompare"}});
}
