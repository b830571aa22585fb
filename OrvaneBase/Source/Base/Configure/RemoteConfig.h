// One module's view of the configuration client.
#ifndef ORVANE_BASE_CONFIGURE_REMOTE_CONFIG_H
#define ORVANE_BASE_CONFIGURE_REMOTE_CONFIG_H

#include <map>

#include "Base/Container/AString.h"
#include "Orvane/IRemoteConfig.h"
#include "System/Thread/Mutex.h"

namespace Orvane {

class ConfigObserver;

// The operations are told in Orvane/IRemoteConfig.h. Reads and requests go to the client in force (Configure), with the
// module's name as the section. The observers are kept here, and for each one a ConfigObserver that the client calls.
// Any thread.
class RemoteConfig final : public IRemoteConfig {
public:
    // A null name is an empty one.
    explicit RemoteConfig(const char* moduleName);
    // Leaves behind what is registered with the client, which calls it on.
    ~RemoteConfig() override;
    RemoteConfig(const RemoteConfig&) = delete;
    RemoteConfig& operator=(const RemoteConfig&) = delete;

    int GetInt(const char* key, int defaultValue) override;
    long long GetLong(const char* key, long long defaultValue) override;
    double GetDouble(const char* key, double defaultValue) override;
    bool GetBool(const char* key, bool defaultValue) override;
    bool GetString(const char* key, char* buffer, int& length, const char* defaultValue) override;
    void AddObserver(RemoteConfigObserver* observer) override;
    void RemoveObserver(RemoteConfigObserver* observer) override;
    void SetUserInfo(int channelId, const char* openId) override;
    void Fetch() override;
    void SetOption(const char* name, int value) override;
    void SetOption(const char* name, const char* value) override;

private:
    const Quern::AString _moduleName;
    // By observer; what stands for each at the client is never deleted.
    std::map<RemoteConfigObserver*, ConfigObserver*> _observers ORVANE_GUARDED_BY(_mutex);
    Quern::CMutex _mutex{true};  // the client's and the log's may be taken under it
};

// The game's own module: made at the first call, on any thread, and named after the game's id as it is then known.
// Never deleted.
RemoteConfig* GetOrvaneRemoteConfig();

}  // namespace Orvane

#endif
