// Points in time as a user writes them.
#ifndef ORVANE_TOOLS_LOG_TIME_ARGUMENT_H
#define ORVANE_TOOLS_LOG_TIME_ARGUMENT_H

#include <ctime>
#include <string_view>

#include "Log/LogLine.h"

namespace OrvaneLog {

// Reads a point in time, all local:
//
//   "YYYY-MM-DD", "YYYY-MM-DD HH:MM", "YYYY-MM-DD HH:MM:SS"   a day or a time of it; a T may stand for the space
//   "HH:MM", "HH:MM:SS"                                       of today
//   "-10m"                                                    so long before `now`: s, m, h or d
//
// Behind the seconds may stand milliseconds, " 045" or ".045", and around it all brackets, as the log itself has a
// time. What is left out is zero. False for anything else, and for dates that do not exist; `stamp` is then as it was.
bool ParseTimeArgument(std::string_view text, time_t now, LocalStamp& stamp);

}  // namespace OrvaneLog

#endif
