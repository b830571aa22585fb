// The time that a sender waits by; a test has one of its own.
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
    virtual Time Now() const = 0;
    // Waits until it is notified or that time has come, or for no reason at all. Time::max() never comes.
    virtual void Wait(std::condition_variable& changed, std::unique_lock<std::mutex>& lock, Time until) = 0;

    // The machine's.
    static std::shared_ptr<Clock> Steady();
};

}  // namespace OrvaneOtlp

#endif
