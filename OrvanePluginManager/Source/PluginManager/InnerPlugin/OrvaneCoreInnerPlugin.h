// The plugin by which the library enters its own services into the host, under the name "OrvaneCore".
#ifndef ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_ORVANE_CORE_INNER_PLUGIN_H
#define ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_ORVANE_CORE_INNER_PLUGIN_H

#include "Orvane/PluginBase.h"
#include "PluginManager/InnerPlugin/Singleton.h"

namespace Orvane::Plugin {

class OrvaneCoreInnerPlugin final : public Singleton<OrvaneCoreInnerPlugin>, public PluginBase {
public:
    const char* GetName() const override;
    const char* GetVersion() const override;
    void OnStartup(IServiceRegister* services) override;
    void OnPostStartup() override;
    void OnPreShutdown() override;
    void OnShutdown() override;
    // Any thread, once start-up is over. Names are compared byte by byte.
    IPluginService* GetServiceByName(const char* serviceName) override;
};

}  // namespace Orvane::Plugin

#endif
