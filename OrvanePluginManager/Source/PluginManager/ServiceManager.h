// The table of the sibling plugins' services.
#ifndef ORVANE_PLUGIN_MANAGER_SERVICE_MANAGER_H
#define ORVANE_PLUGIN_MANAGER_SERVICE_MANAGER_H

#include <map>
#include <string>

#include "PluginManager/IServiceManager.h"

namespace Orvane::Plugin {

class ServiceManager final : public IServiceManager {
public:
    // Made at the first call, without a lock.
    static ServiceManager* GetInstance();
    static void ReleaseInstance();

    IPluginService* GetServiceByName(const char* serviceName) override;
    bool loadEnabledService() override;
    bool loadDefaultEnabledService() override;

private:
    ServiceManager();
    ~ServiceManager();

    static ServiceManager* s_pInstance;

    std::map<std::string, std::string> _plugins;  // service name to the name of the plugin that offers it
};

}  // namespace Orvane::Plugin

#endif
