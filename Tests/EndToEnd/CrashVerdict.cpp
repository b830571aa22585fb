#include "CrashVerdict.h"

#include "Host/LoadLine.h"
#include "Support/LoadCheck.h"
#include "Support/Test.h"

namespace EndToEnd {
namespace {

constexpr size_t kMostProblems = 20;
constexpr char kMarker[] = "[F][ sg_buffer_async.Length() >= BUFFER_BLOCK_LENTH*4/5, len: ";
constexpr int kBrim = 153600 - 200;  // a marker that finds that much may be the last one that fits
constexpr char kBeginOfRestore[] = "----------- begin of mmap -----------";
constexpr char kEndOfRestore[] = "----------- end of mmap -----------";

std::string Where(unsigned thread, uint64_t sequence) {
    return "thread " + std::to_string(thread) + " line " + std::to_string(sequence);
}

}  // namespace

void CrashVerdict::Take(const std::string& line) {
    if (TakeMarker(line)) return;
    if (line == kBeginOfRestore) ++_totals.restoredBlocks;
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

// The last one of a block that is full to the brim may be cut anywhere.
bool CrashVerdict::TakeMarker(const std::string& line) {
    const std::string marker = kMarker;
    const bool isWhole = line.compare(0, marker.size(), marker) == 0;
    if (!isWhole && (!_mayOutrun || line.empty() || marker.compare(0, line.size(), line) != 0)) return false;
    ++_totals.markers;
    Overload& overload = _overload[_cycle];
    ++overload.markers;
    if (!isWhole || atoi(line.c_str() + marker.size()) > kBrim) overload.isFullToTheBrim = true;
    return true;
}

bool CrashVerdict::ExcuseLoss(size_t cycle, uint64_t markersBefore, uint64_t count) {
    Overload& overload = _overload[cycle];
    if (!_mayOutrun || overload.markers == markersBefore) return false;
    overload.lost += count;
    return true;
}

// A thread's lines must come as one unbroken run for each cycle, which a missing, a doubled and a displaced line all
// break.
void CrashVerdict::TakeLoadLine(const std::string& text, unsigned thread, uint64_t sequence) {
    ++_totals.readBack;
    if (text != OrvaneHost::LoadLine(thread, sequence)) Complain(Where(thread, sequence) + " is damaged: " + text);

    const size_t cycle = std::min<size_t>((sequence - 1) / kSequencesOfCycle, _cycles.size() - 1);
    _cycle = std::max(_cycle, cycle);
    size_t& cycleOfThread = _cycleOfThread[thread];
    if (cycle < cycleOfThread) Complain(Where(thread, sequence) + " comes after lines of a later run");
    cycleOfThread = cycle;

    const uint64_t markers = _overload[cycle].markers;
    const auto [last, isFirst] = _last.try_emplace({cycle, thread}, Last{cycle * kSequencesOfCycle, 0});
    const uint64_t expected = last->second.sequence + 1;
    if (sequence != expected &&
        !(sequence > expected && ExcuseLoss(cycle, last->second.markersBefore, sequence - expected))) {
        Complain(Where(thread, sequence) + " stands where line " + std::to_string(expected) + " belongs");
    }
    last->second = {sequence, markers};
}

void CrashVerdict::Finish() {
    for (size_t cycle = 0; cycle < _cycles.size(); ++cycle) {
        for (const auto& [thread, acknowledged] : _cycles[cycle]) {
            _totals.acknowledged += acknowledged - cycle * kSequencesOfCycle;
            const auto found = _last.find({cycle, thread});
            const Last last = found == _last.end() ? Last{cycle * kSequencesOfCycle, 0} : found->second;
            if (last.sequence >= acknowledged) continue;
            if (ExcuseLoss(cycle, last.markersBefore, acknowledged - last.sequence)) continue;
            Complain(Where(thread, last.sequence + 1) + " to " + std::to_string(acknowledged) + " are lost (cycle " +
                     std::to_string(cycle) + ")");
        }
        // Each thread may have had one line under way, which nobody acknowledged.
        const Overload& overload = _overload[cycle];
        const std::string counts = std::to_string(overload.markers) + " markers stand for " +
                                   std::to_string(overload.lost) + " lost lines (cycle " + std::to_string(cycle) + ")";
        if (overload.lost > overload.markers && !overload.isFullToTheBrim) Complain("too few: " + counts);
        if (overload.markers > overload.lost + _cycleOfThread.size()) Complain("too many: " + counts);
    }
}

void CrashVerdict::Complain(const std::string& problem) {
    if (_problems.size() < kMostProblems) _problems.push_back(problem);
}

}  // namespace EndToEnd
