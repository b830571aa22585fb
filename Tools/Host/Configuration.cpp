#include "Configuration.h"

#include "GameLogger.h"
#include "Orvane/IRemoteConfig.h"

namespace OrvaneHost {

bool Fetch(const std::string& moduleName) {
    GameModule module(moduleName);
    module.GetCachePluginManager();
    using namespace Orvane::Plugin;
    IPluginManager* const manager = module.GetPluginManager();
    IPlugin* const core = manager ? manager->GetPluginByName("OrvaneCore") : nullptr;
    auto* const service = core ? static_cast<IRemoteConfigService*>(core->GetServiceByName("REMOTECONFIG")) : nullptr;
    if (!service) return false;
    service->GetRemoteConfig(&module)->Fetch();
    return true;
}

}  // namespace OrvaneHost
