#include "Base/LocalClock.h"

#include "System/Thread/Mutex.h"

namespace Quern {

const tm& LocalTime(time_t seconds) {
    static thread_local time_t cachedSecond = -1;
    static thread_local tm cached;
    if (seconds != cachedSecond) {
        static CMutex* const zone = new CMutex(false);  // the zone's data are the process's; never destroyed
        const CCritical guard(zone);
        tzset();  // localtime_r alone would keep the zone in which the process began
        localtime_r(&seconds, &cached);
        cachedSecond = seconds;
    }
    return cached;
}

}  // namespace Quern
