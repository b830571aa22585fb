// A value that threads share through a lock of its own.
#ifndef ORVANE_SYSTEM_THREAD_ATOMIC_H
#define ORVANE_SYSTEM_THREAD_ATOMIC_H

#include "System/Thread/Mutex.h"

namespace Quern {

template <typename T>
class CAtomic;

// Flags that are read once per pass of a loop: a mutex around a byte costs nothing that matters there.
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
