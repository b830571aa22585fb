#include "Configuration.h"

#include "GameLogger.h"
#include "Orvane/IRemoteConfig.h"
#include "Orvane/RunTime.h"

namespace OrvaneHost {

void Fetch(const std::string& moduleName) {
    // The service goes by the module's name and keeps no pointer to it, so it need not outlive the call.
    GameModule module(moduleName);
    module.GetCachePluginManager();
    using namespace Orvane::Plugin;
    IPluginManager* const manager = module.GetPluginManager();
    IPlugin* const core = manager ? manager->GetPluginByName(kCoreModule) : nullptr;
    auto* const service = core ? static_cast<IRemoteConfigService*>(core->GetServiceByName("REMOTECONFIG")) : nullptr;
    if (service)
        service->GetRemoteConfig(&module)->Fetch();
    else
        orvane_console_log("orvane-host: no configuration service yet; it comes with the launch");
}

}  // namespace OrvaneHost
