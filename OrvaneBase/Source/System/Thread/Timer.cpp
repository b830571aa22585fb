#include "System/Thread/Timer.h"

namespace Quern {

std::atomic<unsigned int> CTimer::_nextId{1};

CTimer::CTimer() : _timers(std::make_unique<std::map<unsigned int, CTimerImp*>>()) {}

CTimer::~CTimer() {
    for (auto& [id, timer] : *_timers) {
        timer->StopTimer();
        CTimerImp::DestoryTimer(&timer);
    }
    _timers->clear();
}

unsigned int CTimer::StartTimer(unsigned long long milliseconds, bool repeat, CTimerImp::Callback callback,
                                void* user) {
    const CCritical guard(&_mutex);
    const unsigned int id = _nextId.fetch_add(1, std::memory_order_relaxed);
    CTimerImp* const timer = new CTimerImp(id);
    timer->StartTimer(milliseconds, repeat, callback, user);
    (*_timers)[id] = timer;
    return id;
}

void CTimer::StopTimer(unsigned int id) {
    const CCritical guard(&_mutex);
    const auto found = _timers->find(id);
    if (found == _timers->end()) return;
    found->second->StopTimer();
    CTimerImp::DestoryTimer(&found->second);
    _timers->erase(found);
}

}  // namespace Quern
