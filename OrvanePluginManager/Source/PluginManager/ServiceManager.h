// The table of the sibling plugins' services.
#ifndef ORVANE_PLUGIN_MANAGER_SERVICE_MANAGER_H
#define ORVANE_PLUGIN_MANAGER_SERVICE_MANAGER_H

#include <map>
#include <string>

#include "PluginManager/IServiceManager.h"

namespace Orvane::Plugin {

// The table is fixed when the object is made: which plugin offers which service. A look-up asks the host for that
// plugin, and the plugin for the service, so the plugin owns what is found. Any thread, except that the first call, and
// ReleaseInstance, belong on the main thread. The library's own code asks the host directly instead.
class ServiceManager final : public IServiceManager {
public:
    // Made at the first call, without a lock.
    static ServiceManager* GetInstance();
    static void ReleaseInstance();

    // Returns null for an unknown name, a plugin that is not installed, and a service that the plugin does not have.
    IPluginService* GetServiceByName(const char* serviceName) override;
    // Adds nothing. Returns true.
    bool loadEnabledService() override;
    // Sets the table anew: "Report" is the data plugin's ("PELL"), "Account" that of the plugin "CADMO". Returns true.
    // The constructor calls it.
    bool loadDefaultEnabledService() override;

private:
    ServiceManager();
    ~ServiceManager();

    static ServiceManager* s_pInstance;

    std::map<std::string, std::string> _plugins;  // service name to the name of the plugin that offers it
};

}  // namespace Orvane::Plugin

#endif
