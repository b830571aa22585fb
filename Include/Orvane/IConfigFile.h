/// \file IConfigFile.h
/// A file of settings of a plugin's own, and the service "CONFIGFILE" of the plugin "OrvaneCore" that hands it out.
/// Slot order is a binary contract.
#ifndef ORVANE_I_CONFIG_FILE_H
#define ORVANE_I_CONFIG_FILE_H

#include "Orvane/IPluginService.h"

namespace Orvane {

/// Sections of keys and values in "NAME.config" in the cache folder, enciphered while it is in use (Docs/StoreFormat.md
/// has the bytes). Reads go on to the application's manifest where the file has no such key, and then give the default.
///
/// Keep **one** object a name. All objects of a name share one store, and the first that is deleted takes it along: the
/// others must not be used, or deleted, any more. The deletion saves what was not saved, and leaves the file in plain
/// text until its next save. "RemoteConfig" is the file in which the library keeps the configuration server's answer:
/// an object of that name is a second one over it, and each overwrites what the other saved. The default file is the
/// library's own, "Orvane.config"; it stays when objects of it are deleted.
///
/// Everything is kept as text, which has its effects:
/// - a text is trimmed of blanks, and cut at a "#"; neither it nor a section or key may hold a line end;
/// - a bool is written as 1 or 0 and read as true only from the text "true": what was set here reads as false. Keep an
///   int in its place;
/// - an int that equals the default it is read with counts as not there, so that the manifest's value wins.
///
/// Any thread, but from a log callback only reads; each call is whole, but what two calls do is not whole together. A
/// read waits for no disk, and behind a change at most for another thread's step in memory. A null section, key or text
/// is written and removed nowhere (false), and a null section or key reads as the default, or as an empty text.
class IConfigFile {
public:
    virtual ~IConfigFile() {}

    /// Each sets a value in memory, to be seen by all readers at once and written by SaveCacheToFile: for several at a
    /// time. Take care that a text is no `bool`, which a pointer to anything but `char` turns into.
    virtual bool SetCache(const char* section, const char* key, int value) = 0;
    virtual bool SetCache(const char* section, const char* key, long long value) = 0;
    virtual bool SetCache(const char* section, const char* key, const char* value) = 0;
    virtual bool SetCache(const char* section, const char* key, bool value) = 0;

    /// Each removes in memory alone. \return whether something was removed; RemoveAll gives true.
    /// RemoveValueForKey takes the first line behind the section's header that **begins with** `key`, in later sections
    /// too: "ab" removes "abc=1".
    virtual bool RemoveValueForKey(const char* section, const char* key) = 0;
    virtual bool RemoveSection(const char* section) = 0;
    virtual bool RemoveAll() = 0;

    /// Replaces the file by what is in memory, and waits for the disk. \return true; a file that cannot be written goes
    /// unnoticed
    virtual bool SaveCacheToFile() = 0;

    /// SetCache and then SaveCacheToFile.
    virtual bool SetAndSave(const char* section, const char* key, int value) = 0;
    virtual bool SetAndSave(const char* section, const char* key, long long value) = 0;
    virtual bool SetAndSave(const char* section, const char* key, const char* value) = 0;
    virtual bool SetAndSave(const char* section, const char* key, bool value) = 0;

    /// The removals above and then, if they gave true, SaveCacheToFile: RemoveAllAndSave saves always.
    virtual bool RemoveValueForKeyAndSave(const char* section, const char* key) = 0;
    virtual bool RemoveSectionAndSave(const char* section) = 0;
    virtual bool RemoveAllAndSave() = 0;

    /// Numbers: a text that begins with none reads as 0, and one that does not fit as the nearest limit.
    virtual long long GetFromCache(const char* section, const char* key, long long defaultValue) = 0;
    virtual int GetFromCache(const char* section, const char* key, int defaultValue) = 0;
    /// Copies the text, or as much of it as fits before a terminator, into `buffer`, zero-filled to its end.
    /// \param length the buffer's size in bytes; on return the bytes copied, without a terminator
    /// \param defaultValue a null counts as an empty text
    /// \return false if the text was cut, and for a null buffer or a length below 1, which leaves both as they were
    virtual bool GetFromCache(const char* section, const char* key, char* buffer, int& length,
                              const char* defaultValue) = 0;
    virtual bool GetFromCache(const char* section, const char* key, bool defaultValue) = 0;

    /// Asks the file alone, and not the manifest: whether a line behind the section's header begins with `key`, by the
    /// rule of RemoveValueForKey. A first filter.
    virtual bool IsContainKey(const char* section, const char* key) = 0;
};

/// The service "CONFIGFILE". Any thread; not from a log callback: a file that is opened, or deleted, may hold a lock
/// under which other threads log.
class IConfigFileService : public Plugin::IPluginService {
public:
    /// \param name the file's, without ".config"; null and "Orvane" mean the default file. It is a part of a path.
    /// \return a new object, which the caller owns and gives back to DeleteConfigFile. Never null: where the platform
    ///         cannot say where the cache folder is, the process ends, after a log line.
    virtual IConfigFile* NewConfigFile(const char* name) = 0;
    /// Deletes the object and clears the pointer; does nothing for a null of either. The object of GetDefaultConfigFile
    /// stays, and only the pointer is cleared.
    virtual void DeleteConfigFile(IConfigFile** file) = 0;
    /// \return the one object over the default file that lives as long as the process; owned by the library
    virtual IConfigFile* GetDefaultConfigFile() = 0;
};

}  // namespace Orvane

#endif
