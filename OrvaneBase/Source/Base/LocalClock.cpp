#include "Base/LocalClock.h"

#include "System/Thread/Mutex.h"

namespace Quern {
namespace {

// The C library guards its zone by a lock of its own; this one makes the order visible to tools that look for races,
// and is taken once a second and thread. Never destroyed: threads log until the process ends.
CMutex& ZoneLock() {
    static CMutex* lock = new CMutex(false);
    return *lock;
}

}  // namespace

const tm& LocalTime(time_t seconds) {
    static thread_local time_t cachedSecond = -1;
    static thread_local tm cached;
    if (seconds != cachedSecond) {
        const CCritical guard(&ZoneLock());
        tzset();  // localtime_r alone would keep the zone in which the process began
        localtime_r(&seconds, &cached);
        cachedSecond = seconds;
    }
    return cached;
}

time_t TimeOfLocal(tm& local) {
    const CCritical guard(&ZoneLock());
    return mktime(&local);
}

}  // namespace Quern
