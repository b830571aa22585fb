/// \file IPlugin.h
/// What a library that takes part in the host's lifecycle implements. Slot order is a binary contract.
#ifndef ORVANE_I_PLUGIN_H
#define ORVANE_I_PLUGIN_H

#include "Orvane/IPluginService.h"
#include "Orvane/IServiceRegister.h"

namespace Orvane {
namespace Plugin {

/// One plugin of the process. The host never owns it: it must stay alive while it is installed.
/// Thread rule: the host calls every operation but GetServiceByName on the main thread; GetServiceByName may come from
/// any thread, several at a time. No operation, here or of a service, may throw: nothing catches it, and a plugin that
/// throws ends the process.
class IPlugin {
public:
    virtual ~IPlugin() {}
    /// The plugin's unique name; the host's key, and its place in the order of the walks (byte order of names).
    /// Must not be null; copied at installation.
    virtual const char* GetName() const = 0;
    /// The plugin's version. Must not be null; copied at installation.
    virtual const char* GetVersion() const = 0;
    /// First walk. The only place where services are declared. `services` is valid during the call alone.
    virtual void OnStartup(IServiceRegister* services) = 0;
    /// Second walk, when every plugin has had its OnStartup: the first moment to look up other plugins' services.
    virtual void OnPostStartup() = 0;
    /// First walk of an orderly stop; the same forward order as start-up.
    virtual void OnPreShutdown() = 0;
    /// Second walk of an orderly stop.
    virtual void OnShutdown() = 0;
    /// \return the plugin's service of that name, owned by the plugin, or null.
    virtual IPluginService* GetServiceByName(const char* serviceName) = 0;
};

}  // namespace Plugin
}  // namespace Orvane

#endif
