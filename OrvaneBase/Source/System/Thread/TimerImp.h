// One running timer: a thread that looks at the clock once a second.
#ifndef ORVANE_SYSTEM_THREAD_TIMER_IMP_H
#define ORVANE_SYSTEM_THREAD_TIMER_IMP_H

#include <cstdint>

#include "System/Thread/ThreadBase.h"

namespace Quern {

// Its resolution is one second: a firing comes 0 to 1 s after it is due. A one-shot timer keeps its thread, idling,
// until it is stopped.
class CTimerImp : public CThreadBase {
public:
    using Callback = void (*)(unsigned int timerId, void* user);

    // An interval that never fires.
    static constexpr unsigned long long kNever = 0xFFFFFFFFULL;

    explicit CTimerImp(unsigned int timerId) : _timerId(timerId) {}

    // Once. Blocks the caller for 50 ms. The callback runs on the timer's own thread.
    void StartTimer(unsigned long long milliseconds, bool repeat, Callback callback, void* user);
    // On the timer's own thread no firing follows. On another, one that the timer had found due by then may still
    // begin.
    void StopTimer();
    // Destroys the timer without waiting for its thread, and clears the pointer.
    static void DestoryTimer(CTimerImp** timer);

    void OnThreadProc() override;

private:
    static constexpr uint64_t kAllOnes = UINT64_MAX;

    Callback _callback = nullptr;
    void* _user = nullptr;
    CMutex _mutex{true};  // guards what StopTimer changes; not held during the callback
    uint32_t _timerId ORVANE_GUARDED_BY(_mutex);
    uint64_t _interval ORVANE_GUARDED_BY(_mutex) = kAllOnes;    // milliseconds
    uint64_t _lastLook = 0;                                     // milliseconds since the epoch
    uint64_t _nextFiring ORVANE_GUARDED_BY(_mutex) = kAllOnes;  // milliseconds since the epoch
    bool _repeat = false;
    uint32_t _fireCount = 0;
};

}  // namespace Quern

#endif
