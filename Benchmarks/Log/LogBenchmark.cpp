// What a line of log costs its caller, against bare zlib and against spdlog.

#include <spdlog/sinks/basic_file_sink.h>
#include <spdlog/spdlog.h>
#include <stdlib.h>
#include <zlib.h>

#include <cstring>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "Base/Configure/Configure.h"
#include "Base/ConsoleSink.h"
#include "Base/XLog.h"
#include "Storage/Log/CoreLog.h"
#include "Storage/Log/Logger.h"
#include "Support/Ratio.h"
#include "System/Application/OrvaneAppLifecycle.h"

namespace {

using namespace Orvane::Bench;
namespace fs = std::filesystem;

constexpr int kRounds = 15;
constexpr int kLines = 5000;
constexpr size_t kFlushAt = 51200;
constexpr size_t kBlock = 153600;

// Chooses the mode of the library's own logger.
class ModeSetting final : public Orvane::Configure {
public:
    explicit ModeSetting(int mode) : _mode(mode) {}
    int GetInt(const char*, const char* key, int defaultValue) override {
        if (std::string(key) == "LogMode") return _mode;
        return std::string(key) == "LogConsoleOutput" ? 0 : defaultValue;
    }
    void Start() override {}
    long long GetLong(const char*, const char*, long long value) override { return value; }
    double GetDouble(const char*, const char*, double value) override { return value; }
    bool GetBool(const char*, const char*, bool value) override { return value; }
    Quern::AString GetString(const char*, const char*, const char* value) override { return {value}; }
    void AddObserver(const char*, Orvane::ConfigureObserver*) override {}
    void RemoveObserver(const char*) override {}
    void StartOnce() override {}
    void SetUrl(const char*) override {}
    void Clear() override {}

private:
    int _mode;
};

class Silence final : public Quern::ConsoleSink {
    void Write(const char*, size_t) override {}
};

// The words of a game: a line of about 167 bytes once it is formatted.
struct Sample {
    int frame, player, ms;
    const char* state;
};

Sample At(int i) {
    static const char* const kStates[] = {"matched", "loading", "running", "paused", "reconnecting", "finished"};
    return {i * 7 + 13, 100000 + i * 7919 % 90000, i * 37 % 250, kStates[i * 31 % 6]};
}

constexpr char kFunction[] = "OnStateChanged";
constexpr char kOfFourThreads[] = "OnStateReached";  // as long, and told apart when the lines are counted

void LogOne(int i, const char* function = kFunction) {
    const Sample s = At(i);
    Quern::XLog(kLogInfo, "Source/Game/Session/SessionManager.cpp", 214, function,
                "session frame %d, player %d is %s, round trip %d ms", s.frame, s.player, s.state, s.ms);
}

// The same lines as the logger formats them.
std::vector<std::string> FormattedLines() {
    std::vector<std::string> lines;
    for (int i = 0; i < kLines; ++i) {
        const Sample s = At(i);
        char text[Quern::kLogLineCapacity], line[Quern::kLogLineCapacity];
        snprintf(text, sizeof text, "session frame %d, player %d is %s, round trip %d ms", s.frame, s.player, s.state,
                 s.ms);
        Quern::XLogFormat(line, kLogInfo, "Source/Game/Session/SessionManager.cpp", 214, "OnStateChanged", "OrvaneCore",
                          text);
        lines.push_back(std::string(line) + "\n");
    }
    return lines;
}

void BareDeflate(const std::vector<std::string>& lines) {
    static std::vector<Bytef> block(kBlock);
    z_stream stream{};
    size_t used = 0;
    for (const std::string& line : lines) {
        if (!stream.state) deflateInit2(&stream, 9, Z_DEFLATED, -15, 9, Z_DEFAULT_STRATEGY);
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(line.data()));
        stream.avail_in = static_cast<uInt>(line.size());
        stream.next_out = block.data() + used;
        stream.avail_out = static_cast<uInt>(kBlock - used);
        deflate(&stream, Z_SYNC_FLUSH);
        used = kBlock - stream.avail_out;
        if (used >= kFlushAt) {
            deflateEnd(&stream);
            stream = {};
            used = 0;
        }
    }
    if (stream.state) deflateEnd(&stream);
}

void Start(int mode) {
    static ModeSetting* setting;
    setting = new ModeSetting(mode);
    Orvane::Configure::Use(setting);
    Quern::ConsoleSink::Use(std::make_shared<Silence>());
    Orvane::OrvaneAppLifecycle::sharedInstance()->applicationDidBecomeActive(nullptr);
    Quern::OrvaneLogInit();
}

void DeflatedModes(int mode, const char* what, const char* wanted) {
    Start(mode);
    const std::vector<std::string> lines = FormattedLines();
    size_t bytes = 0;
    for (const std::string& line : lines)
        bytes += line.size();
    printf("(%zu bytes a line)\n", bytes / lines.size());
    Print(what,
          Compare(
              kRounds, kLines,
              [] {
                  for (int i = 0; i < kLines; ++i)
                      LogOne(i);
              },
              [&] { BareDeflate(lines); }),
          wanted);
}

void PlainMode(const fs::path& folder) {
    Start(0);
    auto peer = spdlog::basic_logger_mt("peer", (folder / "spdlog.log").string());
    peer->set_pattern("[%Y-%m-%d %H:%M:%S %e] | %l | [%n] |%t| %s:%#|%!| %v");
    // Neither is flushed for each line: both hand a stream's buffer on when it is full.
    Print("mode 0 against spdlog's file sink",
          Compare(
              kRounds, kLines,
              [] {
                  for (int i = 0; i < kLines; ++i)
                      LogOne(i);
              },
              [&] {
                  for (int i = 0; i < kLines; ++i) {
                      const Sample s = At(i);
                      peer->log({"Source/Game/Session/SessionManager.cpp", 214, "OnStateChanged"}, spdlog::level::info,
                                "session frame {}, player {} is {}, round trip {} ms", s.frame, s.player, s.state,
                                s.ms);
                  }
              }),
          "<= 1.0");
}

void Filtered() {
    Start(0);
    spdlog::set_level(spdlog::level::info);
    constexpr int kCalls = 10000000;
    Print("a filtered line against spdlog's",
          Compare(
              kRounds, kCalls,
              [] {
                  for (int i = 0; i < kCalls; ++i)
                      ORVANE_LOG_DEBUG("frame %d", i);
              },
              [] {
                  for (int i = 0; i < kCalls; ++i)
                      spdlog::debug("frame {}", i);
              }),
          "<= 0.333, ours <= 3 ns");
    Print("a filtered call of XLog itself against spdlog's",
          Compare(
              kRounds, kCalls,
              [] {
                  for (int i = 0; i < kCalls; ++i)
                      Quern::XLog(kLogDebug, "f", 1, "F", "frame %d", i);
              },
              [] {
                  for (int i = 0; i < kCalls; ++i)
                      spdlog::debug("frame {}", i);
              }),
          "<= 0.333, ours <= 3 ns");
}

// The share of the lines that are in the log; a full block loses some. `logged` is how many each function logged.
struct Kept {
    double one, four;
};

Kept CountKept(const fs::path& home, double loggedByOne, double loggedByFour) {
    const std::string command = std::string(ORVANE_LOG_PROGRAM) + " --key " ORVANE_LOG_KEY_FILE " --quiet '" +
                                (home / "Library/Caches").string() + "'";
    FILE* lines = popen(command.c_str(), "r");
    double one = 0, four = 0;
    char line[2 * Quern::kLogLineCapacity];
    while (lines && fgets(line, sizeof line, lines)) {
        one += strstr(line, kFunction) != nullptr;
        four += strstr(line, kOfFourThreads) != nullptr;
    }
    if (lines) pclose(lines);
    return {one / loggedByOne, four / loggedByFour};
}

void Threads(int mode, const char* what, const fs::path& home) {
    Start(mode);
    Comparison lines = Compare(
        kRounds, kLines * 4,
        [] {
            std::vector<std::thread> threads;
            for (int t = 0; t < 4; ++t)
                threads.emplace_back([] {
                    for (int i = 0; i < kLines; ++i)
                        LogOne(i, kOfFourThreads);
                });
            for (std::thread& thread : threads)
                thread.join();
        },
        [] {
            for (int i = 0; i < 4 * kLines; ++i)
                LogOne(i % kLines);
        });
    const double logged = 4.0 * kLines * (kRounds + 1);
    const Kept kept = CountKept(home, logged, logged);
    lines.ours /= kept.four;
    lines.other /= kept.one;
    lines.ratio *= kept.one / kept.four;
    Print(what, lines, "<= 1.3");
    printf("    kept: %.2f %% of 4 threads' lines (wanted: >= 90 %%), %.2f %% of one thread's\n", 100 * kept.four,
           100 * kept.one);
}

}  // namespace

// One case a process, since the library's own logger starts once: bench-log CASE. Without one, all in turn.
int main(int argc, char** argv) {
    if (argc < 2) {
        PrintHead();
        fflush(stdout);
        int failed = 0;
        for (const char* name : {"mode1", "mode2", "mode0", "filtered", "threads1", "threads2", "threads0"})
            failed |= system((std::string(argv[0]) + " " + name).c_str());
        return failed ? 1 : 0;
    }
    std::string home = (fs::temp_directory_path() / "orvane-bench-XXXXXX").string();
    if (!mkdtemp(home.data())) return 1;
    setenv("ORVANE_HOME", home.c_str(), 1);
    fs::create_directories(home + "/Library/Caches");
    const std::string name = argv[1];
    if (name == "mode1") DeflatedModes(1, "mode 1, all of XLog, against bare deflate of the same lines", "<= 1.15");
    if (name == "mode2") DeflatedModes(2, "mode 2, all of XLog, against bare deflate of the same lines", "<= 1.20");
    if (name == "mode0") PlainMode(home);
    if (name == "filtered") Filtered();
    if (name == "threads1") Threads(1, "4 threads in mode 1, a kept line against one thread's", home);
    if (name == "threads2") Threads(2, "4 threads in mode 2, a kept line against one thread's", home);
    if (name == "threads0") Threads(0, "4 threads in mode 0, a kept line against one thread's", home);
    fflush(stdout);
    std::error_code ignored;
    fs::remove_all(home, ignored);
    _exit(0);  // the flush thread still owns the mapped block
}
