// Points in time as a user writes them.
#ifndef ORVANE_TOOLS_LOG_TIME_ARGUMENT_H
#define ORVANE_TOOLS_LOG_TIME_ARGUMENT_H

#include <ctime>
#include <string_view>

#include "Log/LogLine.h"

namespace OrvaneLog {

// Reads "YYYY-MM-DD", "YYYY-MM-DD HH:MM", "YYYY-MM-DD HH:MM:SS", the same with a T between, "HH:MM", "HH:MM:SS" (of
// today), or "-10m" before `now` (s, m, h, d). Behind the seconds may stand milliseconds, " 045" or ".045", and around
// it brackets, as the tool itself prints a time. Local time. False for anything else, and for dates that do not exist.
bool ParseTimeArgument(std::string_view text, time_t now, LocalStamp& stamp);

}  // namespace OrvaneLog

#endif
