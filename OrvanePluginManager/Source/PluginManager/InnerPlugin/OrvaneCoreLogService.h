// The service "LOG": one logger for each plugin name.
#ifndef ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_ORVANE_CORE_LOG_SERVICE_H
#define ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_ORVANE_CORE_LOG_SERVICE_H

#include <atomic>
#include <map>
#include <string>

#include "Orvane/ILogService.h"
#include "System/Thread/Mutex.h"

namespace Quern {
class Logger;
}

namespace Orvane::Plugin {

// By plugin name; a plugin without a name has the empty one.
using LoggerCollection = std::map<std::string, Quern::Logger*>;

// A logger belongs to the service and is never deleted, so plugins may keep it. It is made at the first question for
// its name, with the client of the configuration as its source of settings. Any thread.
class OrvaneCoreLogSerivce final : public ILogService {
public:
    // Made at the first call, by whichever thread.
    static OrvaneCoreLogSerivce* GetInstance();
    // What it handed out stays valid; a new one makes loggers of its own. No thread may be in one of
    // its operations.
    static void ReleaseInstance();

    const char* GetName() const override;        // "LOG"
    const char* GetPluginName() const override;  // "OrvaneCore"
    int GetVersion() override;                   // 1, the version of ILogService
    // Never null. REQUIRES: `plugin` is not null; its GetName is called under the lock.
    ILogger* GetLogger(PluginBase* plugin) override;

    // The live map. Handed out without a lock: for a reader on the thread on which plugins start.
    LoggerCollection* GetLoggerCollection();
    // For any thread.
    LoggerCollection CopyOfCollection();

private:
    static std::atomic<OrvaneCoreLogSerivce*> s_pInstance;

    Quern::CMutex _mutex{true};  // one logger a name; held while a logger is made and observed
    Quern::CMutex _changeMutex;  // guards _loggers against readers; nothing is called under it
    LoggerCollection _loggers;   // changed under both; the loggers live as long as the process
};

}  // namespace Orvane::Plugin

#endif
