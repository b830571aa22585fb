#include "DevServer/ModuleFolder.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>

#include "DevServer/JsonText.h"

namespace OrvaneDevServer {
namespace fs = std::filesystem;
namespace {

constexpr char kModules[] = "modules/", kDevices[] = "devices/";
constexpr std::string_view kEnding = ".json";

// The names in a folder, sorted; none if it cannot be read.
std::vector<std::string> NamesIn(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
        names.push_back(at->path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

bool IsKept(const Json::Value& value) {
    return value.isString() || value.type() == Json::intValue || value.type() == Json::uintValue;
}

}  // namespace

bool ReadModuleFile(const std::string& path, std::string& content) {
    const auto fail = [&content](const std::string& why) {
        content = why;
        return false;
    };
    const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) return fail(strerror(errno));
    struct stat state {};
    bool isRead = false;
    if (fstat(descriptor, &state) != 0 || !S_ISREG(state.st_mode)) {
        fail("it is no file");
    } else {
        content.assign(kMostModuleBytes + 1, '\0');
        size_t length = 0;
        ssize_t count = 0;
        while (length < content.size() &&
               ((count = read(descriptor, content.data() + length, content.size() - length)) > 0 ||
                (count < 0 && errno == EINTR)))
            length += count > 0 ? static_cast<size_t>(count) : 0;
        content.resize(length);
        isRead = count >= 0 && length <= kMostModuleBytes;
        if (!isRead) fail(count < 0 ? strerror(errno) : "it is bigger than 4 MB");
    }
    close(descriptor);
    return isRead;
}

std::vector<std::string> ModuleFolder::Refresh() {
    std::vector<std::string> notes;
    for (auto& [below, file] : _files)
        file.seen = false;
    ReadModules(kModules, notes);
    for (const std::string& device : NamesIn(_folder + "/" + kDevices))
        if (!device.starts_with('.')) ReadModules(kDevices + device + "/", notes);
    std::erase_if(_files, [&notes](const auto& entry) {
        if (!entry.second.seen) notes.push_back(entry.first + " is gone");
        return !entry.second.seen;
    });
    return notes;
}

void ModuleFolder::ReadModules(const std::string& below, std::vector<std::string>& notes) {
    for (const std::string& name : NamesIn(_folder + "/" + below))
        if (!name.starts_with('.') && name.ends_with(kEnding)) Take(below + name, notes);
}

void ModuleFolder::Take(const std::string& below, std::vector<std::string>& notes) {
    const auto [entry, isNew] = _files.try_emplace(below);
    File& file = entry->second;
    file.seen = true;
    std::string content, problem;
    if (!ReadModuleFile(_folder + "/" + below, content)) problem = content;
    if (!isNew && content == file.content) return;
    file.content = content;
    Json::Value keys;
    if (problem.empty() && !ReadStrictly(content, keys, problem))
        problem = "it is no JSON: " + problem;
    else if (problem.empty() && !keys.isObject())
        problem = std::string("it is ") + KindOf(keys) + ", not an object of keys";
    if (!problem.empty()) {
        notes.push_back(below + " is left out: " + problem +
                        (file.keys.isNull() ? "" : "; its last good content stays"));
        return;
    }
    file.keys = keys;
    notes.push_back(below + " is taken, " + std::to_string(keys.size()) + (keys.size() == 1 ? " key" : " keys"));
    for (const std::string& key : keys.getMemberNames())
        if (!IsKept(keys[key]))
            notes.push_back(below + ": the client will drop \"" + key + "\", " + KindOf(keys[key]) +
                            "; it keeps strings and integers");
}

Json::Value ModuleFolder::ModulesBelow(const std::string& below) const {
    Json::Value modules(Json::objectValue);
    for (auto at = _files.lower_bound(below); at != _files.end() && at->first.starts_with(below); ++at) {
        const std::string name = at->first.substr(below.size(), at->first.size() - below.size() - kEnding.size());
        if (!at->second.keys.isNull()) modules[name] = at->second.keys;
    }
    return modules;
}

Json::Value ModuleFolder::For(const std::string& device) const {
    Json::Value modules = ModulesBelow(kModules);
    if (device.empty() || device.find('/') != std::string::npos) return modules;
    const Json::Value own = ModulesBelow(kDevices + device + "/");
    for (const std::string& module : own.getMemberNames()) {
        if (!modules.isMember(module)) modules[module] = Json::Value(Json::objectValue);
        for (const std::string& key : own[module].getMemberNames())
            modules[module][key] = own[module][key];
    }
    return modules;
}

Json::Value ModuleFolder::All() const {
    Json::Value all(Json::objectValue);
    all["modules"] = ModulesBelow(kModules);
    all["devices"] = Json::Value(Json::objectValue);
    for (const auto& [below, file] : _files) {
        if (!below.starts_with(kDevices)) continue;
        const size_t begin = sizeof kDevices - 1;
        const std::string device = below.substr(begin, below.rfind('/') - begin);
        if (!all["devices"].isMember(device)) all["devices"][device] = ModulesBelow(kDevices + device + "/");
    }
    return all;
}

}  // namespace OrvaneDevServer
