// The settings that ship inside the application and cannot change at run time.
#ifndef ORVANE_STORAGE_BUNDLE_SOLID_CONFIG_READER_H
#define ORVANE_STORAGE_BUNDLE_SOLID_CONFIG_READER_H

#include "Base/Container/AArray.h"
#include "Base/Container/AString.h"

namespace Quern {

// A section is an entry of the manifest whose value is a dictionary. Reads never fail: they give the default, and say
// so at Debug level for a section that does not exist, at Error level for one that is no dictionary. Any thread.
class SolidConfigReader {
public:
    SolidConfigReader() = delete;

    // The default for a null argument and for a value that is no number (a boolean is one).
    static int GetInt(const char* section, const char* key, int defaultValue);
    // These two convert numbers and texts alike (see InfoValue); a value that is neither gives the default.
    static long long GetInt64(const char* section, const char* key, long long defaultValue);
    static bool GetBool(const char* section, const char* key, bool defaultValue);
    // The default for a value that is no text; empty if any argument is null.
    static AString GetString(const char* section, const char* key, const char* defaultValue);
    // A text without the blanks at both ends; empty where there is no such text.
    static AString GetStringWithoutBlanks(const char* section, const char* key);
    // Adds the section's keys, in the manifest's order, as strings that the array owns.
    static void GetAllKeys(const char* section, AArray* keys);
    static bool IsContainKey(const char* section, const char* key);
    static AString GetMetaString(const char* section, const char* key, const char* defaultValue) {
        return GetString(section, key, defaultValue);
    }
};

}  // namespace Quern

#endif
