// The plugin host: the registry of the process's plugins and the driver of their lifecycle.
#ifndef ORVANE_PLUGIN_MANAGER_PLUGIN_MANAGER_H
#define ORVANE_PLUGIN_MANAGER_PLUGIN_MANAGER_H

#include <mutex>
#include <string>

#include "Orvane/IPluginManager.h"

namespace Orvane::Plugin {

// Walks belong on the main thread. Installing, uninstalling and looking up may happen on any thread: each is whole,
// under a mutex that is held over no call of a plugin and no line of the log. Only GetPluginCollection gives the
// registry itself, unguarded, as the interface has it: within the library CopyPlugins takes its place.
class PluginManager final : public IPluginManager {
public:
    // Made at the first call: while the library loads, by PluginUtilsLaunch. Its constructor logs the library's
    // version.
    static PluginManager* GetInstance();
    // Forgets the plugins without a call on any of them. PluginUtils goes on handing out the old pointer, so a process
    // that has siblings does not call this.
    static void ReleaseInstance();

    // The host borrows the plugin until it is uninstalled or replaced by another one of its name. Returns false, with a
    // line in the log, without a plugin, a name or a version.
    bool Install(IPlugin* plugin) override;
    // Takes the name off the registry, whoever has it there. Returns false for null alone.
    bool Uninstall(IPlugin* plugin) override;
    bool UninstallByName(const char* pluginName) override;
    // The names as the last PostStartup found them, sorted, and null behind them. Never freed.
    const char* const* GetAllPluginNames() override;
    // Borrowed. Null, with a line in the log, for null and for a name that is not installed. Names are compared byte by
    // byte; the one other spelling that counts is "ORVANECORE", for "OrvaneCore".
    IPlugin* GetPluginByName(const char* pluginName) override;
    PluginCollection* GetPluginCollection() override;

    // The walks go over all plugins in byte order of their names, at the shutdown too. Each may be called again and
    // then runs again. A plugin that comes during a walk takes part in it if its name is still ahead.

    // OnStartup of each, and the service names that it declares go into its entry.
    void Startup() override;
    // Makes the array of names, calls OnPostStartup of each, and reports all versions as one event. Its body is in
    // PluginManagerPostStartup.cpp.
    void PostStartup() override;
    // Neither changes the registry, and nothing in the library calls them: the host does, through PluginUtils.
    void PreShutdown() override;
    void Shutdown() override;

    // The registry as it is now. Any thread.
    PluginCollection CopyPlugins();

private:
    PluginManager();
    ~PluginManager();

    // Calls step(descriptor) for each entry with a plugin, in key order. The descriptor is a copy, and the place is
    // kept by name, so that a plugin may install or uninstall, itself among others, inside its own call.
    template <typename Step>
    void Walk(Step step) {
        std::string name;
        _tagPluginDescriptor descriptor;
        for (bool isFirst = true; TakeNext(isFirst, name, descriptor); isFirst = false)
            if (descriptor.plugin) step(descriptor);
    }
    // The first entry, or the one behind that name. False if there is none.
    bool TakeNext(bool isFirst, std::string& name, _tagPluginDescriptor& descriptor);
    void BuildAllPluginNames();

    static PluginManager* s_pInstance;

    std::mutex _mutex;  // guards what follows; a leaf
    PluginCollection plugins;
    const char* const* allPluginNames;  // null until PostStartup; never released, since callers keep it
};

}  // namespace Orvane::Plugin

#endif
