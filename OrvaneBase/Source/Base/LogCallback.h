// What keeps a log callback that reads settings from being called about its own reading.
//
// A read that finds nothing says so in the log. Inside a callback that line is logged like any other, but is not handed
// to a callback: the callback would read again, and so on to the stack's end. What the callback itself logs is handed
// over.
#ifndef ORVANE_BASE_LOG_CALLBACK_H
#define ORVANE_BASE_LOG_CALLBACK_H

#include <utility>

namespace Quern {

inline constinit thread_local int t_logCallbacks = 0;          // that the thread is inside of
inline constinit thread_local bool t_isReportingRead = false;  // in the innermost of them

// Around the call of a log callback.
class LogCallbackScope {
public:
    LogCallbackScope() { ++t_logCallbacks; }
    ~LogCallbackScope() {
        --t_logCallbacks;
        t_isReportingRead = _wasReporting;
    }
    LogCallbackScope(const LogCallbackScope&) = delete;
    LogCallbackScope& operator=(const LogCallbackScope&) = delete;

private:
    const bool _wasReporting = std::exchange(t_isReportingRead, false);
};

// Around a line about the read of a setting.
class ReadReportScope {
public:
    ReadReportScope() { t_isReportingRead = true; }
    ~ReadReportScope() { t_isReportingRead = false; }
    ReadReportScope(const ReadReportScope&) = delete;
    ReadReportScope& operator=(const ReadReportScope&) = delete;
};

// Whether a line that is logged now is handed to the logger's callback.
inline bool IsHandedToLogCallback() {
    return t_logCallbacks == 0 || !t_isReportingRead;
}

}  // namespace Quern

#endif
