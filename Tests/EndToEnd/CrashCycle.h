// One life of the host that ends by SIGKILL at a moment drawn at random.
#ifndef ORVANE_TESTS_END_TO_END_CRASH_CYCLE_H
#define ORVANE_TESTS_END_TO_END_CRASH_CYCLE_H

#include "Support/Container.h"
#include "Support/Test.h"

namespace EndToEnd {

// The moments that are told apart, because each has code of its own under way.
enum class KillAt {
    kStartUp,     // anywhere from the start of the process until it logs: the restore of the former block
    kAfterLines,  // anywhere among the lines
    kFlush,       // around the moment at which the block goes to the file
};
constexpr const char* kKillMoments[] = {"start-up", "lines", "flush"};  // their names

struct CrashPlan {
    uint64_t threads = 4, logMode = 2;
    uint64_t linesPerSecond = 0;  // of each thread; 0: as fast as it goes
    std::string module = "CrashTest";
};

// What the killed host had acknowledged: thread to the number of its last line. A thread without one is missing.
using LastAcknowledged = std::map<unsigned, uint64_t>;

class CrashCycle {
public:
    CrashCycle(const Container& container, const CrashPlan& plan, std::mt19937_64& random)
        : _container(container), _plan(plan), _random(random) {}

    // Runs a host whose threads count from `firstSequence` on, and kills it. False, with the reason in `problem`, if
    // the host ended by itself, acknowledged out of turn, or did not come to the moment.
    bool Run(KillAt moment, uint64_t firstSequence, LastAcknowledged& acknowledged, std::string& problem);

private:
    bool WaitForMoment(KillAt moment, Process& host, std::chrono::steady_clock::time_point started);
    bool WaitInStartUp(std::chrono::steady_clock::time_point started);
    bool WaitForFlush(Process& host);
    std::chrono::microseconds DrawDelay();
    uint64_t Draw(uint64_t most) { return std::uniform_int_distribution<uint64_t>(0, most)(_random); }

    const Container& _container;
    const CrashPlan& _plan;
    std::mt19937_64& _random;
    std::chrono::microseconds _startUp{200000};  // until the first acknowledgement, as the last cycle measured it
};

}  // namespace EndToEnd

#endif
