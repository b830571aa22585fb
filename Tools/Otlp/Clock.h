// The time that a sender waits by. A test has one of its own, so that it sees minutes of retries pass in a moment.
#ifndef ORVANE_TOOLS_OTLP_CLOCK_H
#define ORVANE_TOOLS_OTLP_CLOCK_H

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>

namespace OrvaneOtlp {

// Any thread.
class Clock {
public:
    using Time = std::chrono::steady_clock::time_point;

    virtual ~Clock() {}
    // Now, on a clock that is never set back.
    virtual Time Now() const = 0;
    // Waits until `changed` is notified or that time has come; it may also return for no reason, so the caller looks
    // again. `lock` is held at the call and at the return, and free in between. Time::max() never comes.
    virtual void Wait(std::condition_variable& changed, std::unique_lock<std::mutex>& lock, Time until) = 0;

    // The machine's. One object serves any number of exporters.
    static std::shared_ptr<Clock> Steady();
};

}  // namespace OrvaneOtlp

#endif
