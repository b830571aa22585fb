// The file of the user defaults: one JSON object, "Library/UserDefaults.json" of the container.
// Docs/StoreFormat.md describes it.
#ifndef ORVANE_STORAGE_DEFAULTS_LINUX_DEFAULTS_FILE_H
#define ORVANE_STORAGE_DEFAULTS_LINUX_DEFAULTS_FILE_H

#include <json/value.h>

#include <map>
#include <string>

namespace Quern {

// What is to change in one dictionary: its members' new values, null for one that is to go.
using DictionaryChanges = std::map<std::string, Json::Value>;
using DefaultsChanges = std::map<std::string, DictionaryChanges>;  // by the dictionary's key

// The object in the file. Empty if there is no file; empty, with a log line, if it cannot be read or is damaged.
Json::Value ReadDefaultsFile(const std::string& path);

// Changes these members of the file as it lies there now, so that what other processes have entered stays, in the same
// dictionary too. Writes a new file and puts it in place, and nothing at all if nothing changes; of a damaged file a
// copy is kept beside it first, with ".unusable" behind its name. Numbers of others keep their value as a double: an
// integer of more than 64 bits is rounded. Waits for the disk. False, with a log line, if the file cannot be read, kept
// or written: it is as it was.
bool ChangeDefaultsFile(const std::string& path, const DefaultsChanges& changes);

}  // namespace Quern

#endif
