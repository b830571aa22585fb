// Setting reads: every unit takes its settings here, by section and key, with a default.
#ifndef ORVANE_BASE_CONFIGURE_CONFIGURE_H
#define ORVANE_BASE_CONFIGURE_CONFIGURE_H

#include "Base/Container/AString.h"
#include "Orvane/IRemoteConfig.h"

namespace Orvane {

// Told the names of the keys of one module that arrived. On the thread on which they arrived, with no lock held.
class ConfigureObserver {
public:
    virtual void OnConfigureRefreshed(IStringIterator* keys) = 0;

protected:
    ~ConfigureObserver() = default;  // not virtual: the table holds the one operation alone
};

// The process-wide settings: what the configuration server answered, else what ships in the application's manifest,
// else the caller's default. Slot order is a contract. Reads never fail.
class Configure {
public:
    virtual void Start() = 0;
    virtual int GetInt(const char* section, const char* key, int defaultValue) = 0;
    virtual long long GetLong(const char* section, const char* key, long long defaultValue) = 0;
    virtual double GetDouble(const char* section, const char* key, double defaultValue) = 0;
    virtual bool GetBool(const char* section, const char* key, bool defaultValue) = 0;
    virtual Quern::AString GetString(const char* section, const char* key, const char* defaultValue) = 0;
    // The observer of one module, by name. Both must be non-null. A name that is present keeps its observer.
    virtual void AddObserver(const char* name, ConfigureObserver* observer) = 0;
    virtual void RemoveObserver(const char* name) = 0;
    virtual void StartOnce() = 0;
    virtual void SetUrl(const char* url) = 0;
    virtual void Clear() = 0;
    virtual ~Configure() = default;

    // The one in force; never null.
    static Configure* GetInstance();
    // Puts another in force, which the caller keeps; null restores the built-in. For start-up and tests.
    static void Use(Configure* configure);
};

}  // namespace Orvane

#endif
