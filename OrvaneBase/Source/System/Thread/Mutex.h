// The library's mutex and its scoped guard. A header that has a mutex says beside it what it guards, and before which
// other locks it is taken.
#ifndef ORVANE_SYSTEM_THREAD_MUTEX_H
#define ORVANE_SYSTEM_THREAD_MUTEX_H

#include <pthread.h>

#include "System/Thread/ThreadAnnotations.h"

namespace Quern {

// One POSIX mutex. Only the thread that took it may let it go, and nobody may hold it when it is destroyed. A recursive
// one may be taken again by the thread that holds it, and is free after as many releases; taking one that is not
// recursive twice never returns.
class ORVANE_CAPABILITY("mutex") CMutex {
public:
    explicit CMutex(bool recursive = false);
    ~CMutex();
    CMutex(const CMutex&) = delete;
    CMutex& operator=(const CMutex&) = delete;

    void Lock() ORVANE_ACQUIRE() { pthread_mutex_lock(&_mutex); }
    void Unlock() ORVANE_RELEASE() { pthread_mutex_unlock(&_mutex); }

private:
    friend class CCondition;  // waits on the POSIX mutex itself
    pthread_mutex_t _mutex;
};

// Holds a mutex for its scope. A null mutex means no locking, for code that works with and without one. The mutex is
// borrowed, and outlives the guard.
class ORVANE_SCOPED_CAPABILITY CCritical {
public:
    explicit CCritical(CMutex* mutex) ORVANE_ACQUIRE(mutex) : _mutex(mutex) {
        if (_mutex) _mutex->Lock();
    }
    ~CCritical() ORVANE_RELEASE() {
        if (_mutex) _mutex->Unlock();
    }
    CCritical(const CCritical&) = delete;
    CCritical& operator=(const CCritical&) = delete;

private:
    CMutex* _mutex;
};

}  // namespace Quern

#endif
