#include "CrashVerdict.h"

#include <algorithm>

#include "Host/LoadLine.h"
#include "Support/LoadCheck.h"

namespace EndToEnd {
namespace {

constexpr size_t kMostProblems = 20;
constexpr char kMarker[] = "[F][ sg_buffer_async";
constexpr char kBeginOfRestore[] = "----------- begin of mmap -----------";
constexpr char kEndOfRestore[] = "----------- end of mmap -----------";

std::string Where(unsigned thread, uint64_t sequence) {
    return "thread " + std::to_string(thread) + " line " + std::to_string(sequence);
}

}  // namespace

void CrashVerdict::Take(const std::string& line) {
    if (line.compare(0, sizeof kMarker - 1, kMarker) == 0) {
        ++_markers;
        return;
    }
    if (line == kBeginOfRestore) ++_restoredBlocks;
    if (line == kBeginOfRestore || line == kEndOfRestore) return;

    const std::string text = TextOfLogLine(line);
    unsigned thread = 0;
    uint64_t sequence = 0;
    if (ParseLoadLine(text, thread, sequence)) {
        TakeLoadLine(text, thread, sequence);
    } else if (text != "the crash test ends") {
        Complain("a line that nobody logged: " + line);
    }
}

// A thread's lines must come as one unbroken run for each cycle, which a missing, a doubled and a displaced line all
// break.
void CrashVerdict::TakeLoadLine(const std::string& text, unsigned thread, uint64_t sequence) {
    ++_readBack;
    if (text != OrvaneHost::LoadLine(thread, sequence)) Complain(Where(thread, sequence) + " is damaged: " + text);

    const size_t cycle = CycleOf(sequence);
    size_t& cycleOfThread = _cycleOfThread[thread];
    if (cycle < cycleOfThread) Complain(Where(thread, sequence) + " comes after lines of a later run");
    cycleOfThread = cycle;

    const auto [last, isFirst] = _last.try_emplace({cycle, thread}, sequence);
    const uint64_t expected = isFirst ? _cycles[cycle].firstSequence : last->second + 1;
    if (sequence != expected) {
        Complain(Where(thread, sequence) + " stands where line " + std::to_string(expected) + " belongs");
    }
    last->second = sequence;
}

void CrashVerdict::Finish() {
    for (size_t cycle = 0; cycle < _cycles.size(); ++cycle) {
        for (const auto& [thread, acknowledged] : _cycles[cycle].acknowledged) {
            const auto last = _last.find({cycle, thread});
            const uint64_t next = last == _last.end() ? _cycles[cycle].firstSequence : last->second + 1;
            if (next > acknowledged) continue;
            Complain(Where(thread, next) + " to " + std::to_string(acknowledged) + " are lost (cycle " +
                     std::to_string(cycle) + ")");
        }
    }
    if (_markers > 0) Complain(std::to_string(_markers) + " lines were replaced by the marker of a full block");
}

uint64_t CrashVerdict::Acknowledged() const {
    uint64_t count = 0;
    for (const CycleRecord& cycle : _cycles) {
        for (const auto& [thread, last] : cycle.acknowledged)
            count += last - cycle.firstSequence + 1;
    }
    return count;
}

size_t CrashVerdict::CycleOf(uint64_t sequence) const {
    const auto after =
        std::upper_bound(_cycles.begin(), _cycles.end(), sequence,
                         [](uint64_t wanted, const CycleRecord& cycle) { return wanted < cycle.firstSequence; });
    return after == _cycles.begin() ? 0 : static_cast<size_t>(after - _cycles.begin()) - 1;
}

void CrashVerdict::Complain(const std::string& problem) {
    if (_problems.size() < kMostProblems) _problems.push_back(problem);
}

}  // namespace EndToEnd
