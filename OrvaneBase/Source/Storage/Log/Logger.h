// The front end of the log: one object for each module.
//
// The way of a line in modes 1 and 2: on the caller's thread it is filtered, formatted, printed if asked, and appended
// to the block, under the log mutex; from there on it survives the death of the process. At a third of its room the
// block wakes the flush thread, which closes it, copies it out and empties it, under the same mutex, and appends the
// copy to the file of the hour, without it. In mode 0 the line goes to the file on the caller's thread.
#ifndef ORVANE_STORAGE_LOG_LOGGER_H
#define ORVANE_STORAGE_LOG_LOGGER_H

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "Base/Configure/Configure.h"
#include "Orvane/ILogger.h"
#include "Storage/Log/FileLogger.h"
#include "Storage/Log/LogStore.h"

namespace Quern {

// The operations are told in Orvane/ILogger.h. Most bodies are in Logger.cpp; XLogDetail's is in StageLog.cpp, and that
// of XLogInit in RetentionSweep.cpp. Any thread may set and log; Init does its work once, on the thread that comes
// first.
class Logger final : public Orvane::ILogger, public Orvane::ConfigureObserver {
public:
    // A null name is an empty one. Reads no setting and touches no file: that is for Init. The threshold begins at
    // Info.
    explicit Logger(const char* moduleName);
    // Leaves the block as it is, for the next Init of the same module to find. The flush thread is not waited for.
    ~Logger();
    Logger(const Logger&) = delete;
    Logger& operator=(const Logger&) = delete;

    int GetVersion() override { return _IsCompatible(); }
    void SetOption(const char* key, int value) override;
    void SetOption(const char* key, const char* value) override;
    void SetCallback(void (*callback)(ALogPriority, const char*)) override;
    void SetLogLevel(ALogPriority level) override;
    void Init() override;
    void Log(ALogPriority priority, const char* file, unsigned int line, const char* function, const char* tag,
             const char* text) override;
    void XLogDetail(ALogPriority priority, const char* file, unsigned int line, const char* function,
                    const char* module, const char* session, IntelliDevStage stage, IntelliDevStatus status,
                    int errCode, int errCode2, const char* errorMsg, const char* userInfo, const char* resv,
                    const char* text) override;
    ALogPriority GetLogLevel() override { return static_cast<ALogPriority>(_level.load(std::memory_order_relaxed)); }
    void RemoveOldLog(int hours, int fileNumLimit) override;
    void Perform(int operation) override;

    // Applies the configured level again; nothing else changes after Init.
    void OnConfigureRefreshed(Orvane::IStringIterator* keys) override;

    // Starts the sweep of the plugins' old log files in a thread of its own. Main thread.
    static void XLogInit();

    // What becomes of a line that is logged now; kNotKept before Init. Any thread, without a lock.
    LogKeeping Keeping() const;
    bool IsInitCalled() const { return _isInitCalled.load(std::memory_order_relaxed); }

    // The level field itself, for the log call's filter.
    const std::atomic<int32_t>& Threshold() const { return _level; }

private:
    void ReadOptions(const char* section);
    void SetFlagsFromMode();
    void _loadDefaultLevel();
    int _IsCompatible() const;

    const std::string _moduleName;
    // Plain stores by the setters and Init, read on every line.
    std::atomic<int32_t> _level{kLogInfo};
    std::atomic<int32_t> _consoleOutput{1};
    std::atomic<void (*)(ALogPriority, const char*)> _callback{nullptr};
    // Read and written at Init alone, but for SetOption before it.
    bool _compress = false;
    bool _crypt = false;
    TAppenderMode _sync = kAppendSync;
    std::atomic<int32_t> _logMode{0};
    std::atomic<int32_t> _singleSizeLimit{0};  // in MiB
    std::atomic<int32_t> _exceedOp{kLogStartOver};
    uint32_t _threadWait = 86400000;         // in milliseconds
    std::atomic<bool> _isInitCalled{false};  // by whichever thread came first
    // What Init makes. Shared with the flush thread, which may outlive the logger.
    std::shared_ptr<LogStore> _storeOwner;
    std::atomic<LogStore*> _store{nullptr};
};

}  // namespace Quern

#endif
