#include "PluginManager/PluginManager.h"

#include <cstring>

#include "Base/CoreModule.h"
#include "Base/XLog.h"
#include "Orvane/OrvaneCore.h"
#include "PluginManager/ServiceRegister.h"

namespace Orvane::Plugin {

PluginManager* PluginManager::s_pInstance = nullptr;

PluginManager* PluginManager::GetInstance() {
    if (!s_pInstance) s_pInstance = new PluginManager;
    return s_pInstance;
}

void PluginManager::ReleaseInstance() {
    delete s_pInstance;
    s_pInstance = nullptr;
}

PluginManager::PluginManager() : allPluginNames(nullptr) {
    ORVANE_LOG_INFO("PluginManager::PluginManager():%p", static_cast<void*>(this));
    const char* version = orvanecore_get_version();
    const char* hash = orvanecore_get_version_hash();
    const char* tag = orvanecore_get_orvane_version_string();
    if (version && hash && tag) ORVANE_LOG_EVENT("version %s,hash %s,version_tag %s", version, hash, tag);
}

PluginManager::~PluginManager() {
    ORVANE_LOG_INFO("PluginManager::~PluginManager():%p", static_cast<void*>(this));
}

bool PluginManager::Install(IPlugin* plugin) {
    if (!plugin) {
        ORVANE_LOG_ERROR("PluginManager::Install Fail, plugin is null");
        return false;
    }
    const char* name = plugin->GetName();
    if (!name) {
        ORVANE_LOG_ERROR("PluginManager::Install Fail, pluginName is null");
        return false;
    }
    const char* version = plugin->GetVersion();
    if (!version) {
        ORVANE_LOG_ERROR("PluginManager::Install Fail, pluginVersion is null");
        return false;
    }
    _tagPluginDescriptor descriptor;
    descriptor.plugin = plugin;
    descriptor.pluginName = name;
    descriptor.pluginVersion = version;
    {
        const std::lock_guard<std::mutex> guard(_mutex);
        plugins[name] = descriptor;
    }
    ORVANE_LOG_INFO("PluginManager::Install Success, plugin:%p, pluginName:%s, pluginVersion:%s",
                    static_cast<void*>(plugin), name, version);
    return true;
}

bool PluginManager::Uninstall(IPlugin* plugin) {
    if (!plugin) {
        ORVANE_LOG_ERROR("PluginManager::Uninstall plugin is null");
        return false;
    }
    return UninstallByName(plugin->GetName());
}

bool PluginManager::UninstallByName(const char* pluginName) {
    if (!pluginName) {
        ORVANE_LOG_ERROR("PluginManager::Uninstall pluginName is null");
        return false;
    }
    const std::lock_guard<std::mutex> guard(_mutex);
    plugins.erase(pluginName);
    return true;
}

const char* const* PluginManager::GetAllPluginNames() {
    const std::lock_guard<std::mutex> guard(_mutex);
    return allPluginNames;
}

IPlugin* PluginManager::GetPluginByName(const char* pluginName) {
    if (!pluginName) {
        ORVANE_LOG_ERROR("PluginManager::GetPluginByName pluginName is null");
        return nullptr;
    }
    if (strcmp(pluginName, "ORVANECORE") == 0) {
        ORVANE_LOG_WARNING("format PluginName ORVANECORE");
        pluginName = Quern::kCoreModule;
    }
    {
        const std::lock_guard<std::mutex> guard(_mutex);
        const auto found = plugins.find(pluginName);
        if (found != plugins.end()) return found->second.plugin;
    }
    ORVANE_LOG_WARNING("plugin:%s not exist:", pluginName);
    return nullptr;
}

PluginCollection* PluginManager::GetPluginCollection() {
    return &plugins;
}

PluginCollection PluginManager::CopyPlugins() {
    const std::lock_guard<std::mutex> guard(_mutex);
    return plugins;
}

bool PluginManager::TakeNext(bool isFirst, std::string& name, _tagPluginDescriptor& descriptor) {
    const std::lock_guard<std::mutex> guard(_mutex);
    const auto next = isFirst ? plugins.begin() : plugins.upper_bound(name);
    if (next == plugins.end()) return false;
    name = next->first;
    descriptor = next->second;
    return true;
}

void PluginManager::Startup() {
    Walk([this](const _tagPluginDescriptor& descriptor) {
        ServiceRegister services;
        descriptor.plugin->OnStartup(&services);
        const std::lock_guard<std::mutex> guard(_mutex);
        const auto entry = plugins.find(descriptor.pluginName);
        if (entry != plugins.end() && entry->second.plugin == descriptor.plugin)
            entry->second.serviceNames = services.GetServiceNames();
    });
}

void PluginManager::PreShutdown() {
    Walk([](const _tagPluginDescriptor& descriptor) { descriptor.plugin->OnPreShutdown(); });
}

void PluginManager::Shutdown() {
    Walk([](const _tagPluginDescriptor& descriptor) { descriptor.plugin->OnShutdown(); });
}

// An earlier array is left behind on purpose: whoever asked for it may still read it.
void PluginManager::BuildAllPluginNames() {
    const std::lock_guard<std::mutex> guard(_mutex);
    const char** names = new const char*[plugins.size() + 1];
    size_t count = 0;
    for (const auto& [key, descriptor] : plugins) {
        char* name = new char[key.size() + 1]();
        memcpy(name, key.data(), key.size());
        names[count++] = name;
    }
    names[count] = nullptr;
    allPluginNames = names;
}

}  // namespace Orvane::Plugin
