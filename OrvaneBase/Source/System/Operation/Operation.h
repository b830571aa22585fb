// One unit of background work.
#ifndef ORVANE_SYSTEM_OPERATION_OPERATION_H
#define ORVANE_SYSTEM_OPERATION_OPERATION_H

#include <atomic>

namespace Quern {

// Runs once or again and again, on a queue's threads, never on two at once. Owned by its queue, which deletes it when
// it is finished: after a run at whose end it is not to repeat.
class Operation {
public:
    virtual void Run() = 0;
    // A new heap copy, with the same id; the caller's.
    virtual Operation* Duplicate() const = 0;
    virtual ~Operation() = default;

    // From inside a run: says that the next one is not to begin before so many milliseconds from now. Does not block.
    void Sleep(int milliseconds);
    // Ends the repetition; a run that is under way goes on to its end.
    void Cancel() { _repeat.store(false, std::memory_order_relaxed); }

    bool IsRepeating() const { return _repeat.load(std::memory_order_relaxed); }
    // Each constructed operation of the process has its own; copies share it.
    long long GetId() const { return _id; }
    // In milliseconds since the epoch; 0: at any time.
    long long GetNextRun() const { return _nextRun.load(std::memory_order_relaxed); }

protected:
    Operation();
    Operation(const Operation& other);
    Operation& operator=(const Operation& other);

    void SetRepeat(bool repeat) { _repeat.store(repeat, std::memory_order_relaxed); }

private:
    std::atomic<bool> _repeat{true};
    long long _id;
    std::atomic<long long> _nextRun{0};
};

}  // namespace Quern

#endif
