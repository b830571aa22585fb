// What a write of a bundle costs beside the work that it cannot do without, and how a read grows with the file.
#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "Base/ConsoleSink.h"
#include "Storage/Bundle/BundleImpl.h"
#include "Support/KeyAndCipher.h"
#include "Support/Ratio.h"

namespace {

namespace fs = std::filesystem;
using namespace Orvane::Bench;

class Silence final : public Quern::ConsoleSink {
    void Write(const char*, size_t) override {}
};

std::string Lines(int count) {
    std::string text = "[section]\n";
    for (int i = 1; i < count; ++i)
        text += "setting" + std::to_string(i) + "=value of the setting " + std::to_string(i) + "\n";
    return text;
}

std::string ReadFile(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

// What any program must do that replaces a file by these bytes.
void BareReplace(const std::string& path, const std::string& bytes) {
    const std::string next = path + "~";
    const int descriptor = open(next.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
    if (write(descriptor, bytes.data(), bytes.size()) != static_cast<ssize_t>(bytes.size())) abort();
    fsync(descriptor);
    close(descriptor);
    if (rename(next.c_str(), path.c_str()) != 0) abort();
}

// The bytes of a file, by the computing that no save can spare.
std::string UnavoidableWork(const std::string& text) {
    return std::string(98, '\0') + KeyAndCipher(text);
}

// A set against bare replacements of the same two files, and against those behind the computing that no save can spare.
void CompareSet(const fs::path& folder, int lines, const char* where) {
    setenv("ORVANE_HOME", folder.c_str(), 1);
    const std::string path = (folder / "bench.config").string(), floorPath = (folder / "floor").string();
    const std::string text = Lines(lines);
    std::ofstream(path) << text;
    Quern::BundleImpl& bundle = *new Quern::BundleImpl(path.c_str());
    bundle.Set("section", "setting1", 0);
    const std::string file = ReadFile(path), keychain = ReadFile(folder / "Library" / "OrvaneCore.keychain");
    constexpr int kRounds = 41, kSets = 8;
    int number = 0;
    const auto set = [&] {
        for (int i = 0; i < kSets; ++i)
            bundle.Set("section", "setting1", ++number);
    };
    const auto bare = [&] {
        for (int i = 0; i < kSets; ++i) {
            BareReplace(floorPath, file);
            BareReplace(floorPath + ".keychain", keychain);
        }
    };
    const auto behindWork = [&] {
        for (int i = 0; i < kSets; ++i) {
            BareReplace(floorPath, UnavoidableWork(text));
            BareReplace(floorPath + ".keychain", keychain);
        }
    };
    const std::string what = "Bundle::Set, " + std::to_string(lines) + " lines, " + where;
    Print((what + " / bare files").c_str(), Compare(kRounds, kSets, set, bare), "");
    Print((what + " / key, cipher, bare files").c_str(), Compare(kRounds, kSets, set, behindWork), "1.5");
}

void ShowReads(const fs::path& folder) {
    printf("\n%-30s %12s %12s\n", "read of one int, lines", "middle us", "last us");
    for (const int lines : {10, 100, 1000, 10000}) {
        const std::string path = (folder / "read.config").string();
        std::ofstream(path) << Lines(lines);
        Quern::BundleImpl& bundle = *new Quern::BundleImpl(path.c_str());
        double times[2];
        for (const int which : {0, 1}) {
            const std::string key = "setting" + std::to_string(which ? lines - 1 : lines / 2);
            const int reads = 2000000 / lines;
            std::vector<double> rounds;
            for (int round = 0; round < 9; ++round) {
                const Seconds begin = Now();
                for (int i = 0; i < reads; ++i)
                    bundle.Get("section", key.c_str(), -1);
                rounds.push_back((Now() - begin) * 1e6 / reads);
            }
            times[which] = Median(rounds);
        }
        printf("%-30d %12.3f %12.3f%s\n", lines, times[0], times[1], lines == 100 ? "  wanted: 2" : "");
    }
}

}  // namespace

int main() {
    std::string pattern = (fs::temp_directory_path() / "orvane-bench-XXXXXX").string();
    const fs::path folder = mkdtemp(pattern.data());
    Quern::ConsoleSink::Use(std::make_shared<Silence>());
    PrintHead();
    // In memory what is the library's own shows, which the disk's pace hides.
    const fs::path memory = fs::path("/dev/shm") / folder.filename();
    fs::create_directory(memory);
    for (const int lines : {10, 100, 1000})
        CompareSet(folder, lines, "disk");
    for (const int lines : {10, 100, 1000})
        CompareSet(memory, lines, "memory");
    fs::remove_all(memory);
    ShowReads(folder);
    fs::remove_all(folder);
    return 0;
}
