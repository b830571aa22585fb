/// \file IPluginManager.h
/// The plugin host as other libraries see it. Slot order is a binary contract.
#ifndef ORVANE_I_PLUGIN_MANAGER_H
#define ORVANE_I_PLUGIN_MANAGER_H

#include "Orvane/IPlugin.h"
#include "Orvane/PluginDescriptor.h"

namespace Orvane {
namespace Plugin {

/// The library's own module: the name of the plugin that has its services, of its logger, and of the section of its
/// settings.
constexpr const char* kCoreModule = "OrvaneCore";

/// The registry of plugins and the driver of their lifecycle. One per process, owned by the library that implements it;
/// reached through gs_GetOrvanePluginManager (PluginBase.h).
/// Thread rule: the walks and the live registry belong on the main thread during start-up. Installing, uninstalling and
/// looking up may happen on any thread: each is whole, and no call of a plugin happens under a lock. Nothing keeps a
/// plugin that was found from being uninstalled.
class IPluginManager {
public:
    /// Enters a plugin under its name. An earlier plugin of that name is replaced without a call on it.
    /// \return false, with a line in the log, for a null plugin, name or version.
    virtual bool Install(IPlugin* plugin) = 0;
    /// Takes the plugin out, found by its own GetName.
    /// \return false only for a null plugin or name; true also when it was not installed.
    virtual bool Uninstall(IPlugin* plugin) = 0;
    /// The same by name.
    virtual bool UninstallByName(const char* pluginName) = 0;
    /// \return a null-terminated array of names as PostStartup found them, owned by the manager; null before that.
    virtual const char* const* GetAllPluginNames() = 0;
    /// \return the plugin, or null with a warning in the log. "ORVANECORE" is taken as kCoreModule.
    virtual IPlugin* GetPluginByName(const char* pluginName) = 0;
    /// \return the live registry, which nothing guards: a reader copies it whole, while no plugin comes or goes, and
    /// walks the copy.
    virtual PluginCollection* GetPluginCollection() = 0;
    /// The four walks, each over all plugins in byte order of their names. None guards its order or repetition.
    virtual void Startup() = 0;
    virtual void PostStartup() = 0;
    virtual void PreShutdown() = 0;
    virtual void Shutdown() = 0;

protected:
    ~IPluginManager() {}  // not virtual: the table begins with Install
};

}  // namespace Plugin
}  // namespace Orvane

#endif
