#include "PluginManager/ServiceManager.h"

#include "Base/XLog.h"
#include "PluginManager/PluginManager.h"

namespace Orvane::Plugin {

ServiceManager* ServiceManager::s_pInstance = nullptr;

ServiceManager* ServiceManager::GetInstance() {
    if (!s_pInstance) s_pInstance = new ServiceManager;
    return s_pInstance;
}

void ServiceManager::ReleaseInstance() {
    delete s_pInstance;
    s_pInstance = nullptr;
}

ServiceManager::ServiceManager() {
    ORVANE_LOG_INFO("ServiceManager::ServiceManager():%p", static_cast<void*>(this));
    loadDefaultEnabledService();
}

ServiceManager::~ServiceManager() {
    ORVANE_LOG_INFO("ServiceManager::~ServiceManager():%p", static_cast<void*>(this));
}

IPluginService* ServiceManager::GetServiceByName(const char* serviceName) {
    if (!serviceName) return nullptr;
    const auto found = _plugins.find(serviceName);
    if (found == _plugins.end()) return nullptr;
    const std::string pluginName = found->second;
    IPlugin* plugin = PluginManager::GetInstance()->GetPluginByName(pluginName.c_str());
    // The plugin is asked in the caller's own letters: for "Report", where FindReportService asks it for "REPORT".
    return plugin ? plugin->GetServiceByName(serviceName) : nullptr;
}

bool ServiceManager::loadEnabledService() {
    return true;
}

bool ServiceManager::loadDefaultEnabledService() {
    _plugins = {{"Report", "PELL"}, {"Account", "CADMO"}};
    return true;
}

}  // namespace Orvane::Plugin
