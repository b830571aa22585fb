// A sender's time that goes on when a test says so.
#ifndef ORVANE_TESTS_TOOLS_OTLP_MANUAL_CLOCK_H
#define ORVANE_TESTS_TOOLS_OTLP_MANUAL_CLOCK_H

#include <atomic>

#include "Otlp/Clock.h"

namespace OrvaneOtlp {

class ManualClock final : public Clock {
public:
    Time Now() const override { return Time(std::chrono::milliseconds(_now.load())); }
    // Looks a thousand times a second whether it has gone on.
    void Wait(std::condition_variable& changed, std::unique_lock<std::mutex>& lock, Time) override {
        changed.wait_for(lock, std::chrono::milliseconds(1));
    }
    void Advance(std::chrono::milliseconds time) { _now += time.count(); }

private:
    std::atomic<long> _now{1000000};
};

}  // namespace OrvaneOtlp

#endif
