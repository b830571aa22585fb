// The files of modules, changed from the console (ModuleFolder.h has the layout).
#ifndef ORVANE_TOOLS_DEVSERVER_CONSOLE_MODULE_EDITOR_H
#define ORVANE_TOOLS_DEVSERVER_CONSOLE_MODULE_EDITOR_H

#include <mutex>
#include <string>
#include <vector>

namespace OrvaneDevServer {

// Which file.
struct ModuleName {
    std::string device;  // empty: for all devices
    std::string module;  // the file's name without ".json"
};

// One request at a time changes a file; whoever edits it by hand is noticed up to the moment of the change. Any thread.
class ModuleEditor {
public:
    // `folder` is the server's.
    explicit ModuleEditor(std::string folder) : _folder(std::move(folder)) {}

    enum class Result {
        kDone,
        kNoName,   // a name that names no file
        kChanged,  // the file is not what was read
        kRefused,  // no object of keys
        kFailed,   // the disk
    };

    // The files that there are: those for all devices, then those of each device, by name.
    std::vector<ModuleName> List() const;

    // The file's text and a digest of it, both empty if there is none. False, and why, if it cannot be read or named.
    bool Read(const ModuleName& name, std::string& text, std::string& digest, std::string& why) const;

    // Writes the text as it stands, if the file still has that digest; with an empty one, if there is no file. `why`
    // says what hinders.
    Result Write(const ModuleName& name, const std::string& text, const std::string& digest, std::string& why);
    // Removes the file, if it still has that digest.
    Result Remove(const ModuleName& name, const std::string& digest, std::string& why);

private:
    std::string PathOf(const ModuleName& name) const;
    Result Check(const ModuleName& name, const std::string& digest, std::string& why) const;

    const std::string _folder;
    std::mutex _mutex;  // over the look at a file and its change
};

}  // namespace OrvaneDevServer

#endif
