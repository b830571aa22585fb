/// \file IRemoteConfig.h
/// The service "REMOTECONFIG" of the plugin "OrvaneCore": a module's view of the configuration. Slot order is a binary
/// contract.
#ifndef ORVANE_I_REMOTE_CONFIG_H
#define ORVANE_I_REMOTE_CONFIG_H

#include "Orvane/IPluginService.h"
#include "Orvane/PluginBase.h"

namespace Orvane {

/// A walk over texts. Texts are valid as long as the iterator.
class IStringIterator {
public:
    /// \return the current text, and goes on; null at the end.
    virtual const char* Next() = 0;
    virtual bool IsEnd() = 0;

protected:
    ~IStringIterator() {}  // not virtual: the table holds the two operations alone
};

class IRemoteConfig;

/// Told when the server's answer holds keys of the module. On the thread on which the answer arrived.
class RemoteConfigObserver {
public:
    virtual void OnRemoteConfigRefreshed(IRemoteConfig* config, IStringIterator* keys) = 0;

protected:
    ~RemoteConfigObserver() {}  // not virtual: the table holds the one operation alone
};

/// One module's settings: the server's stored answer first, then the application's manifest, then the caller's default.
/// Owned by the service; any thread.
class IRemoteConfig {
public:
    virtual ~IRemoteConfig() {}
    virtual int GetInt(const char* key, int defaultValue) = 0;
    virtual long long GetLong(const char* key, long long defaultValue) = 0;
    virtual double GetDouble(const char* key, double defaultValue) = 0;
    virtual bool GetBool(const char* key, bool defaultValue) = 0;
    /// Copies the text into `buffer`, zero-filled to its end.
    /// \param length the buffer's size in bytes; on success the text's length
    /// \return false, and nothing changed, if the text and its terminator do not fit or an argument is not usable
    virtual bool GetString(const char* key, char* buffer, int& length, const char* defaultValue) = 0;
    /// The caller keeps the observer, which must outlive every refresh: it may be called after its removal.
    virtual void AddObserver(RemoteConfigObserver* observer) = 0;
    virtual void RemoveObserver(RemoteConfigObserver* observer) = 0;
    virtual void SetUserInfo(int channelId, const char* openId) = 0;
    /// Asks the server once more.
    virtual void Fetch() = 0;
    /// Reserved; do nothing.
    virtual void SetOption(const char* name, int value) = 0;
    virtual void SetOption(const char* name, const char* value) = 0;
};

namespace Plugin {

/// The service "REMOTECONFIG".
class IRemoteConfigService : public IPluginService {
public:
    /// The settings of the module of the plugin's name. Null for a null plugin. Owned by the service.
    virtual IRemoteConfig* GetRemoteConfig(PluginBase* plugin) = 0;
};

}  // namespace Plugin
}  // namespace Orvane

#endif
