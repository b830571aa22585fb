// The configuration modules: JSON files that a developer edits while the server runs.
//
//     FOLDER/modules/NAME.json              the module NAME for all devices
//     FOLDER/devices/DID/NAME.json          its keys go before those, for the device with that "did"
//
// A file is one object; its members are the keys. Files that begin with "." are left alone, as are those of other
// names.
#ifndef ORVANE_TOOLS_DEVSERVER_MODULE_FOLDER_H
#define ORVANE_TOOLS_DEVSERVER_MODULE_FOLDER_H

#include <json/json.h>

#include <map>
#include <string>
#include <vector>

namespace OrvaneDevServer {

constexpr size_t kMostModuleBytes = 4 << 20;  // of one file

// Reads a regular file. False, and why in `content`, if it is none, too big or unreadable. A pipe is not waited for.
bool ReadModuleFile(const std::string& path, std::string& content);

// Not for two threads at once.
class ModuleFolder {
public:
    explicit ModuleFolder(std::string folder) : _folder(std::move(folder)) {}

    // Reads all files anew: whatever was edited counts from the next answer on, however fast the edits follow each
    // other. A file that is damaged (in the middle of an edit, say) keeps its last good content. Gives what is worth
    // knowing, once for each change: which file was taken or cannot be, and which of its values the client will drop.
    std::vector<std::string> Refresh();

    // The modules of a device. A device is found by its name in the folder; no path is ever made of a "did".
    Json::Value For(const std::string& device) const;
    // {"modules":{..},"devices":{DID:{..}}}
    Json::Value All() const;

private:
    struct File {
        bool seen = false;    // in the present Refresh
        std::string content;  // last read, or why it was not
        Json::Value keys;     // last good; null if there never was one
    };
    // By the file's path below the folder.
    using Files = std::map<std::string, File>;

    void ReadModules(const std::string& below, std::vector<std::string>& notes);
    void Take(const std::string& below, std::vector<std::string>& notes);
    Json::Value ModulesBelow(const std::string& below) const;

    std::string _folder;
    Files _files;
};

}  // namespace OrvaneDevServer

#endif
