// From a service's name to the service, whichever sibling plugin offers it.
#ifndef ORVANE_PLUGIN_MANAGER_I_SERVICE_MANAGER_H
#define ORVANE_PLUGIN_MANAGER_I_SERVICE_MANAGER_H

#include "Orvane/IPluginService.h"

namespace Orvane::Plugin {

class IServiceManager {
public:
    // Null for a null or unknown name, and while the plugin that offers the service is not installed. The plugin owns
    // the service.
    virtual IPluginService* GetServiceByName(const char* serviceName) = 0;
    // Reserved for a list that comes from the configuration. Returns true.
    virtual bool loadEnabledService() = 0;
    // Fills the table with what it holds without configuration. Returns true.
    virtual bool loadDefaultEnabledService() = 0;

protected:
    ~IServiceManager() = default;  // not virtual: the table begins with GetServiceByName
};

}  // namespace Orvane::Plugin

#endif
