// What a write of a bundle costs beside the work that it cannot do without, and how a read grows with the file.
#include <stdlib.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "Base/ConsoleSink.h"
#include "Serializer/Codec/KxSymmetry.h"
#include "Serializer/Codec/Md5.h"
#include "Serializer/Codec/PeerKey.h"
#include "Storage/Bundle/BundleImpl.h"
#include "Storage/Bundle/EncryptedIniFormat.h"
#include "Storage/Bundle/OrvaneCoreKC.h"
#include "Storage/File/WholeFile.h"
#include "Support/Ratio.h"

namespace {

namespace fs = std::filesystem;
using namespace Orvane::Bench;
using Quern::EncryptedIni::TeaKey;

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

// One key and agreement, TEA, MD5 and one write over the same text; `keepKey` is the one write of the keychain.
template <typename KeepKey>
void UnavoidableWork(const std::string& text, const std::string& path, KeepKey keepKey) {
    TeaKey key;
    Quern::CurvePublicKey publicKey;
    Quern::EncryptedIni::MakeKey(Quern::PeerPublicKey(), key, publicKey);
    keepKey();
    int length = Orvane::Quern::kx_symmetry_encrypt2_len(static_cast<int>(text.size()));
    std::string body(static_cast<size_t>(length), '\0');
    Orvane::Quern::kx_symmetry_encrypt2(text.data(), static_cast<int>(text.size()), key.data(), body.data(), &length);
    char digest[16];
    Quern::Md5HashBuffer(digest, body.data(), length);
    Quern::FileReplacement(path.c_str(), body).PutInPlace();
}

void CompareSet(const fs::path& folder, int lines) {
    const std::string path = (folder / "bench.config").string(), floorPath = (folder / "floor").string();
    const fs::path keychain = folder / "Library" / "OrvaneCore.keychain";
    const std::string text = Lines(lines);
    std::ofstream(path) << text;
    Quern::BundleImpl& bundle = *new Quern::BundleImpl(path.c_str());
    bundle.Set("section", "setting1", 0);
    constexpr int kRounds = 11, kSets = 4;  // each waits for the disk
    int number = 0;
    const auto set = [&] {
        for (int i = 0; i < kSets; ++i)
            bundle.Set("section", "setting1", ++number);
    };
    const auto withKeychain = [&] {
        for (int i = 0; i < kSets; ++i)
            UnavoidableWork(text, floorPath, [] {
                Quern::OrvaneCoreKC::setPassword_forService_account("AAAAAAAAAAAAAAAAAAAAAA==", "floor", "floor");
            });
    };
    const std::string content = ReadFile(keychain);
    const auto withPlainFile = [&] {
        for (int i = 0; i < kSets; ++i)
            UnavoidableWork(text, floorPath, [&] { Quern::ReplaceFile(floorPath + ".keychain", content, 0600); });
    };
    const std::string what = "Bundle::Set, " + std::to_string(lines) + " lines";
    Print((what + " / with one write of our keychain").c_str(), Compare(kRounds, kSets, set, withKeychain), "1.5");
    Print((what + " / with a bare synced replace").c_str(), Compare(kRounds, kSets, set, withPlainFile), "");
}

// Without the disk's pace, which hides what is the library's own: keychain and files are kept in memory.
class MemoryKeychain final : public Quern::Keychain {
    int32_t SecItemAdd(const Quern::KeychainItem& item) override {
        _item = item;
        return Quern::errSecSuccess;
    }
    int32_t SecItemCopyMatching(const Quern::KeychainQuery&, Quern::KeychainLimit, bool,
                                std::vector<Quern::KeychainItem>&) override {
        return Quern::errSecItemNotFound;
    }
    int32_t SecItemDelete(const Quern::KeychainQuery&) override { return Quern::errSecSuccess; }
    Quern::KeychainItem _item;
};

void CompareSetInMemory(const fs::path& folder, int lines) {
    const std::string path = (folder / "memory.config").string(), floorPath = (folder / "floor").string();
    const std::string text = Lines(lines);
    std::ofstream(path) << text;
    Quern::BundleImpl& bundle = *new Quern::BundleImpl(path.c_str());
    constexpr int kRounds = 31, kSets = 200;
    int number = 0;
    const auto set = [&] {
        for (int i = 0; i < kSets; ++i)
            bundle.Set("section", "setting1", ++number);
    };
    const auto floor = [&] {
        for (int i = 0; i < kSets; ++i)
            UnavoidableWork(text, floorPath, [] {});
    };
    Print(("Bundle::Set, " + std::to_string(lines) + " lines, all in memory / no keychain").c_str(),
          Compare(kRounds, kSets, set, floor), "1.5");
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
    setenv("ORVANE_HOME", folder.c_str(), 1);
    Quern::ConsoleSink::Use(std::make_shared<Silence>());
    PrintHead();
    for (const int lines : {10, 100, 1000})
        CompareSet(folder, lines);
    Quern::Keychain::Use(std::make_shared<MemoryKeychain>());
    const fs::path memory = fs::path("/dev/shm") / folder.filename();
    fs::create_directory(memory);
    for (const int lines : {10, 100, 1000})
        CompareSetInMemory(memory, lines);
    fs::remove_all(memory);
    ShowReads(folder);
    fs::remove_all(folder);
    return 0;
}
