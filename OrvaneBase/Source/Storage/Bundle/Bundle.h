// The library's typed key and value store.
#ifndef ORVANE_STORAGE_BUNDLE_BUNDLE_H
#define ORVANE_STORAGE_BUNDLE_BUNDLE_H

#include "Base/Container/AArray.h"
#include "Base/Container/AString.h"
#include "Base/Container/Value.h"

namespace Quern {

// Two layers: values written at run time, kept in an enciphered INI file, over the read-only settings of the
// application's manifest. A read looks at the first and falls back to the second; a write goes to the first alone.
//
// Everything is kept as text (IniFile.h), which has consequences that callers rely on:
// - a text is trimmed, and cut at a "#";
// - a bool is written as 1 or 0, and read back as true only from the text "true": what Set stored reads as false;
// - an int that equals the default it is read with counts as not there, so that the manifest's value wins;
// - a text with a "," comes back as an array where a Value is read.
//
// Slot order is a contract. Any thread: each call on the file is whole, but a write with its save, and a read that goes
// on to the manifest, are not whole together. A read waits for no disk and no network, and behind a change at most for
// another thread's step in memory, so that a log callback may read settings; a write waits for the disk. Making a
// bundle opens its file.
class Bundle {
public:
    virtual ~Bundle() = default;

    // Each writes the value and saves the whole file: batches go through SetCache. False for a null section or key.
    // REQUIRES: a text is not null.
    virtual bool Set(const char* section, const char* key, int value) = 0;
    virtual bool Set(const char* section, const char* key, long long value) = 0;
    virtual bool Set(const char* section, const char* key, const char* value) = 0;
    virtual bool Set(const char* section, const char* key, bool value) = 0;
    // The project's name is the section.
    virtual bool Set(const char* key, int value) = 0;
    virtual bool Set(const char* key, long long value) = 0;
    virtual bool Set(const char* key, const char* value) = 0;
    virtual bool Set(const char* key, bool value) = 0;

    // The third argument is what is given if there is no such value. The section of the game's id stands for
    // "OrvaneGame" in the manifest.
    virtual long long Get(const char* section, const char* key, long long defaultValue) = 0;
    virtual int Get(const char* section, const char* key, int defaultValue) = 0;
    virtual AString Get(const char* section, const char* key, const char* defaultValue) = 0;
    virtual bool Get(const char* section, const char* key, bool defaultValue) = 0;
    // The project's name is the section, in the manifest too. An int that equals the default counts as there.
    virtual long long Get(const char* key, long long defaultValue) = 0;
    virtual int Get(const char* key, int defaultValue) = 0;
    virtual AString Get(const char* key, const char* defaultValue) = 0;
    virtual bool Get(const char* key, bool defaultValue) = 0;

    // Stores an object of objects, section by section. False, with a log line, if it is no object; a member that is no
    // object is skipped with a line.
    virtual bool Set(const Value& value) = 0;
    // Stores an object's members as texts, an array as its elements with "," between; an object among them is skipped
    // with a line. True for null, which stores nothing; false, with a line, for anything else.
    virtual bool Set(const char* section, const Value& value) = 0;
    // Reads a whole section into an object: texts with a "," as arrays, numeric ones as numbers, empty ones not at all.
    // False for a null section and for one without keys. REQUIRES: `value` is null or an object.
    virtual bool Get(const char* section, Value& value) = 0;
    // Reads one key: `value` itself becomes an array for a text with a ","; otherwise an object that has the key as a
    // member. False for a null key and an empty text. REQUIRES: as above, unless an array is read.
    virtual bool Get(const char* section, const char* key, Value& value) = 0;

    // Each removes and saves. False if there was nothing to remove. What a key matches: IniFile::RemoveKey.
    virtual bool RemoveSection(const char* section) = 0;
    virtual bool RemoveValueForKey(const char* section, const char* key) = 0;
    virtual bool RemoveAll() = 0;

    // Adds the keys as strings that the array owns: those of the first layer, or if it has none the manifest's.
    virtual void GetAllKeys(const char* section, AArray* keys) = 0;
    // Asks the first layer alone; what it matches: IniFile::IsContainKey.
    virtual bool IsContainKey(const char* section, const char* key) = 0;

    // Writes the file.
    virtual bool SaveCacheToFile() = 0;
    // As their counterparts, without saving.
    virtual bool SetCache(const char* section, const char* key, int value) = 0;
    virtual bool SetCache(const char* section, const char* key, long long value) = 0;
    virtual bool SetCache(const char* section, const char* key, const char* value) = 0;
    virtual bool SetCache(const char* section, const char* key, bool value) = 0;
    virtual bool RemoveCacheSection(const char* section) = 0;
    virtual bool RemoveCacheAll() = 0;
    virtual bool RemoveCacheValueForKey(const char* section, const char* key) = 0;

    // The manifest's text alone. Without a manifest layer, the default, or an empty text for a null one.
    virtual AString GetMetaString(const char* section, const char* key, const char* defaultValue);
};

}  // namespace Quern

#endif
