#include "Base/Configure/OrvaneCoreRemoteConfig.h"

#include "Base/CoreModule.h"
#include "Base/XLog.h"
#include "PluginManager/InnerPlugin/OrvaneCoreInnerPlugin.h"  // upward: the shortcut finds the core plugin's service

namespace Orvane {
namespace {

// The module "OrvaneCore" of the service "REMOTECONFIG"; or null, and then `broken` names the link to it that is
// missing.
IRemoteConfig* FindRemoteConfig(const char*& broken) {
    Plugin::PluginBase* pluginBase = Plugin::Singleton<Plugin::OrvaneCoreInnerPlugin>::GetInstance();
    if (!pluginBase) {
        broken = "pluginBase is NULL";
        return nullptr;
    }
    Plugin::IPluginManager* manager = pluginBase->GetPluginManager();
    if (!manager) {
        broken = "pluginManager is NULL";
        return nullptr;
    }
    Plugin::IPlugin* plugin = manager->GetPluginByName(Quern::kCoreModule);
    if (!plugin) {
        broken = "PLUGIN_NAME_ORVANECORE is NULL";
        return nullptr;
    }
    auto* service = static_cast<Plugin::IRemoteConfigService*>(plugin->GetServiceByName("REMOTECONFIG"));
    if (!service) {
        broken = "PLUGIN_SERVICE_NAME_REMOTECONFIG is NULL";
        return nullptr;
    }
    return service->GetRemoteConfig(pluginBase);
}

}  // namespace

std::atomic<OrvaneCoreRemoteConfig*> OrvaneCoreRemoteConfig::s_pInstance{nullptr};
constinit OrvaneCoreRemoteConfig OrvaneCoreRemoteConfig::s_withoutConfig{nullptr};

// No lock is held, not even that of a local static: a line that is logged here may reach a log callback that logs a
// stage line, and that comes back here. The search logs on its way, so a search within a search ends at once. The line
// about a broken link is logged only when the instance stands.
OrvaneCoreRemoteConfig* OrvaneCoreRemoteConfig::GetInstance() {
    if (OrvaneCoreRemoteConfig* instance = s_pInstance.load(std::memory_order_acquire)) return instance;
    static thread_local bool isLooking = false;
    if (isLooking) return &s_withoutConfig;
    const char* broken = nullptr;
    isLooking = true;
    IRemoteConfig* const remoteConfig = FindRemoteConfig(broken);
    isLooking = false;
    auto* made = new OrvaneCoreRemoteConfig(remoteConfig);
    OrvaneCoreRemoteConfig* winner = nullptr;
    if (!s_pInstance.compare_exchange_strong(winner, made, std::memory_order_acq_rel)) {
        delete made;
        return winner;
    }
    if (broken) ORVANE_LOG_ERROR("%s", broken);
    return made;
}

int OrvaneCoreRemoteConfig::GetInt(const char* key, int defaultValue) {
    return _remoteConfig ? _remoteConfig->GetInt(key, defaultValue) : defaultValue;
}

long long OrvaneCoreRemoteConfig::GetLong(const char* key, long long defaultValue) {
    return _remoteConfig ? _remoteConfig->GetLong(key, defaultValue) : defaultValue;
}

double OrvaneCoreRemoteConfig::GetDouble(const char* key, double defaultValue) {
    return _remoteConfig ? _remoteConfig->GetDouble(key, defaultValue) : defaultValue;
}

bool OrvaneCoreRemoteConfig::GetBool(const char* key, bool defaultValue) {
    return _remoteConfig ? _remoteConfig->GetBool(key, defaultValue) : defaultValue;
}

std::string OrvaneCoreRemoteConfig::GetString(const char* key, const char* defaultValue) {
    char buffer[1024] = {};
    int length = sizeof buffer;
    if (_remoteConfig && _remoteConfig->GetString(key, buffer, length, defaultValue)) return buffer;
    return defaultValue ? defaultValue : "";
}

}  // namespace Orvane
