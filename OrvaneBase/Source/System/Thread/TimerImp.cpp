#include "System/Thread/TimerImp.h"

#include "System/Thread/Time.h"

namespace Quern {
namespace {

uint64_t NowInMilliseconds() {
    return static_cast<uint64_t>(CTime::GetTimeTick() / 1000);
}

}  // namespace

void CTimerImp::StartTimer(unsigned long long milliseconds, bool repeat, Callback callback, void* user) {
    Sleep(50);  // lets the delay pass with which the new thread begins
    _callback = callback;
    _user = user;
    _repeat = repeat;
    {
        const CCritical guard(&_mutex);
        _interval = milliseconds;
        if (milliseconds != kNever) _nextFiring = NowInMilliseconds() + milliseconds;
    }
    Start();
}

void CTimerImp::StopTimer() {
    {
        const CCritical guard(&_mutex);
        _timerId = 0;
        _interval = kAllOnes;
        _nextFiring = kAllOnes;
    }
    Stop();
}

void CTimerImp::DestoryTimer(CTimerImp** timer) {
    CThreadBase* thread = timer ? *timer : nullptr;
    if (timer) *timer = nullptr;
    Destroy(&thread, true);
}

void CTimerImp::OnThreadProc() {
    const uint64_t now = NowInMilliseconds();
    _lastLook = now;
    bool due;
    uint32_t timerId;
    {
        const CCritical guard(&_mutex);
        due = now >= _nextFiring;
        timerId = _timerId;
    }
    if (due) {
        if (_callback && (_repeat || _fireCount == 0)) _callback(timerId, _user);
        ++_fireCount;
        const CCritical guard(&_mutex);
        _nextFiring = _interval + now;
    }
    Sleep(1000);
}

}  // namespace Quern
