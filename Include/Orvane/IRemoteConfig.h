/// \file IRemoteConfig.h
/// A module's view of the configuration, and the services "REMOTECONFIG" and "REMOTECONFIGEX" of the plugin
/// "OrvaneCore" that hand it out. Slot order is a binary contract.
///
/// A module is one section of settings, named after the plugin that reads it; the game's own is named after its game
/// id. A read looks in three places, and the first that has the key answers:
///   1. what the configuration server last answered, kept from run to run;
///   2. the application's manifest: the dictionary of the module's name, or "OrvaneGame" for the game's own module;
///   3. the default that the caller gives.
/// The kept answer is text, which has its effects on the types: a number reads as any type but as a true bool, and an
/// int that equals the caller's default counts as not there. A text ends at its first "#". Docs/RemoteConfig.md has the
/// whole table.
#ifndef ORVANE_I_REMOTE_CONFIG_H
#define ORVANE_I_REMOTE_CONFIG_H

#include "Orvane/IPluginService.h"
#include "Orvane/PluginBase.h"

namespace Orvane {

/// A walk over texts, which goes once. Texts are valid as long as the iterator.
class IStringIterator {
public:
    /// \return the current text, and goes on; null at the end
    virtual const char* Next() = 0;
    /// \return whether all were given; true at once where there are none
    virtual bool IsEnd() = 0;

protected:
    ~IStringIterator() {}  // not virtual: the table holds the two operations alone
};

class IRemoteConfig;

/// Told when an answer of the server has come that holds keys of the module.
class RemoteConfigObserver {
public:
    /// The new values can be read by now. On the thread on which the answer arrived, one answer at a time. Settings can
    /// be read here, observers added and a Fetch asked for; but the library's other HTTP answers wait for the call, so
    /// it must be brief, and must not wait for one of them or for a thread that does.
    /// \param config the module's settings, which the observer was added to
    /// \param keys   the names of the module's keys in that answer, valid for the call. A key that the answer no longer
    ///               has is forgotten by then, and is not in it.
    virtual void OnRemoteConfigRefreshed(IRemoteConfig* config, IStringIterator* keys) = 0;

protected:
    ~RemoteConfigObserver() {}  // not virtual: the table holds the one operation alone
};

/// One module's settings. Owned by the library, and valid for the life of the process. Any thread.
///
/// No read waits for the network, or fails: where there is no value it gives the default. A null key logs an error and
/// gives the default.
class IRemoteConfig {
public:
    virtual ~IRemoteConfig() {}
    /// A stored text that begins with no number reads as 0, and one beyond 32 bits as the nearest limit. In the
    /// manifest only a number is an int.
    virtual int GetInt(const char* key, int defaultValue) = 0;
    /// The same for 64 bits; a text of the manifest is read as a number.
    virtual long long GetLong(const char* key, long long defaultValue) = 0;
    /// Read from a text, by the rule of GetString. The default where that is no number.
    virtual double GetDouble(const char* key, double defaultValue) = 0;
    /// A stored value is true only as the text "true", in upper or lower case; any other, 1 too, is false.
    virtual bool GetBool(const char* key, bool defaultValue) = 0;
    /// Copies the text into `buffer`, zero-filled to its end. In the manifest only a text is one.
    /// \param length the buffer's size in bytes; on success the text's length, without a terminator
    /// \param defaultValue a null counts as an empty text
    /// \return false, and nothing changed, if the text and its terminator do not fit (the default's as well), or for a
    ///         null key or buffer or a length below 1, with a log line
    virtual bool GetString(const char* key, char* buffer, int& length, const char* defaultValue) = 0;

    /// Asks to hear of the module's refreshes, from the next answer on. A module has **one** place for an observer, for
    /// the life of the process: the first to come gets it, and a logger of that name (ILogService) is one that comes.
    /// Who comes later is kept here and never called. The caller keeps the observer, which must stay valid for the
    /// life of the process, as RemoveObserver says. Not from a log callback.
    /// \param observer null takes the place as well, and hears nothing. One that is in already logs a warning.
    virtual void AddObserver(RemoteConfigObserver* observer) = 0;
    /// Takes the observer off the list here, so that it may be added again: after the library was taken down
    /// (IBase::Release), which forgets all observers, this and AddObserver make it hear anew. Until then it is **called
    /// on** at each refresh, and its place is not given free: never delete an observer while answers can come. Not from
    /// a log callback.
    virtual void RemoveObserver(RemoteConfigObserver* observer) = 0;

    /// Tells who the user is, for all modules and for the next run too; the next request to the server says so. Writes
    /// a file, so not on every frame. Not from a log callback, which may log and read settings, and nothing else.
    /// \param openId a null counts as an empty text
    virtual void SetUserInfo(int channelId, const char* openId) = 0;
    /// Asks the server once more, for all modules, and does not wait for the answer. Does nothing while a request is on
    /// its way, but to let it retry anew, and none where no server is known. Not from a log callback.
    virtual void Fetch() = 0;
    /// Reserved; do nothing.
    virtual void SetOption(const char* name, int value) = 0;
    virtual void SetOption(const char* name, const char* value) = 0;
};

namespace Plugin {

/// The service "REMOTECONFIG". Any thread.
class IRemoteConfigService : public IPluginService {
public:
    /// \param plugin its name, asked for under a lock, names the module; a null name is an empty one
    /// \return the settings of that module, the same object for the same name; owned by the library. Null, with a log
    ///         line, for a null plugin.
    virtual IRemoteConfig* GetRemoteConfig(PluginBase* plugin) = 0;
};

/// The service "REMOTECONFIGEX": the same behind a version. Any thread.
class IRemoteConfigExService : public IPluginService {
public:
    /// \return 1, the version of this interface
    virtual int GetVersion() = 0;
    /// \return what IRemoteConfigService::GetRemoteConfig gives, the same object
    virtual IRemoteConfig* GetRemoteConfig(PluginBase* plugin) = 0;
};

}  // namespace Plugin
}  // namespace Orvane

#endif
