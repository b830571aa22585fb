#include "System/Thread/Time.h"

#include <sys/time.h>

namespace Quern {

long long CTime::GetTimeTick() {
    timeval now;
    gettimeofday(&now, nullptr);
    return now.tv_sec * 1000000LL + now.tv_usec;
}

long long CTime::GetCurTime() {
    timeval now;
    gettimeofday(&now, nullptr);
    return now.tv_sec;
}

}  // namespace Quern
