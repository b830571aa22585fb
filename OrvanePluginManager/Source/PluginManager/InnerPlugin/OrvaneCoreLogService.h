// The service "LOG": one logger for each plugin name.
#ifndef ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_ORVANE_CORE_LOG_SERVICE_H
#define ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_ORVANE_CORE_LOG_SERVICE_H

#include <map>
#include <string>

#include "Orvane/ILogService.h"
#include "System/Thread/Mutex.h"

namespace Quern {
class Logger;
}

namespace Orvane::Plugin {

using LoggerCollection = std::map<std::string, Quern::Logger*>;

class OrvaneCoreLogSerivce final : public ILogService {
public:
    // Made at the first call, without a lock: first reached on the main thread during start-up.
    static OrvaneCoreLogSerivce* GetInstance();
    static void ReleaseInstance();

    const char* GetName() const override;
    const char* GetPluginName() const override;
    int GetVersion() override;
    ILogger* GetLogger(PluginBase* plugin) override;

    // The live map. Handed out without the lock: a reader copies it at once.
    LoggerCollection* GetLoggerCollection();

private:
    static OrvaneCoreLogSerivce* s_pInstance;

    Quern::CMutex _mutex{true};  // guards _loggers; held while a logger is made and observed
    LoggerCollection _loggers;   // the loggers live as long as the process
};

}  // namespace Orvane::Plugin

#endif
