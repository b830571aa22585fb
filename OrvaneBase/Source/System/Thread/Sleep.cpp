#include "System/Thread/Sleep.h"

#include <ctime>

namespace Quern {

void SleepMS(long long milliseconds) {
    timespec time;
    time.tv_sec = static_cast<time_t>(milliseconds / 1000);
    time.tv_nsec = static_cast<long>(milliseconds % 1000) * 1000000L;
    nanosleep(&time, nullptr);
}

}  // namespace Quern
