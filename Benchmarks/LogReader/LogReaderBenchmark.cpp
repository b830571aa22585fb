// What reading a log costs, against bare inflate over the same payloads: the least that any reader pays.

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>
#include <zlib.h>

#include <cstdio>
#include <string>
#include <vector>

#include "Log/Reading.h"
#include "Support/LogWriter.h"
#include "Support/Ratio.h"

namespace {

using namespace Orvane::Bench;
using namespace OrvaneTest;
using namespace OrvaneLog;

constexpr int kRounds = 15;
constexpr size_t kBlocks = 40;
constexpr size_t kBlockLength = 51200;  // where a logger closes a block

// Lines such as a game logs: much that repeats, some numbers that do not.
std::vector<std::string> GameLines(unsigned first, unsigned count) {
    static constexpr const char* kTexts[] = {
        "request /cfgpush/getConfig took %u ms, %u bytes", "observer %u told of state %u in the foreground",
        "scene city_%u loaded, %u objects, 3 retries left", "queue depth %u, oldest waits for %u us"};
    static constexpr const char* kLevels[] = {"Debug", "Info", "Warning", "Event", "Error"};
    std::vector<std::string> lines;
    for (unsigned i = first; i < first + count; ++i) {
        const unsigned noise = i * 2654435761u;
        char text[128], line[512];
        snprintf(text, sizeof text, kTexts[noise >> 30], noise >> 20 & 1023, noise >> 8 & 4095);
        snprintf(line, sizeof line, "[2026-11-24 21:%02u:%02u %03u] | %s | [Sample] |%u| Scene%u.cpp:%u|OnEvent%u| %s",
                 i / 6000 % 60, i / 100 % 60, i * 10 % 1000, kLevels[noise >> 29 & 3], 4711 + (noise >> 4 & 3),
                 noise >> 27 & 7, noise >> 12 & 511, noise >> 26 & 15, text);
        lines.emplace_back(line);
    }
    return lines;
}

struct Log {
    std::vector<std::string> payloads;  // deflated, not encrypted
    std::string compressed, encrypted;  // files
    uint64_t textSize = 0;
};

Log MakeLog(const WriterKey& key) {
    Log log;
    unsigned next = 0, linesInBlock = 1500;
    for (unsigned seq = 1; seq <= kBlocks; ++seq) {
        const auto lines = GameLines(next, linesInBlock);
        next += linesInBlock;
        log.textSize += Joined(lines).size();
        log.payloads.push_back(DeflateLines(lines));
        linesInBlock = static_cast<unsigned>(linesInBlock * kBlockLength / log.payloads.back().size());
        log.compressed += CompressedRecord(seq, lines);
        log.encrypted += EncryptedRecord(seq, lines, key);
    }
    return log;
}

// The floor: the payloads lie in memory, and the text goes nowhere.
void InflateAll(const Log& log, std::vector<unsigned char>& text) {
    for (const std::string& payload : log.payloads) {
        z_stream stream{};
        inflateInit2(&stream, -15);
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(payload.data()));
        stream.avail_in = static_cast<uInt>(payload.size());
        do {
            stream.next_out = text.data();
            stream.avail_out = static_cast<uInt>(text.size());
        } while (inflate(&stream, Z_SYNC_FLUSH) == Z_OK && stream.avail_out == 0);
        inflateEnd(&stream);
    }
}

// A whole run of the reader, from the file to a descriptor.
void ReadAll(const Arguments& arguments, KeyRing& keys) {
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    {
        DescriptorOutput output(nowhere);
        Report report([](const std::string& message) { fprintf(stderr, "%s\n", message.c_str()); });
        Reading(arguments, Look::kAsItStands, keys, output, report, nullptr).Run();
        if (report.Status(false) != kExitSound) abort();
    }
    close(nowhere);
}

std::string WriteFile(const char* name, const std::string& content) {
    const std::string path = std::string(name) + ".XXXXXX.xlog";
    std::string made = path;
    const int file = mkstemps(made.data(), 5);
    if (file < 0 || write(file, content.data(), content.size()) != static_cast<ssize_t>(content.size())) abort();
    close(file);
    return made;
}

void Measure(const char* what, const Log& log, const Arguments& arguments, KeyRing& keys, const char* wanted) {
    std::vector<unsigned char> text(1 << 20);
    const Comparison comparison = Compare(
        kRounds, static_cast<double>(log.textSize) / 1e6, [&] { ReadAll(arguments, keys); },
        [&] { InflateAll(log, text); });
    Print(
        (std::string(what) + ", " + std::to_string(static_cast<int>(1e9 / comparison.ours)) + " MB/s of text").c_str(),
        comparison, wanted);
}

}  // namespace

int main() {
    Quern::CurvePrivateKey privateKey{};
    privateKey[0] = 7;
    Quern::CurvePublicKey publicKey;
    Quern::CurvePublicFromPrivate(privateKey, publicKey);
    KeyRing keys;
    keys.Add(privateKey, "bench");
    const Log log = MakeLog(AgreeWith(std::string(publicKey.begin(), publicKey.end())));
    printf("%.1f MB of text in %zu blocks of %zu bytes on average; a unit is 1 MB of text\n",
           static_cast<double>(log.textSize) / 1e6, log.payloads.size(), log.compressed.size() / log.payloads.size());

    Arguments compressed, encrypted;
    compressed.paths = {WriteFile("/tmp/bench-log-reader-9", log.compressed)};
    encrypted.paths = {WriteFile("/tmp/bench-log-reader-7", log.encrypted)};
    PrintHead();
    Measure("magic 9", log, compressed, keys, "<= 1.3, or 150 MB/s");
    Measure("magic 7", log, encrypted, keys, "<= 1.3, or 150 MB/s");
    Arguments filtered = compressed;
    filtered.filter.minimumLevel = 2;
    Measure("magic 9, --level", log, filtered, keys, "");
    std::string error;
    filtered.filter.minimumLevel = 0;
    filtered.filter.pattern = Pattern::Compile("scene city_7 loaded", error);
    Measure("magic 9, --grep of plain text", log, filtered, keys, "");
    filtered.filter.pattern = Pattern::Compile("took \\d+ ms", error);
    Measure("magic 9, --grep of an expression", log, filtered, keys, "");
    Arguments json = compressed;
    json.json = true;
    Measure("magic 9, --json", log, json, keys, "");
    unlink(compressed.paths[0].c_str());
    unlink(encrypted.paths[0].c_str());
    return 0;
}
