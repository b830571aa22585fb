/// \file LogPriority.h
/// The six priorities of a log line, shared by the library, its plugins and the game.
#ifndef ORVANE_LOG_PRIORITY_H
#define ORVANE_LOG_PRIORITY_H

#include <stdint.h>

/// As a line's priority 0 to 4; as a threshold 0 to 5. The numbers are part of the binary contract.
#ifdef __cplusplus
enum ALogPriority : int32_t {
#else
typedef enum ALogPriority {
#endif
    kLogDebug = 0,  ///< most verbose
    kLogInfo = 1,   ///< the default threshold
    kLogWarning = 2,
    kLogEvent = 3,
    kLogError = 4,
    kLogNone = 5  ///< as a threshold: nothing is logged. A line cannot carry it.
#ifdef __cplusplus
};
#else
} ALogPriority;
#endif

#endif
