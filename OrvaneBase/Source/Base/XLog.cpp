#include "Base/XLog.h"

#include <sys/time.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <climits>
#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "Base/ConsoleSink.h"
#include "Base/CoreModule.h"
#include "Base/LocalClock.h"
#include "Base/LogLevelWords.h"
#include "Orvane/ILogger.h"
#include "Orvane/OrvaneCore.h"

namespace Quern {
namespace {

const std::atomic<int32_t> g_everythingPasses{INT_MIN};
std::atomic<int32_t> g_defaultLevel{kLogInfo};
std::atomic<Orvane::ILogger*> g_coreLogger{nullptr};

// The kernel's number of the calling thread, asked for once a thread.
unsigned long long CurrentThreadId() {
    static thread_local const unsigned long long id = static_cast<unsigned long long>(gettid());
    return id;
}

// The path's last component: after the last backslash if there is one, else after the last slash; never mixed.
const char* FileName(const char* path) {
    const char* separator = strrchr(path, '\\');
    if (!separator) separator = strrchr(path, '/');
    return separator ? separator + 1 : path;
}

// Writes into a buffer and drops what has no room.
class LineWriter {
public:
    LineWriter(char* begin, size_t capacity) : _begin(begin), _at(begin), _end(begin + capacity - 1) {}

    void Text(const char* text, size_t length) {
        const size_t room = static_cast<size_t>(_end - _at);
        const size_t count = std::min(length, room);
        memcpy(_at, text, count);
        _at += count;
    }
    void Text(const char* text) {
        if (!text) text = "(null)";
        Text(text, strlen(text));
    }
    template <typename Integer>
    void Number(Integer value) {
        char digits[24];
        Text(digits, static_cast<size_t>(std::to_chars(digits, digits + sizeof digits, value).ptr - digits));
    }
    // At least `width` digits, with zeros in front.
    void Padded(int value, int width) {
        char digits[16];
        if (value < 0) {
            Text(digits, static_cast<size_t>(snprintf(digits, sizeof digits, "%.*d", width, value)));
            return;
        }
        char* const end = digits + sizeof digits;
        char* at = end;
        for (int left = width; value > 0 || left > 0; --left, value /= 10)
            *--at = static_cast<char>('0' + value % 10);
        Text(at, static_cast<size_t>(end - at));
    }
    size_t Finish() {
        *_at = '\0';
        return static_cast<size_t>(_at - _begin);
    }

private:
    char* _begin;
    char* _at;
    char* _end;  // room for the terminator stays behind it
};

void LogFinishedText(ALogPriority level, const char* file, unsigned int line, const char* function, const char* text) {
    if (IsCoreLoggerStarted())
        CoreLogger()->Log(level, file, line, function, "", text);
    else
        PrintLogToConsoleFormat2(level, file, line, function, text);
}

}  // namespace

std::atomic<const std::atomic<int32_t>*> g_coreLogThreshold{&g_everythingPasses};

const char* GetQuernLogLevelString(int level) {
    return level >= kLogDebug && level < kLogNone ? kLogLevelWords[level] : "Unkonwn";
}

void XLog(ALogPriority level, const char* file, unsigned int line, const char* function, const char* format, ...) {
    if (!format || IsLogFiltered(level)) return;
    char text[kLogLineCapacity];
    va_list arguments;
    va_start(arguments, format);
    const int length = vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    if (length < 0) text[0] = '\0';
    LogFinishedText(level, file, line, function, text);
}

void XLog2(ALogPriority level, const char* file, unsigned int line, const char* function, const char* text) {
    if (!text || IsLogFiltered(level)) return;
    LogFinishedText(level, file, line, function, text);
}

size_t XLogFormat(char* out, ALogPriority level, const char* file, unsigned int line, const char* function,
                  const char* module, const char* text) {
    timeval now;
    gettimeofday(&now, nullptr);
    const tm& local = LocalTime(now.tv_sec);

    LineWriter writer(out, kLogLineCapacity);
    writer.Text("[", 1);
    writer.Padded(local.tm_year + 1900, 4);
    writer.Text("-", 1);
    writer.Padded(local.tm_mon + 1, 2);
    writer.Text("-", 1);
    writer.Padded(local.tm_mday, 2);
    writer.Text(" ", 1);
    writer.Padded(local.tm_hour, 2);
    writer.Text(":", 1);
    writer.Padded(local.tm_min, 2);
    writer.Text(":", 1);
    writer.Padded(local.tm_sec, 2);
    writer.Text(" ", 1);
    writer.Padded(static_cast<int>(now.tv_usec / 1000), 3);
    writer.Text("] | ", 4);
    writer.Text(GetQuernLogLevelString(level));
    writer.Text(" | [", 4);
    writer.Text(module);
    writer.Text("] |", 3);
    writer.Number(CurrentThreadId());
    writer.Text("| ", 2);
    writer.Text(file ? FileName(file) : nullptr);
    writer.Text(":", 1);
    writer.Number(static_cast<int>(line));
    writer.Text("|", 1);
    writer.Text(function);
    writer.Text("| ", 2);
    writer.Text(text);
    return writer.Finish();
}

// The platform's log call prints "%s\n", so an empty line follows a text that ends in a newline. The console takes one
// newline off a text's end and adds its own, so such a text is given a second one.
void PrintLogToConsole(ALogPriority, const char*, const char* text) {
    if (!text) text = "(null)";
    const size_t length = strlen(text);
    char line[kLogLineCapacity + 1];  // a text that does not fit does without the second newline
    if (length == 0 || length >= sizeof line || text[length - 1] != '\n') {
        ConsoleSink::Current().Write(text, length);
        return;
    }
    memcpy(line, text, length);
    line[length] = '\n';
    ConsoleSink::Current().Write(line, length + 1);
}

void PrintLogToConsoleFormat(ALogPriority level, const char* file, unsigned int line, const char* function,
                             const char* format, ...) {
    if (!format) return;
    char text[kLogLineCapacity];
    va_list arguments;
    va_start(arguments, format);
    const int length = vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    if (length < 0) text[0] = '\0';
    PrintLogToConsoleFormat2(level, file, line, function, text);
}

void PrintLogToConsoleFormat2(ALogPriority level, const char* file, unsigned int line, const char* function,
                              const char* text) {
    char formatted[kLogLineCapacity];
    XLogFormat(formatted, level, file, line, function, kCoreModule, text);
    PrintLogToConsole(level, kCoreModule, formatted);
}

void SetQuernLogLevel(ALogPriority level) {
    g_defaultLevel.store(level, std::memory_order_relaxed);
    if (Orvane::ILogger* core = CoreLogger()) core->SetLogLevel(level);
}

ALogPriority GetQuernLogLevel() {
    return static_cast<ALogPriority>(g_defaultLevel.load(std::memory_order_relaxed));
}

bool ACheckLogLevel(ALogPriority level) {
    Orvane::ILogger* core = CoreLogger();
    return !core || core->GetLogLevel() <= level;
}

Orvane::ILogger* CoreLogger() {
    return g_coreLogger.load(std::memory_order_acquire);
}

bool IsCoreLoggerStarted() {
    return g_coreLogThreshold.load(std::memory_order_acquire) != &g_everythingPasses;
}

void SetCoreLogger(Orvane::ILogger* logger) {
    g_coreLogger.store(logger, std::memory_order_release);
}

void StartCoreLogger(const std::atomic<int32_t>* threshold) {
    g_coreLogThreshold.store(threshold, std::memory_order_release);
}

}  // namespace Quern

void OrvaneCore_XLog(ALogPriority level, const char* file, unsigned int line, const char* function, const char* text) {
    Quern::XLog2(level, file, line, function, text);
}

void OrvaneCore_SetQuernLogLevel(ALogPriority level) {
    Quern::SetQuernLogLevel(level);
}
