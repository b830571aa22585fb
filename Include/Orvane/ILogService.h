/// \file ILogService.h
/// The service "LOG" of the plugin "OrvaneCore". Slot order is a binary contract.
#ifndef ORVANE_I_LOG_SERVICE_H
#define ORVANE_I_LOG_SERVICE_H

#include "Orvane/ILogger.h"
#include "Orvane/IPluginService.h"
#include "Orvane/PluginBase.h"

namespace Orvane {
namespace Plugin {

/// Hands out one logger for each plugin name, for the life of the process. Any thread.
class ILogService : public IPluginService {
public:
    /// \return 1
    virtual int GetVersion() = 0;
    /// The logger of the plugin's name, made at the first call. Never null, never owned by the caller.
    /// REQUIRES: `plugin` is not null.
    virtual ILogger* GetLogger(PluginBase* plugin) = 0;
};

}  // namespace Plugin
}  // namespace Orvane

#endif
