// A plugin's file of settings: a null-safe face over a bundle.
#ifndef ORVANE_BASE_CONFIGURE_CONFIG_FILE_H
#define ORVANE_BASE_CONFIGURE_CONFIG_FILE_H

#include "Base/Container/AString.h"
#include "Orvane/IConfigFile.h"
#include "Storage/Bundle/Bundle.h"

namespace Orvane {

// The operations are told in Orvane/IConfigFile.h. Adds no lock to the bundle's. Without a bundle everything fails with
// a log line, and the reads give their default.
class ConfigFile final : public IConfigFile {
public:
    // Over NAME.config in the cache folder; null and "Orvane" mean the default bundle. It ends the process, after a log
    // line, to ask for another before the platform can say where the cache is.
    explicit ConfigFile(const char* name);
    // Over a bundle of the factory's, by the path by which that knows it; empty for the default bundle.
    ConfigFile(Quern::Bundle* bundle, Quern::AString path);
    // Has the factory delete the bundle, whoever else uses it; not the default one.
    ~ConfigFile() override;
    ConfigFile(const ConfigFile&) = delete;
    ConfigFile& operator=(const ConfigFile&) = delete;

    // The one over the default file, made at the first call, on any thread; never deleted.
    static ConfigFile* GetDefaultInstance();

    bool SetCache(const char* section, const char* key, int value) override;
    bool SetCache(const char* section, const char* key, long long value) override;
    bool SetCache(const char* section, const char* key, const char* value) override;
    bool SetCache(const char* section, const char* key, bool value) override;
    bool RemoveValueForKey(const char* section, const char* key) override;
    bool RemoveSection(const char* section) override;
    bool RemoveAll() override;
    bool SaveCacheToFile() override;
    bool SetAndSave(const char* section, const char* key, int value) override;
    bool SetAndSave(const char* section, const char* key, long long value) override;
    bool SetAndSave(const char* section, const char* key, const char* value) override;
    bool SetAndSave(const char* section, const char* key, bool value) override;
    bool RemoveValueForKeyAndSave(const char* section, const char* key) override;
    bool RemoveSectionAndSave(const char* section) override;
    bool RemoveAllAndSave() override;
    long long GetFromCache(const char* section, const char* key, long long defaultValue) override;
    int GetFromCache(const char* section, const char* key, int defaultValue) override;
    bool GetFromCache(const char* section, const char* key, char* buffer, int& length,
                      const char* defaultValue) override;
    bool GetFromCache(const char* section, const char* key, bool defaultValue) override;
    bool IsContainKey(const char* section, const char* key) override;

private:
    // Whether there is a bundle; logs in the caller's name if not.
    bool HasBundle(const char* function) const;

    Quern::Bundle* _bundle;  // the factory's; as it was made
    const Quern::AString _path;
};

// Deletes the object and clears the pointer; does nothing for a null of either. The default instance stays, since
// others have it, and only the pointer is cleared.
void DeleteOrvaneConfigFile(IConfigFile** file);

}  // namespace Orvane

#endif
