// The core library's own view of the configuration: reads by key from the module "OrvaneCore".
#ifndef ORVANE_BASE_CONFIGURE_ORVANE_CORE_REMOTE_CONFIG_H
#define ORVANE_BASE_CONFIGURE_ORVANE_CORE_REMOTE_CONFIG_H

#include <atomic>
#include <string>

#include "Orvane/IRemoteConfig.h"

namespace Orvane {

// Reads never fail: they give the default where there is no configuration. Any thread.
class OrvaneCoreRemoteConfig {
public:
    // Made at the first call, during start-up, without a lock; never destroyed. What it finds then is what it serves:
    // made before the core plugin is installed, it gives defaults for the life of the process. A log callback that
    // comes here while the same thread is still looking for the core plugin gets another object, which gives defaults.
    static OrvaneCoreRemoteConfig* GetInstance();

    int GetInt(const char* key, int defaultValue);
    long long GetLong(const char* key, long long defaultValue);
    double GetDouble(const char* key, double defaultValue);
    bool GetBool(const char* key, bool defaultValue);
    // A value of 1024 bytes or more reads as the default. A null default counts as an empty text.
    std::string GetString(const char* key, const char* defaultValue);

private:
    constexpr explicit OrvaneCoreRemoteConfig(IRemoteConfig* remoteConfig) : _remoteConfig(remoteConfig) {}

    static std::atomic<OrvaneCoreRemoteConfig*> s_pInstance;
    static OrvaneCoreRemoteConfig s_withoutConfig;

    IRemoteConfig* const _remoteConfig;  // owned by the service; null if a link on the way to it was broken
};

}  // namespace Orvane

#endif
