#include "Base/Configure/OrvaneCoreRemoteConfig.h"

#include "Base/XLog.h"
#include "PluginManager/InnerPlugin/OrvaneCoreInnerPlugin.h"  // upward: the shortcut finds the core plugin's service

namespace Orvane {
namespace {

// The module "OrvaneCore" of the service "REMOTECONFIG", or null with a line that names the broken link.
IRemoteConfig* FindRemoteConfig() {
    Plugin::PluginBase* pluginBase = Plugin::Singleton<Plugin::OrvaneCoreInnerPlugin>::GetInstance();
    if (!pluginBase) {
        ORVANE_LOG_ERROR("pluginBase is NULL");
        return nullptr;
    }
    Plugin::IPluginManager* manager = pluginBase->GetPluginManager();
    if (!manager) {
        ORVANE_LOG_ERROR("pluginManager is NULL");
        return nullptr;
    }
    Plugin::IPlugin* plugin = manager->GetPluginByName("OrvaneCore");
    if (!plugin) {
        ORVANE_LOG_ERROR("PLUGIN_NAME_ORVANECORE is NULL");
        return nullptr;
    }
    auto* service = static_cast<Plugin::IRemoteConfigService*>(plugin->GetServiceByName("REMOTECONFIG"));
    if (!service) {
        ORVANE_LOG_ERROR("PLUGIN_SERVICE_NAME_REMOTECONFIG is NULL");
        return nullptr;
    }
    return service->GetRemoteConfig(pluginBase);
}

}  // namespace

OrvaneCoreRemoteConfig* OrvaneCoreRemoteConfig::GetInstance() {
    static OrvaneCoreRemoteConfig* instance = new OrvaneCoreRemoteConfig;
    return instance;
}

OrvaneCoreRemoteConfig::OrvaneCoreRemoteConfig() : _remoteConfig(FindRemoteConfig()) {}

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
