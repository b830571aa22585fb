// Holds what was read back of a log against what the killed hosts had acknowledged.
#ifndef ORVANE_TESTS_END_TO_END_CRASH_VERDICT_H
#define ORVANE_TESTS_END_TO_END_CRASH_VERDICT_H

#include "CrashCycle.h"
#include "Support/Test.h"

namespace EndToEnd {

// Each cycle's threads count from 1 on behind so many for each cycle before it.
constexpr uint64_t kSequencesOfCycle = 100000000;

struct CrashTotals {
    uint64_t acknowledged = 0, readBack = 0, restoredBlocks = 0, markers = 0;
};

class CrashVerdict {
public:
    // What was acknowledged in the cycles, in the order in which they ran; what is counted adds to the totals.
    // `mayOutrun`: the lines came as fast as they could, so a block may have filled faster than it was flushed. Then a
    // marker stands for each line that was lost, and only there; a block that is full to the brim loses further ones in
    // silence.
    CrashVerdict(std::vector<LastAcknowledged> cycles, bool mayOutrun, CrashTotals& totals)
        : _cycles(std::move(cycles)), _mayOutrun(mayOutrun), _totals(totals), _overload(_cycles.size()) {}

    // Takes the next line of the log, in the order of the log.
    void Take(const std::string& line);
    // After the last line.
    void Finish();

    // Empty if every acknowledged line was there exactly once, byte for byte, in the order of its thread, and nothing
    // else was, but for what a full block may lose.
    const std::vector<std::string>& Problems() const { return _problems; }

private:
    // What one cycle has seen of full blocks.
    struct Overload {
        uint64_t markers = 0, lost = 0;
        bool isFullToTheBrim = false;
    };
    struct Last {
        uint64_t sequence, markersBefore;  // the cycle's, when this line came
    };

    bool TakeMarker(const std::string& line);
    void TakeLoadLine(const std::string& text, unsigned thread, uint64_t sequence);
    // Counts lines of a thread as lost to markers that came since its last one. False if there were none.
    bool ExcuseLoss(size_t cycle, uint64_t markersBefore, uint64_t count);
    void Complain(const std::string& problem);

    const std::vector<LastAcknowledged> _cycles;
    const bool _mayOutrun;
    CrashTotals& _totals;
    std::vector<Overload> _overload;                    // of each cycle
    size_t _cycle = 0;                                  // that the log has come to
    std::map<std::pair<size_t, unsigned>, Last> _last;  // cycle and thread to the last line read
    std::map<unsigned, size_t> _cycleOfThread;          // the cycle that a thread's lines have come to
    std::vector<std::string> _problems;
};

}  // namespace EndToEnd

#endif
