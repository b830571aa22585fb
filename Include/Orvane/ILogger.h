/// \file ILogger.h
/// A module's logger. Slot order is a binary contract.
#ifndef ORVANE_I_LOGGER_H
#define ORVANE_I_LOGGER_H

#include "Orvane/LogPriority.h"

/// Stage of a scripted diagnosis, as the reader of a stage log line numbers it. Passed through as an integer.
enum IntelliDevStage : int32_t {};
/// Status within a stage. Passed through as an integer.
enum IntelliDevStatus : int32_t {};

namespace Orvane {

/// Obtained from ILogService::GetLogger; never owned by the caller, and lives for the process.
/// Thread rule: any thread. The setters take no lock: a line that another thread logs at that moment may still go by
/// the value before. The order of use: SetOption and SetCallback, then Init once, then Log. A line logged before Init
/// reaches the console and the callback only.
class ILogger {
public:
    /// \return 1 if the library can serve this module's version, else 0. It is no version number.
    virtual int GetVersion() = 0;
    /// Sets "LogMode" (0 plain text, 1 deflated, 2 deflated and encrypted), "LogSingleSizeLimit" (MiB, 0 or less:
    /// none), "LogExceedOp" (0 start the file over, 1 drop) or "LogConsoleOutput" (at least 1: print every line). All
    /// but the last are read at Init, where the configuration goes before them.
    ///
    /// Mode 0 is the default, and **survives no kill**: its newest lines wait in memory, up to 4 KiB of them. A line of
    /// the modes 1 and 2 is safe when Log returns, unless lines come faster than the log can be written (Log). Mode 0
    /// is for a developer's desk, 1 for what is to be read after a crash, 2 for what leaves the developer's hands.
    virtual void SetOption(const char* key, int value) = 0;
    /// Reserved; does nothing.
    virtual void SetOption(const char* key, const char* value) = 0;
    /// A sink that is given every formatted line, on the thread that logs it and under the logger's lock. Null removes
    /// it; another thread may be inside it for a moment yet. Of the library it may use two things: it may log, and it
    /// may read settings. What it logs is handed to it again; what the library logs about such a read is logged only.
    /// All else takes locks under which other threads log, and so wait for this lock. For the same reason it must not
    /// wait for another thread.
    virtual void SetCallback(void (*callback)(ALogPriority priority, const char* line)) = 0;
    /// Sets the threshold. The configured "LogLevel" of the module, where there is one, goes before it.
    virtual void SetLogLevel(ALogPriority level) = 0;
    /// Opens the logger's store; once per object, later calls, and calls at the same time, do nothing. In modes 1 and 2
    /// brings back what a dead process left; lines of other threads wait for a part of that, and go behind it.
    virtual void Init() = 0;
    /// Logs one text. `file` may be a path; `tag` is accepted and ignored. A null `text` logs nothing. A line is cut at
    /// 4095 bytes. In modes 1 and 2 the call waits for no file: lines that come faster than the log is written give way
    /// to a marker that says so, or, in a block that is full to the last byte, to nothing.
    virtual void Log(ALogPriority priority, const char* file, unsigned int line, const char* function, const char* tag,
                     const char* text) = 0;
    /// Logs one stage line; only while the setting "OrvaneIntelliDevLogMode" is 1. None of the texts may be null.
    virtual void XLogDetail(ALogPriority priority, const char* file, unsigned int line, const char* function,
                            const char* module, const char* session, IntelliDevStage stage, IntelliDevStatus status,
                            int errCode, int errCode2, const char* errorMsg, const char* userInfo, const char* resv,
                            const char* text) = 0;
    /// \return the threshold: a line passes if its priority is at least this.
    virtual ALogPriority GetLogLevel() = 0;
    /// Removes old files of this module: first the oldest beyond `fileNumLimit` (below 0: no limit), then those older
    /// than `hours`. On the caller's thread.
    virtual void RemoveOldLog(int hours, int fileNumLimit) = 0;
    /// Reserved; does nothing.
    virtual void Perform(int operation) = 0;

protected:
    ~ILogger() {}  // not virtual: the table begins with GetVersion
};

}  // namespace Orvane

#endif
