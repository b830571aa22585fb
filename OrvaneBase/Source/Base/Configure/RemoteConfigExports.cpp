// The game's own module as the game's script layer reads it.
#include "Base/Configure/CSRemoteConfigObserver.h"
#include "Base/Configure/RemoteConfig.h"
#include "Orvane/OrvaneCore.h"

using Orvane::GetOrvaneRemoteConfig;

namespace Orvane {

// A function of its own, for the leak checker's list of what is left behind.
__attribute__((noinline)) RemoteConfigObserver* MakeScriptObserver() {
    return new CSRemoteConfigObserver;
}

}  // namespace Orvane

void quern_remoteconfig_SetCallback(void (*callback)(const char* keys)) {
    g_callback.store(callback, std::memory_order_release);
    GetOrvaneRemoteConfig()->AddObserver(Orvane::MakeScriptObserver());
}

int quern_remoteconfig_GetInt(const char* key, int defaultValue) {
    return GetOrvaneRemoteConfig()->GetInt(key, defaultValue);
}

long long quern_remoteconfig_GetLong(const char* key, long long defaultValue) {
    return GetOrvaneRemoteConfig()->GetLong(key, defaultValue);
}

bool quern_remoteconfig_GetBool(const char* key, bool defaultValue) {
    return GetOrvaneRemoteConfig()->GetBool(key, defaultValue);
}

double quern_remoteconfig_GetDouble(const char* key, double defaultValue) {
    return GetOrvaneRemoteConfig()->GetDouble(key, defaultValue);
}

bool quern_remoteconfig_GetString(const char* key, char* buffer, int size, const char* defaultValue) {
    return GetOrvaneRemoteConfig()->GetString(key, buffer, size, defaultValue);
}
