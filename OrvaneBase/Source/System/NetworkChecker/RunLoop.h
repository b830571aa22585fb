// The run loop of a thread: what a diagnostic hangs its socket and its lookup on, run until a deadline.
#ifndef ORVANE_SYSTEM_NETWORK_CHECKER_RUN_LOOP_H
#define ORVANE_SYSTEM_NETWORK_CHECKER_RUN_LOOP_H

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>

namespace Quern {

// Belongs to its thread, but for Post. Handlers and calls run on that thread, inside RunUntil, with no lock held; they
// may add and remove sources.
class RunLoop {
public:
    using Clock = std::chrono::steady_clock;
    using Call = std::function<void()>;
    using Source = uint64_t;  // never 0

    // The calling thread's, made at the first need. Whoever posts to it from another thread holds it weakly: it goes
    // with its thread.
    static std::shared_ptr<RunLoop> Current();

    RunLoop();
    ~RunLoop();
    RunLoop(const RunLoop&) = delete;
    RunLoop& operator=(const RunLoop&) = delete;

    // Calls `readable` whenever the descriptor has something to read, or an error to report. The descriptor stays open
    // until the source is removed.
    Source AddDescriptor(int descriptor, Call readable);
    // Keeps the loop running: stands for something that will be posted.
    Source AddPending();
    // An unknown source is ignored.
    void Remove(Source source);

    // Any thread: performs the call in the loop, if it runs until then.
    void Post(Call call);

    // Returns when no source is left, or at the deadline. What was posted before either is performed first.
    void RunUntil(Clock::time_point deadline);

private:
    struct Members;

    void PerformPosted();
    bool WaitForEvents(Clock::time_point deadline);

    const std::unique_ptr<Members> _members;
};

}  // namespace Quern

#endif
