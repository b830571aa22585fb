#include "PluginManager/InnerPlugin/RemoteConfigService.h"

#include "Base/Configure/RemoteConfig.h"
#include "Base/CoreModule.h"
#include "Base/MakeOnce.h"
#include "Base/XLog.h"

namespace Orvane::Plugin {

std::atomic<RemoteConfigSerivce*> RemoteConfigSerivce::s_pInstance{nullptr};
std::atomic<RemoteConfigExSerivce*> RemoteConfigExSerivce::s_pInstance{nullptr};

// A function of its own, for the leak checker's list of what is left behind.
__attribute__((noinline)) RemoteConfig* MakeRemoteConfig(const std::string& name) {
    return new RemoteConfig(name.c_str());
}

RemoteConfigSerivce* RemoteConfigSerivce::GetInstance() {
    return Quern::MakeOnce(s_pInstance, [] { return new RemoteConfigSerivce; });
}

void RemoteConfigSerivce::ReleaseInstance() {
    delete s_pInstance.exchange(nullptr);
}

const char* RemoteConfigSerivce::GetName() const {
    return "REMOTECONFIG";
}

const char* RemoteConfigSerivce::GetPluginName() const {
    return Quern::kCoreModule;
}

IRemoteConfig* RemoteConfigSerivce::GetRemoteConfig(PluginBase* plugin) {
    if (!plugin) {
        ORVANE_LOG_ERROR("pBase is Null");
        return nullptr;
    }
    const Quern::CCritical guard(&_mutex);
    const char* const name = plugin->GetName();
    const std::string module = name ? name : "";
    RemoteConfig*& config = _configs[module];
    if (!config) config = MakeRemoteConfig(module);
    return config;
}

RemoteConfigExSerivce* RemoteConfigExSerivce::GetInstance() {
    return Quern::MakeOnce(s_pInstance, [] { return new RemoteConfigExSerivce; });
}

const char* RemoteConfigExSerivce::GetName() const {
    return "REMOTECONFIGEX";
}

const char* RemoteConfigExSerivce::GetPluginName() const {
    return Quern::kCoreModule;
}

int RemoteConfigExSerivce::GetVersion() {
    return 1;
}

IRemoteConfig* RemoteConfigExSerivce::GetRemoteConfig(PluginBase* plugin) {
    return RemoteConfigSerivce::GetInstance()->GetRemoteConfig(plugin);
}

}  // namespace Orvane::Plugin
