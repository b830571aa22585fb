// A set of timers, each on a thread of its own.
#ifndef ORVANE_SYSTEM_THREAD_TIMER_H
#define ORVANE_SYSTEM_THREAD_TIMER_H

#include <atomic>
#include <map>
#include <memory>

#include "System/Thread/Mutex.h"
#include "System/Thread/TimerImp.h"

namespace Quern {

// Any thread. A callback runs outside the lock, on its timer's thread, and may stop its own timer. Firings come up to a
// second late (see CTimerImp).
class CTimer {
public:
    CTimer();
    // Stops every timer; waits for no thread.
    virtual ~CTimer();
    CTimer(const CTimer&) = delete;
    CTimer& operator=(const CTimer&) = delete;

    // First firing after so many milliseconds, and then, with `repeat`, again and again; CTimerImp::kNever never fires.
    // Returns the timer's id, which no other timer of the process has. Blocks for 50 ms, with the lock held: starts on
    // one object are serial, and StopTimer waits for them.
    unsigned int StartTimer(unsigned long long milliseconds, bool repeat, CTimerImp::Callback callback, void* user);
    // An unknown id is ignored.
    void StopTimer(unsigned int id);

private:
    static std::atomic<unsigned int> _nextId;

    CMutex _mutex{true};
    std::unique_ptr<std::map<unsigned int, CTimerImp*>> _timers ORVANE_PT_GUARDED_BY(_mutex);
};

}  // namespace Quern

#endif
