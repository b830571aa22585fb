// The layer of a bundle that is written at run time.
#ifndef ORVANE_STORAGE_BUNDLE_INI_BUNDLE_H
#define ORVANE_STORAGE_BUNDLE_INI_BUNDLE_H

#include <memory>

#include "Base/Container/AArray.h"
#include "Base/Container/AString.h"
#include "Base/Container/Value.h"
#include "Storage/Bundle/IniFile.h"

namespace Quern {

// Types over the texts of an INI file. Bundle.h says what they mean; here the reads say whether there was a value.
// Without a file the writes and removals give false, but for RemoveValueForKey, and the reads their default.
class IniBundle {
public:
    // Opens or makes the file of that path. Null and "Orvane" mean "Orvane.config" in the cache folder: it ends the
    // process, after a log line, to ask for that before the platform can say where the cache is.
    explicit IniBundle(const char* path);
    // Takes over a file, which may be null.
    explicit IniBundle(std::unique_ptr<IniFile> file) : _file(std::move(file)) {}

    // Each writes the value and saves the whole file.
    bool Set(const char* section, const char* key, long long value);
    bool Set(const char* section, const char* key, int value);
    bool Set(const char* section, const char* key, const char* value);
    bool Set(const char* section, const char* key, bool value);
    // The forms without a section belong to the layer above: here the writes give false, the reads the default.
    bool Set(const char*, long long) { return false; }
    bool Set(const char*, int) { return false; }
    bool Set(const char*, const char*) { return false; }
    bool Set(const char*, bool) { return false; }
    // `found` becomes whether there is a line for the key, whatever is then given.
    long long Get(const char* section, const char* key, long long defaultValue, bool& found);
    int Get(const char* section, const char* key, int defaultValue, bool& found);
    AString Get(const char* section, const char* key, const char* defaultValue, bool& found);
    bool Get(const char* section, const char* key, bool defaultValue, bool& found);
    long long Get(const char*, long long defaultValue) { return defaultValue; }
    int Get(const char*, int defaultValue) { return defaultValue; }
    AString Get(const char*, const char* defaultValue) { return defaultValue; }
    bool Get(const char*, bool defaultValue) { return defaultValue; }
    // So do the forms with a Value.
    bool Set(const Value&) { return false; }
    bool Set(const char*, const Value&) { return false; }
    bool Get(const char*, Value&) { return false; }
    bool Get(const char*, const char*, Value&) { return false; }

    // Each removes, and saves if something was removed.
    bool RemoveSection(const char* section);
    // True without a file.
    bool RemoveValueForKey(const char* section, const char* key);
    void GetAllKeys(const char* section, AArray* keys);
    bool IsContainKey(const char* section, const char* key);
    bool RemoveAll();

    // From here on: what is in memory, which is called the cache, and its way from and to the file.
    bool LoadFileToCache();
    bool SaveCacheToFile();
    bool SetCache(const char* section, const char* key, long long value);
    bool SetCache(const char* section, const char* key, int value);
    bool SetCache(const char* section, const char* key, const char* value);
    bool SetCache(const char* section, const char* key, bool value);
    bool RemoveCacheSection(const char* section);
    bool RemoveCacheValueForKey(const char* section, const char* key);
    bool RemoveCacheAll();

    // As Set, without a save where all that is in memory is in the file already. True then, too.
    bool SetIfDifferent(const char* section, const char* key, const char* value);
    // IniFile's. Without a file the end gives true.
    void BeginBatch();
    bool EndBatch();

private:
    // Saves after a change that worked.
    bool SaveIf(bool changed) { return changed && _file->Save(); }

    std::unique_ptr<IniFile> _file;
};

}  // namespace Quern

#endif
