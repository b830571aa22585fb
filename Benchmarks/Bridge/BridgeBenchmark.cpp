// Objects across the script bridge. Wanted: encode and decode above 1 GB/s for texts of 1 KB. The floor is the same
// bytes copied once by memcpy, into memory that is there already; a peer does what cannot be helped as well, the memory
// for one copy.

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "Orvane/OrvaneCore.h"
#include "Orvane/PlatformObject.h"
#include "Serializer/Arbor/ArborBufferReader.h"
#include "Serializer/Arbor/ArborBufferWriter.h"
#include "Support/Ratios.h"

using Quern::AString;

namespace {

class Text : public Quern::_tagArborBufferBase {
public:
    Text* Clone() const override { return new Text(*this); }
    void WriteTo(Quern::CArborBufferWriter& writer) const override { writer.Write(text); }
    void ReadFrom(Quern::CArborBufferReader& reader) override { reader.Read(text); }

    AString text;
};

Text TextOf(int64_t size) {
    Text text;
    text.text = std::string(static_cast<size_t>(size), 'x').c_str();
    return text;
}

void CountBytes(benchmark::State& state) {
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * state.range(0));
}

void Encode(benchmark::State& state) {
    const Text text = TextOf(state.range(0));
    AString bytes;
    for (auto _ : state) {
        if (!text.Encode(bytes)) abort();
        benchmark::DoNotOptimize(bytes.data());
        benchmark::ClobberMemory();
    }
    CountBytes(state);
}

void Decode(benchmark::State& state) {
    AString bytes;
    TextOf(state.range(0)).Encode(bytes);
    Text text;
    for (auto _ : state) {
        if (!text.Decode(bytes)) abort();
        benchmark::DoNotOptimize(text.text.data());
        benchmark::ClobberMemory();
    }
    if (text.text.length() != state.range(0)) abort();
    CountBytes(state);
}

void Memcpy(benchmark::State& state) {
    const std::vector<char> source(static_cast<size_t>(state.range(0)), 'x');
    std::vector<char> target(source.size());
    for (auto _ : state) {
        memcpy(target.data(), source.data(), source.size());
        benchmark::DoNotOptimize(target.data());
        benchmark::ClobberMemory();
    }
    CountBytes(state);
}

void MemcpyToNewMemory(benchmark::State& state) {
    const std::vector<char> source(static_cast<size_t>(state.range(0)), 'x');
    for (auto _ : state) {
        const std::unique_ptr<char[]> target(new char[source.size()]);
        memcpy(target.get(), source.data(), source.size());
        benchmark::DoNotOptimize(target.get());
        benchmark::ClobberMemory();
    }
    CountBytes(state);
}

BENCHMARK(Encode)->Arg(64)->Arg(1024)->Arg(65536);
BENCHMARK(Decode)->Arg(64)->Arg(1024)->Arg(65536);
BENCHMARK(Memcpy)->Arg(64)->Arg(1024)->Arg(65536);
BENCHMARK(MemcpyToNewMemory)->Arg(64)->Arg(1024)->Arg(65536);

__attribute__((noinline)) void OnMethod(uint64_t objectId, int method) {
    benchmark::DoNotOptimize(objectId);
    benchmark::DoNotOptimize(method);
}

void Callback(benchmark::State& state) {
    setArborSendVoidMethodCallback(OnMethod);
    Quern::CPlatformObject half;
    for (auto _ : state)
        half.SendUnityMethod(1);
    setArborSendVoidMethodCallback(nullptr);
}

void BareCall(benchmark::State& state) {
    void (*call)(uint64_t, int) = OnMethod;
    for (auto _ : state) {
        benchmark::DoNotOptimize(call);
        call(0, 1);
    }
}

BENCHMARK(Callback);
BENCHMARK(BareCall);

}  // namespace

int main(int argc, char** argv) {
    return Orvane::Benchmarks::RunWithRatios(argc, argv,
                                             {{"Encode/1024", "Memcpy/1024"},
                                              {"Encode/1024", "MemcpyToNewMemory/1024"},
                                              {"Decode/1024", "Memcpy/1024"},
                                              {"Decode/1024", "MemcpyToNewMemory/1024"},
                                              {"Encode/65536", "Memcpy/65536"},
                                              {"Decode/65536", "Memcpy/65536"},
                                              {"Callback", "BareCall"}});
}
