// Hashes, ciphers and text codecs. Wanted: MD5 at 0.8 of libcrypto's speed, the text codecs above 0.5 GB/s.

#include <benchmark/benchmark.h>
#include <openssl/evp.h>

#include <string>
#include <vector>

#include "Serializer/Codec/Base64.h"
#include "Serializer/Codec/KxSymmetry.h"
#include "Serializer/Codec/Md5.h"
#include "Serializer/URLEncoder/URLEncoder.h"
#include "Support/Ratios.h"

namespace {

constexpr int kBuffer = 64 * 1024;

std::string Bytes(size_t size) {
    std::string bytes(size, '\0');
    unsigned int state = 1;
    for (char& byte : bytes)
        byte = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
    return bytes;
}

// Of the kind that goes into a query: JSON of common parameters.
std::string Parameters(size_t size) {
    const std::string kSample =
        "{\"gameid\":\"11020\",\"channel\":\"10003391\",\"os\":\"iOS 16.2\",\"model\":\"iPhone 12\"},";
    std::string text;
    while (text.size() < size)
        text += kSample;
    return text;
}

void CountBytes(benchmark::State& state, size_t size) {
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(size));
}

void Md5(benchmark::State& state) {
    const std::string data = Bytes(static_cast<size_t>(state.range(0)));
    char digest[16];
    for (auto _ : state) {
        Quern::Md5HashBuffer(digest, data.data(), static_cast<int>(data.size()));
        benchmark::DoNotOptimize(digest);
    }
    CountBytes(state, data.size());
}

void Md5OfLibcrypto(benchmark::State& state) {
    const std::string data = Bytes(static_cast<size_t>(state.range(0)));
    unsigned char digest[16];
    EVP_MD* const md5 = EVP_MD_fetch(nullptr, "MD5", nullptr);
    EVP_MD_CTX* const context = EVP_MD_CTX_new();
    for (auto _ : state) {
        EVP_DigestInit_ex(context, md5, nullptr);
        EVP_DigestUpdate(context, data.data(), data.size());
        EVP_DigestFinal_ex(context, digest, nullptr);
        benchmark::DoNotOptimize(digest);
    }
    EVP_MD_CTX_free(context);
    EVP_MD_free(md5);
    CountBytes(state, data.size());
}

void Base64Encode(benchmark::State& state) {
    const std::string data = Bytes(kBuffer);
    const unsigned char* const bytes = reinterpret_cast<const unsigned char*>(data.data());
    for (auto _ : state)
        benchmark::DoNotOptimize(Quern::base64_encode(bytes, kBuffer));
    CountBytes(state, data.size());
}

void Base64Decode(benchmark::State& state) {
    const std::string data = Bytes(kBuffer);
    const std::string text = Quern::base64_encode(reinterpret_cast<const unsigned char*>(data.data()), kBuffer);
    for (auto _ : state)
        benchmark::DoNotOptimize(Quern::base64_decode(text));
    CountBytes(state, text.size());
}

void UrlEncode(benchmark::State& state) {
    const std::string text = Parameters(kBuffer);
    for (auto _ : state)
        benchmark::DoNotOptimize(Quern::URLEncoder::Encode(text));
    CountBytes(state, text.size());
}

void UrlDecode(benchmark::State& state) {
    const std::string text = Quern::URLEncoder::Encode(Parameters(kBuffer));
    for (auto _ : state)
        benchmark::DoNotOptimize(Quern::URLEncoder::Decode(text));
    CountBytes(state, text.size());
}

// How fast the bytes could be copied into a string of their own: the floor of the text codecs.
void Copy(benchmark::State& state) {
    const std::string data = Bytes(kBuffer);
    for (auto _ : state)
        benchmark::DoNotOptimize(std::string(data));
    CountBytes(state, data.size());
}

void KxEncrypt2(benchmark::State& state) {
    const std::string text = Bytes(kBuffer), key = Bytes(16);
    std::vector<char> out(static_cast<size_t>(Orvane::Quern::kx_symmetry_encrypt2_len(kBuffer)));
    for (auto _ : state) {
        int length;
        Orvane::Quern::kx_symmetry_encrypt2(text.data(), kBuffer, key.data(), out.data(), &length);
        benchmark::ClobberMemory();
    }
    CountBytes(state, text.size());
}

void KxDecrypt2(benchmark::State& state) {
    const std::string text = Bytes(kBuffer), key = Bytes(16);
    std::vector<char> cipher(static_cast<size_t>(Orvane::Quern::kx_symmetry_encrypt2_len(kBuffer))), out(kBuffer);
    int length;
    Orvane::Quern::kx_symmetry_encrypt2(text.data(), kBuffer, key.data(), cipher.data(), &length);
    for (auto _ : state) {
        int outLength = kBuffer;
        Orvane::Quern::kx_symmetry_decrypt2(cipher.data(), length, key.data(), out.data(), &outLength);
        benchmark::ClobberMemory();
    }
    CountBytes(state, text.size());
}

BENCHMARK(Md5)->Arg(1024)->Arg(kBuffer);
BENCHMARK(Md5OfLibcrypto)->Arg(1024)->Arg(kBuffer);
BENCHMARK(Base64Encode);
BENCHMARK(Base64Decode);
BENCHMARK(UrlEncode);
BENCHMARK(UrlDecode);
BENCHMARK(Copy);
BENCHMARK(KxEncrypt2);
BENCHMARK(KxDecrypt2);

}  // namespace

int main(int argc, char** argv) {
    // Each ratio is that of the speeds: the peer's time by ours.
    return Orvane::Benchmarks::RunWithRatios(argc, argv,
                                             {{"Md5OfLibcrypto/1024", "Md5/1024"},
                                              {"Md5OfLibcrypto/65536", "Md5/65536"},
                                              {"StdRegexOverLogNames", "SlreOverLogNames"},
                                              {"Pcre2OverLogNames", "SlreOverLogNames"}});
}
