// The library's condition and its event without memory.
#ifndef ORVANE_SYSTEM_THREAD_CONDITION_H
#define ORVANE_SYSTEM_THREAD_CONDITION_H

#include <pthread.h>

#include <memory>

#include "System/Thread/Mutex.h"

namespace Quern {

// A condition on a mutex that it does not own. With a null mutex every wait returns at once.
class CCondition {
public:
    // lockOnWait: Wait takes the mutex itself; otherwise its caller holds it.
    CCondition(CMutex* mutex, bool lockOnWait);
    ~CCondition();
    CCondition(const CCondition&) = delete;
    CCondition& operator=(const CCondition&) = delete;

    void Wait() ORVANE_NO_THREAD_SAFETY_ANALYSIS;
    // Wait, but for a condition that holds already: it is looked at under the mutex, so a Set that follows the change
    // is not lost between the look and the wait. Only with lockOnWait.
    template <typename Holds>
    void WaitUnless(Holds holds) ORVANE_NO_THREAD_SAFETY_ANALYSIS {
        const CCritical guard(_mutex);
        if (!holds()) pthread_cond_wait(&_condition, &_mutex->_mutex);
    }
    // Waits at most that many milliseconds of the wall clock. Takes the mutex itself, whatever lockOnWait.
    void TimeWait(unsigned int milliseconds) ORVANE_NO_THREAD_SAFETY_ANALYSIS;
    // Wakes every waiter; takes the mutex.
    void Set();
    // Wakes one waiter; takes the mutex.
    void WakeUp();

private:
    pthread_cond_t _condition;
    CMutex* _mutex;
    bool _lockOnWait;
};

// An event without a signalled state: Set releases those that wait at that moment, and is lost if nobody does.
class CEvent {
public:
    CEvent();

    void Wait() { _condition->Wait(); }
    // Does not wait if the condition holds, which whoever calls Set has changed before. It may take leaf locks.
    template <typename Holds>
    void WaitUnless(Holds holds) {
        _condition->WaitUnless(holds);
    }
    void Set() { _condition->Set(); }
    // Has nothing to reset; part of the interface and of its users' protocol.
    void Reset() {}

private:
    CMutex _mutex{false};
    std::unique_ptr<CCondition> _condition;
};

}  // namespace Quern

#endif
