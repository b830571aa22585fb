// What a read of a setting costs beside a look into a hash table, whether readers wait for a store, and what storing a
// server's answer costs beside the work that it cannot do without.
#include <json/json.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <time.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <unordered_map>
#include <utility>

#include "Base/ConsoleSink.h"
#include "Storage/Bundle/BundleImpl.h"
#include "Storage/Bundle/InfoDictionary.h"
#include "Storage/Bundle/Keychain.h"
#include "Support/KeyAndCipher.h"
#include "Support/Ratio.h"

namespace {

namespace fs = std::filesystem;
using namespace Orvane::Bench;
using Quern::BundleImpl;
using Quern::Value;

class Silence final : public Quern::ConsoleSink {
    void Write(const char*, size_t) override {}
};

// One password in memory.
class BareKeychain final : public Quern::Keychain {
    int32_t SecItemAdd(const Quern::KeychainItem& item) override {
        _item = item;
        return Quern::errSecSuccess;
    }
    int32_t SecItemCopyMatching(const Quern::KeychainQuery&, Quern::KeychainLimit, bool,
                                std::vector<Quern::KeychainItem>& found) override {
        found.push_back(_item);
        return Quern::errSecSuccess;
    }
    int32_t SecItemDelete(const Quern::KeychainQuery&) override { return Quern::errSecSuccess; }

    Quern::KeychainItem _item;
};

std::string Name(const char* what, int number) {
    return what + std::to_string(number);
}

// As an application's manifest is: what the system wants, then the settings.
class Manifest final : public Quern::InfoDictionary {
public:
    Manifest() {
        Quern::InfoValue::Dictionary entries, preset;
        for (int i = 0; i < 30; ++i)
            entries.push_back({"CFBundleSomething" + std::to_string(i), {std::string("a text")}});
        preset.push_back({"shipped", {7LL}});
        preset.push_back({"shippedText", {Name("value of the setting ", 0)}});
        entries.push_back({"module1", {std::move(preset)}});
        entries.push_back({"Orvane", {Quern::InfoValue::Dictionary{{"GameId", {std::string("30045")}}}}});
        _root.value = std::move(entries);
    }
    const Quern::InfoValue& Root() override { return _root; }

private:
    Quern::InfoValue _root{Quern::InfoValue::Dictionary()};
};

std::string TextOf(int key) {
    return Name("value of the setting ", key);
}

// Modules of keys, each with a number or a text in turn, as a server answers. The library's own module, as the last
// one, has its place at the top of the file, where its URL is: its lines go in front of others.
std::string Answer(int modules, int keys, int round, bool isOwnBehindGame = false) {
    Json::Value root;
    root["ret"] = 0;
    for (int module = 0; module < modules; ++module)
        for (int key = 0; key < keys; ++key) {
            const std::string game = module == modules - 1 ? "OrvaneCore" : Name("Game", module);
            const std::string name = isOwnBehindGame ? game : Name("module", module);
            Json::Value& value = root["biz_data"]["merged_cfg"][name][Name("setting", key)];
            if (key % 2 == 0)
                value = round + key;
            else
                value = TextOf(key);
        }
    return Json::writeString(Json::StreamWriterBuilder(), root);
}

Json::Value Parse(const std::string& text) {
    const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
    Json::Value root;
    if (!reader->parse(text.data(), text.data() + text.size(), &root, nullptr)) abort();
    return root;
}

Value Convert(const Json::Value& modules) {
    Value converted;
    for (auto module = modules.begin(); module != modules.end(); ++module) {
        Value& section = converted[module.name().c_str()];
        for (auto key = module->begin(); key != module->end(); ++key)
            section[key.name().c_str()] = key->isString() ? Value(key->asCString()) : Value(key->asInt());
    }
    return converted;
}

void StoreAnswer(BundleImpl& bundle, const std::string& answer) {
    const Value configuration = Convert(Parse(answer)["biz_data"]["merged_cfg"]);
    BundleImpl::Batch batch(bundle);
    bundle.RemoveAll();
    bundle.Set("OrvaneCore", "RemoteConfigUrl", "http://configuration.example.com");
    bundle.Set(configuration);
}

// A hash table under a mutex, by section and key, asked without a copy of either.
class Table {
    using Names = std::pair<std::string_view, std::string_view>;
    using Owned = std::pair<std::string, std::string>;
    struct Hash {
        using is_transparent = void;
        size_t operator()(const Names& names) const {
            const std::hash<std::string_view> hash;
            return hash(names.first) * 31 + hash(names.second);
        }
        size_t operator()(const Owned& names) const { return (*this)(Names(names)); }
    };
    struct Equal {
        using is_transparent = void;
        bool operator()(const Names& a, const Names& b) const { return a == b; }
    };

public:
    void Set(const char* section, const char* key, std::string value) { _values[Owned(section, key)] = value; }
    long long Get(const char* section, const char* key, long long otherwise) {
        const std::lock_guard<std::mutex> guard(_mutex);
        const auto found = _values.find(Names(section, key));
        return found == _values.end() ? otherwise : strtoll(found->second.c_str(), nullptr, 10);
    }
    std::string Get(const char* section, const char* key, const char* otherwise) {
        const std::lock_guard<std::mutex> guard(_mutex);
        const auto found = _values.find(Names(section, key));
        return found == _values.end() ? otherwise : found->second;
    }

private:
    std::mutex _mutex;
    std::unordered_map<Owned, std::string, Hash, Equal> _values;
};

BundleImpl& Open(const fs::path& folder, const char* name) {
    return *new BundleImpl((folder / name).c_str());  // never deleted, which would write plain text
}

void CompareReads(const fs::path& folder) {
    constexpr int kRounds = 401, kReads = 1000;  // short rounds, so that most are not interrupted
    std::vector<double> small;
    size_t row = 0;
    for (const int modules : {20, 200}) {
        BundleImpl& bundle = Open(folder, Name("reads", modules).c_str());
        StoreAnswer(bundle, Answer(modules, 50, 1));
        Table table;
        for (int module = 0; module < modules; ++module)
            for (int key = 0; key < 50; ++key)
                table.Set(Name("module", module).c_str(), Name("setting", key).c_str(),
                          key % 2 == 0 ? std::to_string(key) : TextOf(key));
        table.Set("module1", "shipped", "7");
        table.Set("module1", "shippedText", TextOf(0));
        const std::string last = Name("module", modules - 1);
        const struct {
            const char *what, *section, *number, *text;
        } kCases[] = {{"first key", "module0", "setting0", "setting1"},
                      {"last key", last.c_str(), "setting48", "setting49"},
                      {"miss to the manifest", "module1", "shipped", "shippedText"}};
        const auto compare = [&](const auto& c, const char* type, auto otherwise) {
            const char* const key = std::is_arithmetic_v<decltype(otherwise)> ? c.number : c.text;
            long long sum = 0;
            const auto reads = [&](auto& store) {
                for (int i = 0; i < kReads; ++i) {
                    const auto value = store.Get(c.section, key, otherwise);
                    if constexpr (std::is_arithmetic_v<decltype(otherwise)>)
                        sum += value;
                    else
                        sum += value.c_str()[0];
                }
            };
            const Comparison result = Compare(
                kRounds, kReads, [&] { reads(bundle); }, [&] { reads(table); });
            if (sum == 0) abort();
            const std::string name = std::string(type) + ", " + c.what + ", " + std::to_string(modules) + " x 50";
            Print((name + " / hash table, mutex").c_str(), result, "3");
            if (modules == 20)
                small.push_back(result.ours);
            else
                Print((name + " / 20 x 50").c_str(), {result.ours, small[row], result.ours / small[row]}, "1.2");
            row = modules == 20 ? 0 : row + 1;
        };
        for (const auto& c : kCases) {
            compare(c, "int", -1);
            compare(c, "long long", -1LL);
            compare(c, "text", "-");
        }
    }
}

// Reads on one thread while another stores answers back to back.
void ShowWaits(const fs::path& folder) {
    BundleImpl& bundle = Open(folder, "waits");
    const std::string answers[] = {Answer(20, 50, 1), Answer(20, 50, 2)};
    StoreAnswer(bundle, answers[0]);
    std::atomic<bool> isDone{false};
    long reads = 0, misses = 0;
    rusage before{}, after{};
    std::thread reader([&] {
        getrusage(RUSAGE_THREAD, &before);
        for (; !isDone; ++reads)
            misses += bundle.Get("module19", "setting48", -1) == -1;
        getrusage(RUSAGE_THREAD, &after);
    });
    constexpr int kAnswers = 300;
    for (int i = 0; i < kAnswers; ++i)
        StoreAnswer(bundle, answers[i % 2]);
    isDone = true;
    reader.join();
    printf("\n%ld reads beside %d answers: %ld voluntary context switches (wanted: 0), %ld misses (wanted: 0)\n", reads,
           kAnswers, after.ru_nvcsw - before.ru_nvcsw, misses);
}

// The work that no store can spare: the document is parsed, its lines are appended, the text is enciphered under a new
// key and hashed.
void UnavoidableWork(const std::string& answer) {
    const Json::Value root = Parse(answer);
    const Json::Value& modules = root["biz_data"]["merged_cfg"];
    std::string text;
    for (auto module = modules.begin(); module != modules.end(); ++module) {
        text.append("\n[").append(module.name()).append("]\n");
        for (auto key = module->begin(); key != module->end(); ++key)
            text.append(key.name()).append("=").append(key->asString()).append("\n");
    }
    KeyAndCipher(text);
}

void CompareStores(const fs::path& folder) {
    double thousand = 0;  // the shortest, of the processor's time: long work is interrupted where short is not
    const auto processorTime = [](auto work) {
        std::vector<double> times;
        for (int round = 0; round < 41; ++round) {
            timespec begin{}, end{};
            clock_gettime(CLOCK_THREAD_CPUTIME_ID, &begin);
            work();
            clock_gettime(CLOCK_THREAD_CPUTIME_ID, &end);
            times.push_back(static_cast<double>(end.tv_sec - begin.tv_sec) * 1e9 +
                            static_cast<double>(end.tv_nsec - begin.tv_nsec));
        }
        return *std::min_element(times.begin(), times.end());
    };
    const struct {
        int modules, keys;
        bool isOwnBehindGame;
    } kAnswers[] = {{20, 50, false}, {20, 500, false}, {200, 50, false}, {2, 500, true}, {2, 5000, true}};
    for (const auto& [modules, keys, isOwn] : kAnswers) {
        const std::string what = "answer of " + std::to_string(modules) + " x " + std::to_string(keys) + " keys" +
                                 (isOwn ? ", OrvaneCore behind another module" : "");
        BundleImpl& bundle = Open(folder, what.c_str());
        const std::string answers[] = {Answer(modules, keys, 1, isOwn), Answer(modules, keys, 2, isOwn)};
        int round = 0;  // the same answer again would not be saved
        const auto store = [&] { StoreAnswer(bundle, answers[++round % 2]); };
        Print((what + " / parse, lines, key, cipher").c_str(),
              Compare(41, 1, store, [&] { UnavoidableWork(answers[round % 2]); }), "2");
        const double time = processorTime(store);
        if (modules * keys == 1000)
            thousand = time;
        else
            Print((what + " / 1000 keys").c_str(), {time, thousand, time / thousand}, "12");
    }
}

}  // namespace

int main() {
    std::string pattern = "/dev/shm/orvane-bench-XXXXXX";
    const fs::path folder = mkdtemp(pattern.data());
    setenv("ORVANE_HOME", folder.c_str(), 1);
    Quern::ConsoleSink::Use(std::make_shared<Silence>());
    Quern::Keychain::Use(std::make_shared<BareKeychain>());
    Quern::InfoDictionary::Use(std::make_shared<Manifest>());
    PrintHead();
    CompareReads(folder);
    CompareStores(folder);
    ShowWaits(folder);
    fs::remove_all(folder);
    return 0;
}
