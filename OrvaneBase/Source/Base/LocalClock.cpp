#include "Base/LocalClock.h"

namespace Quern {

const tm& LocalTime(time_t seconds) {
    static thread_local time_t cachedSecond = -1;
    static thread_local tm cached;
    if (seconds != cachedSecond) {
        tzset();  // localtime_r alone would keep the zone in which the process began
        localtime_r(&seconds, &cached);
        cachedSecond = seconds;
    }
    return cached;
}

}  // namespace Quern
