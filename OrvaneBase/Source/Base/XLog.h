// The log call: how every unit of the library says what it does.
//
// Before the library's own logger has started, a line goes to the console whatever its level; afterwards the level is
// tested before anything else is done. Any thread.
#ifndef ORVANE_BASE_XLOG_H
#define ORVANE_BASE_XLOG_H

#include <atomic>
#include <cstddef>
#include <cstdint>

#include "Orvane/LogPriority.h"

namespace Orvane {
class ILogger;
}

namespace Quern {

// A formatted line holds at most this many bytes, its terminator among them.
constexpr size_t kLogLineCapacity = 4096;

// The word that a line of that level has: "Debug", "Info", "Warning", "Event" or "Error"; "Unkonwn" for any other
// value.
const char* GetQuernLogLevelString(int level);

// Formats and logs through the library's own logger, with an empty tag. A null format does nothing.
void XLog(ALogPriority level, const char* file, unsigned int line, const char* function, const char* format, ...)
    __attribute__((format(printf, 5, 6)));
// The same for a finished text. A null text does nothing.
void XLog2(ALogPriority level, const char* file, unsigned int line, const char* function, const char* text);

// Builds one line, without a newline, cut at kLogLineCapacity - 1 bytes:
//   "[%.4d-%.2d-%.2d %.2d:%.2d:%.2d %.3d] | %s | [%s] |%llu| %s:%d|%s| %s"
// of local time, level word, module, thread id, file (its last path component), line, function and text.
// `out` has room for kLogLineCapacity bytes. Returns the line's length.
size_t XLogFormat(char* out, ALogPriority level, const char* file, unsigned int line, const char* function,
                  const char* module, const char* text);

// Prints a finished text on the console; level and module do not matter.
void PrintLogToConsole(ALogPriority level, const char* module, const char* text);
// Prints a line of the module "OrvaneCore" on the console. Enters no logger: for what happens inside logging.
void PrintLogToConsoleFormat(ALogPriority level, const char* file, unsigned int line, const char* function,
                             const char* format, ...) __attribute__((format(printf, 5, 6)));
void PrintLogToConsoleFormat2(ALogPriority level, const char* file, unsigned int line, const char* function,
                              const char* text);

// Sets the default threshold, 1 at first, and that of the library's own logger if it exists.
void SetQuernLogLevel(ALogPriority level);
ALogPriority GetQuernLogLevel();
// Whether a line of that level would be logged; true before the library's own logger exists.
bool ACheckLogLevel(ALogPriority level);

// The library's own logger, or null. Made by OrvaneLogInit; never destroyed.
Orvane::ILogger* CoreLogger();
// Whether it has been initialised, so that lines go to it and no more to the console.
bool IsCoreLoggerStarted();
// Called by OrvaneLogInit alone: first when the logger is made, then when it has started. `threshold` is the logger's
// own level field, which the log call reads directly.
void SetCoreLogger(Orvane::ILogger* logger);
void StartCoreLogger(const std::atomic<int32_t>* threshold);

// The level below which the log call does nothing: lets everything pass until the library's own logger has started.
extern std::atomic<const std::atomic<int32_t>*> g_coreLogThreshold;

inline bool IsLogFiltered(ALogPriority level) {
    return g_coreLogThreshold.load(std::memory_order_acquire)->load(std::memory_order_relaxed) > level;
}

}  // namespace Quern

// One macro a level. The arguments of a filtered line are not evaluated.
#define ORVANE_LOG(level, ...)                                                                               \
    do {                                                                                                     \
        if (!::Quern::IsLogFiltered(level)) ::Quern::XLog(level, __FILE__, __LINE__, __func__, __VA_ARGS__); \
    } while (0)
#define ORVANE_LOG_DEBUG(...) ORVANE_LOG(kLogDebug, __VA_ARGS__)
#define ORVANE_LOG_INFO(...) ORVANE_LOG(kLogInfo, __VA_ARGS__)
#define ORVANE_LOG_WARNING(...) ORVANE_LOG(kLogWarning, __VA_ARGS__)
#define ORVANE_LOG_EVENT(...) ORVANE_LOG(kLogEvent, __VA_ARGS__)
#define ORVANE_LOG_ERROR(...) ORVANE_LOG(kLogError, __VA_ARGS__)
// For what must not enter a logger.
#define ORVANE_CONSOLE(level, ...) ::Quern::PrintLogToConsoleFormat(level, __FILE__, __LINE__, __func__, __VA_ARGS__)

#endif
