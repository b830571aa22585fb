// Holds what was read back of a log against what the killed hosts had acknowledged.
#ifndef ORVANE_TESTS_END_TO_END_CRASH_VERDICT_H
#define ORVANE_TESTS_END_TO_END_CRASH_VERDICT_H

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "CrashCycle.h"

namespace EndToEnd {

// The lines of one cycle: its threads count from `firstSequence` up to the next cycle's.
struct CycleRecord {
    uint64_t firstSequence;
    LastAcknowledged acknowledged;
};

class CrashVerdict {
public:
    // The cycles in the order in which they ran.
    explicit CrashVerdict(std::vector<CycleRecord> cycles) : _cycles(std::move(cycles)) {}

    // Takes the next line of the log, in the order of the log.
    void Take(const std::string& line);
    // After the last line.
    void Finish();

    // Empty if every acknowledged line was there exactly once, byte for byte, in the order of its thread, and nothing
    // else was.
    const std::vector<std::string>& Problems() const { return _problems; }
    uint64_t Acknowledged() const;
    uint64_t ReadBack() const { return _readBack; }
    uint64_t RestoredBlocks() const { return _restoredBlocks; }
    uint64_t Markers() const { return _markers; }

private:
    void TakeLoadLine(const std::string& text, unsigned thread, uint64_t sequence);
    void Complain(const std::string& problem);
    size_t CycleOf(uint64_t sequence) const;

    std::vector<CycleRecord> _cycles;
    std::map<std::pair<size_t, unsigned>, uint64_t> _last;  // cycle and thread to the last line read
    std::map<unsigned, size_t> _cycleOfThread;              // the cycle that a thread's lines have come to
    std::vector<std::string> _problems;
    uint64_t _readBack = 0;
    uint64_t _restoredBlocks = 0;
    uint64_t _markers = 0;
};

}  // namespace EndToEnd

#endif
