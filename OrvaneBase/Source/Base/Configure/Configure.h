// Setting reads: every unit takes its settings here, by section and key, with a default.
#ifndef ORVANE_BASE_CONFIGURE_CONFIGURE_H
#define ORVANE_BASE_CONFIGURE_CONFIGURE_H

#include "Base/Container/AString.h"
#include "Orvane/IRemoteConfig.h"

namespace Orvane {

// Told the names of the keys of one module that arrived. On the thread on which they arrived, with no lock of the
// client's held, but inside the HTTP task's call: it is brief, does not wait for the main thread, and leaves downloads
// that are under way alone (Orvane/DataTask.h). It may use the client at will.
class ConfigureObserver {
public:
    virtual void OnConfigureRefreshed(IStringIterator* keys) = 0;

protected:
    ~ConfigureObserver() = default;  // not virtual: the table holds the one operation alone
};

// The process-wide settings: what the configuration server answered, else what ships in the application's manifest,
// else the caller's default. Slot order is a contract. Any thread, but for log callbacks, which may read and nothing
// else. Reads never fail, and wait neither for the network nor for the disk; where a change outside a batch is being
// made, a read may wait for that step in memory.
class Configure {
public:
    // Asks the server now and from then on at the gap that "RemoteConfigNextGap" sets, in seconds (86400 by default;
    // below 1 it is asked once a second). A further call begins a new gap.
    virtual void Start() = 0;
    // An int that equals the default counts as missing. A stored bool is true for the text "true" alone.
    virtual int GetInt(const char* section, const char* key, int defaultValue) = 0;
    virtual long long GetLong(const char* section, const char* key, long long defaultValue) = 0;
    // Doubles are texts: the number that the text begins with, with a "." whatever the locale.
    virtual double GetDouble(const char* section, const char* key, double defaultValue) = 0;
    virtual bool GetBool(const char* section, const char* key, bool defaultValue) = 0;
    virtual Quern::AString GetString(const char* section, const char* key, const char* defaultValue) = 0;
    // The observer of one module, by name. Both must be non-null. A name that is present keeps its observer. The caller
    // keeps it, and keeps it alive: a removal does not wait for a call that is under way.
    virtual void AddObserver(const char* name, ConfigureObserver* observer) = 0;
    virtual void RemoveObserver(const char* name) = 0;
    // Asks the server now, with the retries that "RemoteConfigMaxRetryCount" allows (3 by default). With a request
    // under way it renews them and sends nothing; without an address it does nothing.
    virtual void StartOnce() = 0;
    // Changes the server's address and asks. One that differs from the present one wipes what was stored, also before
    // the first StartOnce has looked for the address of the manifest, and makes the answer in flight stale: then the
    // new server is asked at the next occasion. Null does nothing.
    virtual void SetUrl(const char* url) = 0;
    // Forgets the address and wipes what was stored; the answer in flight is stale.
    virtual void Clear() = 0;
    virtual ~Configure() = default;

    // The one in force; never null. The client of the server is made at the first call, which opens its file (so this
    // one waits for the disk) and does nothing else, and released when the library is taken down; observers are not
    // carried over to the next one.
    static Configure* GetInstance();
    // Puts another in force, which the caller keeps; null restores the built-in. For tests.
    static void Use(Configure* configure);
};

}  // namespace Orvane

#endif
