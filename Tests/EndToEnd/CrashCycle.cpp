#include "CrashCycle.h"

#include <sched.h>
#include <sys/mman.h>

#include "Storage/Log/LogRecord.h"
#include "Support/Process.h"
#include "Support/Test.h"

namespace EndToEnd {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::microseconds;

constexpr uint64_t kMostLinesBeforeKill = 3000;
constexpr uint64_t kMostDelay = 600;    // microseconds, behind the moment that was waited for
constexpr uint32_t kNearFlush = 45000;  // bytes of block; from 51200 on it is flushed

// The length in the header of the block, as whoever else looks into the mapped file sees it.
class BlockWatch {
public:
    explicit BlockWatch(const std::filesystem::path& file) : _descriptor(open(file.c_str(), O_RDONLY | O_CLOEXEC)) {}
    ~BlockWatch() { close(_descriptor); }
    bool IsOpen() const { return _descriptor >= 0; }
    // 0 of a file to which a killed host has not given its length.
    uint32_t Length() const {
        uint8_t bytes[4] = {};
        [[maybe_unused]] const ssize_t count = pread(_descriptor, bytes, sizeof bytes, Quern::LogRecord::kLenAt);
        return Quern::LogRecord::LoadU32(bytes);
    }

private:
    const int _descriptor;
};

// Shorter than the scheduler's grain, so nothing but spinning gives it.
void Spin(microseconds time) {
    const auto end = Clock::now() + time;
    while (Clock::now() < end)
        sched_yield();
}

bool HasLines(const std::string& text, uint64_t count) {
    return static_cast<uint64_t>(std::count(text.begin(), text.end(), '\n')) >= count;
}

// Each thread's acknowledgements must count up one by one from its first line.
bool TakeAcknowledged(const std::string& text, uint64_t first, LastAcknowledged& out, std::string& problem) {
    if (!text.empty() && text.back() != '\n') {
        problem = "the last acknowledgement is cut";
        return false;
    }
    std::istringstream stream(text);
    unsigned thread;
    uint64_t sequence;
    while (stream >> thread >> sequence) {
        const auto last = out.find(thread);
        if (sequence != (last == out.end() ? first : last->second + 1)) {
            problem = "thread " + std::to_string(thread) + " acknowledged " + std::to_string(sequence) + " out of turn";
            return false;
        }
        out[thread] = sequence;
    }
    return true;
}

}  // namespace

bool CrashCycle::Run(KillAt moment, uint64_t firstSequence, LastAcknowledged& acknowledged, std::string& problem) {
    Process host(_container.Host(
        {"--module", _plan.module, "--log-mode", std::to_string(_plan.logMode), "--threads",
         std::to_string(_plan.threads), "--lines", "0", "--first", std::to_string(firstSequence), "--lines-per-second",
         std::to_string(_plan.linesPerSecond), "--ack-fd", std::to_string(Process::kAcknowledgeDescriptor)}));
    const auto started = Clock::now();
    host.Send("launch\n");
    const bool came = WaitForMoment(moment, host, started);
    host.Signal(SIGKILL);
    const Ending ending = host.Wait();
    if (!came || ending.signal != SIGKILL) {
        problem = came ? "the host ended by itself" : "the host did not come to the moment of the kill";
        problem += "; it said:\n" + host.Error();
        return false;
    }
    return TakeAcknowledged(host.Acknowledged(), firstSequence, acknowledged, problem);
}

bool CrashCycle::WaitForMoment(KillAt moment, Process& host, Clock::time_point started) {
    if (moment == KillAt::kStartUp) return WaitInStartUp(started);
    if (!host.WaitForAcknowledged([](const std::string& text) { return HasLines(text, 1); })) return false;
    _startUp = std::chrono::duration_cast<microseconds>(Clock::now() - started);
    if (moment == KillAt::kFlush) return WaitForFlush(host);

    const uint64_t lines = 1 + Draw(kMostLinesBeforeKill);
    const bool came = host.WaitForAcknowledged([lines](const std::string& text) { return HasLines(text, lines); });
    Spin(DrawDelay());
    return came;
}

// Half of the draws are spread over the whole start, half wait for the moment at which the former block is taken.
bool CrashCycle::WaitInStartUp(Clock::time_point started) {
    const BlockWatch block(_container.MappedFile(_plan.module));
    const auto latest = started + _startUp * 5 / 4;
    if (block.IsOpen() && block.Length() > 0 && Draw(1) == 0) {
        while (block.Length() > 0 && Clock::now() < latest)
            sched_yield();
        Spin(DrawDelay());
    } else {
        std::this_thread::sleep_for(microseconds(Draw(static_cast<uint64_t>((_startUp * 5 / 4).count()))));
    }
    return true;
}

bool CrashCycle::WaitForFlush(Process& host) {
    const BlockWatch block(_container.MappedFile(_plan.module));
    if (!block.IsOpen()) return false;
    // Kills before, at and after the moment at which the block is emptied.
    const bool waitForEmpty = Draw(3) != 0;
    const auto deadline = Clock::now() + kPatience;
    const auto waitUntil = [&](auto condition) {
        while (!condition()) {
            if (Clock::now() > deadline || host.IsSilent()) return false;
            sched_yield();
        }
        return true;
    };
    if (!waitUntil([&] { return block.Length() >= kNearFlush; })) return false;
    if (waitForEmpty && !waitUntil([&] { return block.Length() < kNearFlush; })) return false;
    Spin(DrawDelay());
    return true;
}

// Half of the delays are short: the windows behind the moment are.
microseconds CrashCycle::DrawDelay() {
    return microseconds(Draw(Draw(1) == 0 ? kMostDelay / 10 : kMostDelay));
}

}  // namespace EndToEnd
