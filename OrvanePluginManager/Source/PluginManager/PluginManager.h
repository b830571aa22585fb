// The plugin host: the registry of the process's plugins and the driver of their lifecycle.
#ifndef ORVANE_PLUGIN_MANAGER_PLUGIN_MANAGER_H
#define ORVANE_PLUGIN_MANAGER_PLUGIN_MANAGER_H

#include <string>

#include "Orvane/IPluginManager.h"

namespace Orvane::Plugin {

// Holds no thread and no lock: installation, walks and reads belong on the main thread during start-up. A reader on
// another thread copies GetPluginCollection at once, after Startup has run.
class PluginManager final : public IPluginManager {
public:
    // Made at the first call: while the library loads, by PluginUtilsLaunch.
    static PluginManager* GetInstance();
    static void ReleaseInstance();

    bool Install(IPlugin* plugin) override;
    bool Uninstall(IPlugin* plugin) override;
    bool UninstallByName(const char* pluginName) override;
    const char* const* GetAllPluginNames() override;
    IPlugin* GetPluginByName(const char* pluginName) override;
    PluginCollection* GetPluginCollection() override;
    void Startup() override;
    void PostStartup() override;  // in PluginManagerPostStartup.cpp
    void PreShutdown() override;
    void Shutdown() override;

private:
    PluginManager();
    ~PluginManager();

    // Calls step(descriptor) for each entry with a plugin, in key order. The descriptor is a copy, and the place is
    // kept by name, so that a plugin may install or uninstall, itself among others, inside its own call.
    template <typename Step>
    void Walk(Step step) {
        for (auto at = plugins.begin(); at != plugins.end();) {
            const std::string name = at->first;
            const _tagPluginDescriptor descriptor = at->second;
            if (descriptor.plugin) step(descriptor);
            at = plugins.upper_bound(name);
        }
    }
    void BuildAllPluginNames();

    static PluginManager* s_pInstance;

    PluginCollection plugins;
    const char* const* allPluginNames;  // null until PostStartup; never released, since callers keep it
};

}  // namespace Orvane::Plugin

#endif
