// The services "REMOTECONFIG" and "REMOTECONFIGEX": one view of the configuration for each plugin name. What a view
// reads, and from where, is in Orvane/IRemoteConfig.h.
#ifndef ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_REMOTE_CONFIG_SERVICE_H
#define ORVANE_PLUGIN_MANAGER_INNER_PLUGIN_REMOTE_CONFIG_SERVICE_H

#include <atomic>
#include <map>
#include <string>

#include "Orvane/IRemoteConfig.h"
#include "System/Thread/Mutex.h"

namespace Orvane {
class RemoteConfig;
}

namespace Orvane::Plugin {

// A view belongs to the service and is never deleted, so plugins may keep it. A null plugin gets none, with a line in
// the log; plugins without a name share the view of the empty name. Any thread.
class RemoteConfigSerivce final : public IRemoteConfigService {
public:
    // Made at the first call, by whichever thread.
    static RemoteConfigSerivce* GetInstance();
    // What it handed out stays valid; a new one hands out objects of its own. No thread may be in
    // one of its operations.
    static void ReleaseInstance();

    const char* GetName() const override;        // "REMOTECONFIG"
    const char* GetPluginName() const override;  // "OrvaneCore"
    // The same object for the same name. The name is copied.
    IRemoteConfig* GetRemoteConfig(PluginBase* plugin) override;

private:
    static std::atomic<RemoteConfigSerivce*> s_pInstance;

    // By plugin name; never deleted, since plugins keep them.
    std::map<std::string, RemoteConfig*> _configs ORVANE_GUARDED_BY(_mutex);
    Quern::CMutex _mutex{true};  // a plugin's GetName is called under it
};

// The same views under a service that also tells its version: siblings look for this one first. Any thread.
class RemoteConfigExSerivce final : public IRemoteConfigExService {
public:
    // Made at the first call, by whichever thread.
    static RemoteConfigExSerivce* GetInstance();

    const char* GetName() const override;        // "REMOTECONFIGEX"
    const char* GetPluginName() const override;  // "OrvaneCore"
    int GetVersion() override;                   // 1, the version of IRemoteConfigExService
    // What RemoteConfigSerivce gives, null for a null plugin too.
    IRemoteConfig* GetRemoteConfig(PluginBase* plugin) override;

private:
    static std::atomic<RemoteConfigExSerivce*> s_pInstance;
};

}  // namespace Orvane::Plugin

#endif
