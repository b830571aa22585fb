// The wall clock.
#ifndef ORVANE_SYSTEM_THREAD_TIME_H
#define ORVANE_SYSTEM_THREAD_TIME_H

namespace Quern {

class CTime {
public:
    // Microseconds since the epoch.
    static long long GetTimeTick();
    // Seconds since the epoch.
    static long long GetCurTime();
};

}  // namespace Quern

#endif
