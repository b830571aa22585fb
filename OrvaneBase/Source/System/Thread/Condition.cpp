#include "System/Thread/Condition.h"

#include <sys/time.h>

namespace Quern {

CCondition::CCondition(CMutex* mutex, bool lockOnWait) : _mutex(mutex), _lockOnWait(lockOnWait) {
    pthread_cond_init(&_condition, nullptr);
}

CCondition::~CCondition() {
    pthread_cond_destroy(&_condition);
}

void CCondition::Wait() {
    if (!_mutex) return;
    if (_lockOnWait) _mutex->Lock();
    pthread_cond_wait(&_condition, &_mutex->_mutex);
    if (_lockOnWait) _mutex->Unlock();
}

void CCondition::TimeWait(unsigned int milliseconds) {
    if (!_mutex) return;
    _mutex->Lock();  // before the clock is read: the wait for the lock is not part of the time
    constexpr long kNanosecondsPerSecond = 1000000000L;
    timeval now;
    gettimeofday(&now, nullptr);
    timespec until;
    until.tv_sec = now.tv_sec + static_cast<time_t>(milliseconds / 1000);
    until.tv_nsec = now.tv_usec * 1000L + static_cast<long>(milliseconds % 1000) * 1000000L;
    if (until.tv_nsec >= kNanosecondsPerSecond) {
        until.tv_sec += 1;
        until.tv_nsec -= kNanosecondsPerSecond;
    }
    pthread_cond_timedwait(&_condition, &_mutex->_mutex, &until);
    _mutex->Unlock();
}

void CCondition::Set() {
    const CCritical guard(_mutex);
    pthread_cond_broadcast(&_condition);
}

void CCondition::WakeUp() {
    const CCritical guard(_mutex);
    pthread_cond_signal(&_condition);
}

CEvent::CEvent() : _condition(std::make_unique<CCondition>(&_mutex, true)) {}

}  // namespace Quern
