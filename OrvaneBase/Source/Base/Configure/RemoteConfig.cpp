#include "Base/Configure/RemoteConfig.h"

#include <atomic>
#include <cstring>
#include <string>

#include "Base/Configure/ConfigObserver.h"
#include "Base/Configure/Configure.h"
#include "Base/MakeOnce.h"
#include "Base/QuernCommon.h"
#include "Base/XLog.h"

namespace Orvane {
namespace {

std::atomic<RemoteConfig*> s_gameConfig{nullptr};

bool IsKey(const char* key, const char* function) {
    if (key) return true;
    if (!Quern::IsLogFiltered(kLogError)) Quern::XLog(kLogError, __FILE__, __LINE__, function, "key is NULL");
    return false;
}

}  // namespace

// A function of its own, for the leak checker's list of what is left behind.
__attribute__((noinline)) ConfigObserver* MakeConfigObserver(IRemoteConfig* config, RemoteConfigObserver* observer) {
    return new ConfigObserver(config, observer);
}

RemoteConfig::RemoteConfig(const char* moduleName) : _moduleName(moduleName) {}

RemoteConfig::~RemoteConfig() = default;

int RemoteConfig::GetInt(const char* key, int defaultValue) {
    if (!IsKey(key, __func__)) return defaultValue;
    return Configure::GetInstance()->GetInt(_moduleName.c_str(), key, defaultValue);
}

long long RemoteConfig::GetLong(const char* key, long long defaultValue) {
    if (!IsKey(key, __func__)) return defaultValue;
    return Configure::GetInstance()->GetLong(_moduleName.c_str(), key, defaultValue);
}

double RemoteConfig::GetDouble(const char* key, double defaultValue) {
    if (!IsKey(key, __func__)) return defaultValue;
    return Configure::GetInstance()->GetDouble(_moduleName.c_str(), key, defaultValue);
}

bool RemoteConfig::GetBool(const char* key, bool defaultValue) {
    if (!IsKey(key, __func__)) return defaultValue;
    return Configure::GetInstance()->GetBool(_moduleName.c_str(), key, defaultValue);
}

bool RemoteConfig::GetString(const char* key, char* buffer, int& length, const char* defaultValue) {
    if (!key || !buffer || length <= 0) {
        ORVANE_LOG_ERROR("key == NULL || value == NULL || size <=0");
        return false;
    }
    if (!defaultValue) defaultValue = "";
    const Quern::AString text = Configure::GetInstance()->GetString(_moduleName.c_str(), key, defaultValue);
    if (text.length() >= length) return false;
    strncpy(buffer, text.c_str(), static_cast<size_t>(length));  // with zeros to the buffer's end
    length = text.length();
    return true;
}

void RemoteConfig::AddObserver(RemoteConfigObserver* observer) {
    // Before the lock, since the first use makes the client, which opens a file.
    Configure* const configure = Configure::GetInstance();
    const Quern::CCritical guard(&_mutex);
    ConfigObserver*& registered = _observers[observer];
    if (registered) {
        ORVANE_LOG_WARNING("observer already add before");
        return;
    }
    registered = MakeConfigObserver(this, observer);
    configure->AddObserver(_moduleName.c_str(), registered);
}

// The client keeps the ConfigObserver, which goes on calling the observer: Orvane/IRemoteConfig.h warns of that.
void RemoteConfig::RemoveObserver(RemoteConfigObserver* observer) {
    const Quern::CCritical guard(&_mutex);
    _observers.erase(observer);
}

void RemoteConfig::SetUserInfo(int channelId, const char* openId) {
    if (!openId) openId = "";
    ORVANE_LOG_INFO("module %s SetUserInfo channelid %d, openid %s", _moduleName.c_str(), channelId, openId);
    Quern::QuernCommon::GetInstance()->SetUserInfo(std::to_string(channelId).c_str(), openId);
}

void RemoteConfig::Fetch() {
    ORVANE_LOG_INFO("module %s Fetch", _moduleName.c_str());
    Configure::GetInstance()->StartOnce();
}

void RemoteConfig::SetOption(const char*, int) {}

void RemoteConfig::SetOption(const char*, const char*) {}

RemoteConfig* GetOrvaneRemoteConfig() {
    return Quern::MakeOnce(s_gameConfig,
                           [] { return new RemoteConfig(Quern::QuernCommon::GetInstance()->GetGameID()); });
}

}  // namespace Orvane
