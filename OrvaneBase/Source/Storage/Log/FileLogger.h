// Appends finished log data to hourly files in the module's directory.
#ifndef ORVANE_STORAGE_LOG_FILE_LOGGER_H
#define ORVANE_STORAGE_LOG_FILE_LOGGER_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <memory>
#include <optional>

#include "Base/Container/AString.h"
#include "Storage/File/CFile.h"
#include "System/Thread/Mutex.h"

namespace Quern {

class BlockJournal;

// How a logger's data reaches its file.
enum TAppenderMode : int32_t {
    kAppendAsync = 0,  // whole records, appended by a flush; the file is opened and closed for each
    kAppendSync = 1    // plain lines; the file stays open and its stream is not flushed for each line
};

// What happens when a file has passed its size limit.
enum LogExceedOp : int32_t {
    kLogStartOver = 0,  // the file is removed, and writing starts on an empty one of the same name
    kLogDrop = 1        // the data is dropped until the hour changes
};

// One module's files, all below "<cache>/OrvaneSDKLog/<module>". Any thread; the lock covers a whole call. Failures are
// reported on the console, cost the data of the one call, and leave everything ready for the next.
class AFileLogger {
public:
    // A limit of 0 MiB or less is no limit.
    AFileLogger(const char* name, TAppenderMode mode, int sizeLimitMiB, LogExceedOp exceedOp);
    ~AFileLogger();
    AFileLogger(const AFileLogger&) = delete;
    AFileLogger& operator=(const AFileLogger&) = delete;

    void LogToFile(const char* text);
    // Appends to the file of the current local hour. With a journal the data is its staged record: it is told the place
    // before the append.
    void Log2File(const void* data, size_t length, BlockJournal* journal = nullptr);

    // Whether the last append came to nothing: its file could not be opened, is full, or took only a part. Any thread,
    // without the lock. A plain file's stream does not tell whether the disk took what it was given.
    bool IsFailing() const { return _isFailing.load(std::memory_order_relaxed); }

    // The module's directory, created if need be; empty on failure.
    Quern::AString Directory();

    // Removes a module's old files: first the oldest ones beyond `fileNumLimit` (below 0: no limit), then those whose
    // name says that they are older than `hours`. A file whose name says no time counts as oldest of all. On the
    // caller's thread, without a lock. (The body is in LogRetention.cpp.)
    static void RemoveOldLogFiles(const char* name, int hours, int fileNumLimit);

private:
    // Whether the data has reached the file's stream, or in the asynchronous mode the file.
    bool TryLog2File(const void* data, size_t length, BlockJournal* journal);
    bool EnsureDirectory();
    bool IsFileInPlace() const;
    bool _IsNeedToCreateLogFile(const tm* now);
    bool _GetFilePathByTime(AString& path) const;
    bool _OpenLogFile(const char* path);
    // Whether a file that was too long is removed. Where it was too long and could not be, there is no open file after.
    bool _RemoveIfFileExceedLimit();
    bool MakeRoom(const AString& path);
    bool Append(const void* data, size_t length, const AString& path, BlockJournal* journal);

    std::unique_ptr<CMutex> _lock = std::make_unique<CMutex>(true);
    std::unique_ptr<CFile> _logFile;  // open, or null
    std::optional<tm> _lastTime;
    AString _directory;  // empty until first needed
    AString _moduleName;
    TAppenderMode _mode;
    int64_t _sizeLimit;  // in bytes
    LogExceedOp _exceedOp;
    std::atomic<bool> _isFailing{false};
};

// The time that a log file's name says, in seconds since the epoch; 0 for a name that says none.
time_t GetLogFileTimeStamp(const char* name);
// Whether the text is made of decimal digits alone; true for an empty text.
bool isDigits(const char* text);

}  // namespace Quern

#endif
