// A small text store of sections and keys in a file. Bundles are kept in this form.
#ifndef ORVANE_STORAGE_BUNDLE_INI_FILE_H
#define ORVANE_STORAGE_BUNDLE_INI_FILE_H

#include "Base/Container/AArray.h"
#include "Base/Container/AString.h"

namespace Quern {

// Everything is stored as text. A null section or key finds and writes nothing. The forms of values, comments and
// sections: IniText.h. Slot order is a contract. Any thread: changes, Load and Save come one after the other, a Save
// with its wait for the disk; the reads, GetAllKeys and IsContainKey wait for no disk, and behind a change at most for
// another thread's step in memory. Nothing guards the file against a second object or process.
class IniFile {
public:
    // Each gives a new object over the file, already loaded as plain text, which the caller deletes. A file that cannot
    // be opened is removed. Deleting the object saves it, as plain text in either case.
    static IniFile* CreateIniFile(const char* path);
    // Enciphered at rest. The caller calls Load once more: it replaces the plain text if the file is enciphered, and
    // leaves it if not, which is how a plain file becomes an enciphered one with the next Save.
    static IniFile* CreateEncrptedFile(const char* path);

    virtual ~IniFile() = default;
    // Replaces what is in memory. On false it stays.
    virtual bool Load() = 0;
    // Replaces the file. Always true: a file that cannot be written goes unnoticed.
    virtual bool Save() = 0;

    // An empty text, and not the default, for a null section or key. A text cannot hold a "#".
    virtual AString ReadString(const char* section, const char* key, const char* defaultValue) = 0;
    // The default for an empty text; 0 for a text that begins with no number; the nearest limit for one too large.
    virtual int ReadInt(const char* section, const char* key, int defaultValue) = 0;
    virtual long long ReadLongLong(const char* section, const char* key, long long defaultValue) = 0;
    // The same, and say whether the key has a value. A value of only a comment counts as found and empty.
    virtual AString ReadString(const char* section, const char* key, const char* defaultValue, bool& found) = 0;
    virtual int ReadInt(const char* section, const char* key, int defaultValue, bool& found) = 0;
    virtual long long ReadLongLong(const char* section, const char* key, long long defaultValue, bool& found) = 0;

    // In memory alone, until Save. False for a null section or key. REQUIRES: `value` is not null.
    virtual bool WriteString(const char* section, const char* key, const char* value) = 0;
    virtual bool WriteInt(const char* section, const char* key, int value) = 0;
    virtual bool WriteLongLong(const char* section, const char* key, long long value) = 0;

    // Adds the keys of the first section of that name, each as a string that the array owns.
    virtual void GetAllKeys(const char* section, AArray* keys) = 0;
    // A first filter: whether any line behind the section's header begins with `key`, in later sections too.
    virtual bool IsContainKey(const char* section, const char* key) = 0;
    // In memory alone, until Save. True if something was removed; RemoveKey removes the line that IsContainKey finds.
    virtual bool RemoveSection(const char* section) = 0;
    virtual bool RemoveKey(const char* section, const char* key) = 0;
    // Always true.
    virtual bool RemoveAll() = 0;

    // Further slots, behind those of the contract.

    // As WriteString; `isUnsaved` tells whether memory has changes, this one or earlier ones, since the file was last
    // loaded or written: a Save that the disk refused leaves them unsaved, and so does a plain file where an enciphered
    // one is wanted.
    virtual bool ReplaceString(const char* section, const char* key, const char* value, bool& isUnsaved) = 0;
    // From here to the end of the batch a Save only notes that it was asked for, whichever thread asks; the end saves
    // if one did, and gives that save's result, or true. It does not save where the lines are what the file has: those
    // of the begin, if all was saved by then; empty lines, which a Load drops, do not count. Batches may overlap and
    // nest: the last end saves.
    // REQUIRES: a batch ends on the thread that began it, before the object is deleted.
    virtual void BeginBatch() = 0;
    virtual bool EndBatch() = 0;
};

}  // namespace Quern

#endif
