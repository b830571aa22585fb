// A value that threads share through a lock of its own. Only bool is there, for the flags of the thread objects.
#ifndef ORVANE_SYSTEM_THREAD_ATOMIC_H
#define ORVANE_SYSTEM_THREAD_ATOMIC_H

#include "System/Thread/Mutex.h"

namespace Quern {

template <typename T>
class CAtomic;

// For flags that are read once per pass of a loop: a mutex around a byte costs nothing that matters there. Any thread.
// The lock is a leaf: nothing is called or waited for under it. A read and a write that depends on it are two steps,
// and another thread may come in between.
template <>
class CAtomic<bool> {
public:
    explicit CAtomic(bool initial) : _value(initial) {}

    bool Get() const {
        const CCritical guard(&_mutex);
        return _value;
    }
    void Set(bool value) {
        const CCritical guard(&_mutex);
        _value = value;
    }

private:
    mutable CMutex _mutex{true};
    bool _value ORVANE_GUARDED_BY(_mutex);
};

}  // namespace Quern

#endif
