#include "Otlp/Clock.h"

namespace OrvaneOtlp {
namespace {

class SteadyClock final : public Clock {
    Time Now() const override { return std::chrono::steady_clock::now(); }
    void Wait(std::condition_variable& changed, std::unique_lock<std::mutex>& lock, Time until) override {
        // The furthest time overflows on its way to the kernel.
        if (until == Time::max())
            changed.wait(lock);
        else
            changed.wait_until(lock, until);
    }
};

}  // namespace

std::shared_ptr<Clock> Clock::Steady() {
    return std::make_shared<SteadyClock>();
}

}  // namespace OrvaneOtlp
