// Local time on hot paths.
#ifndef ORVANE_BASE_LOCAL_CLOCK_H
#define ORVANE_BASE_LOCAL_CLOCK_H

#include <ctime>

namespace Quern {

// The broken-down local time of a second. The system's conversion takes a global lock and may look at the zone's file,
// so a thread does it once a second. The result is the calling thread's, valid until its next call.
const tm& LocalTime(time_t seconds);

}  // namespace Quern

#endif
