#include "DevServer/Console/ModuleEditor.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <utility>

#include "DevServer/Console/UploadShelf.h"
#include "DevServer/JsonText.h"
#include "DevServer/ModuleFolder.h"
#include "DevServer/Sha1Text.h"
#include "Storage/File/FileReplacement.h"

namespace OrvaneDevServer {
namespace fs = std::filesystem;
namespace {

constexpr std::string_view kEnding = ".json";

std::vector<std::string> NamesIn(const fs::path& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (fs::directory_iterator at(folder, error), end; !error && at != end; at.increment(error))
        if (IsPlainFileName(at->path().filename().string())) names.push_back(at->path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

void AddModules(const fs::path& folder, const std::string& device, std::vector<ModuleName>& names) {
    for (const std::string& name : NamesIn(folder))
        if (name.ends_with(kEnding)) names.push_back({device, name.substr(0, name.size() - kEnding.size())});
}

}  // namespace

std::vector<ModuleName> ModuleEditor::List() const {
    std::vector<ModuleName> names;
    AddModules(_folder + "/modules", "", names);
    for (const std::string& device : NamesIn(_folder + "/devices"))
        AddModules(_folder + "/devices/" + device, device, names);
    return names;
}

// Empty for a name that names no file.
std::string ModuleEditor::PathOf(const ModuleName& name) const {
    if (!IsPlainFileName(name.module + std::string(kEnding)) || name.module.empty()) return "";
    if (!name.device.empty() && !IsPlainFileName(name.device)) return "";
    return _folder + (name.device.empty() ? "/modules/" : "/devices/" + name.device + "/") + name.module +
           std::string(kEnding);
}

bool ModuleEditor::Read(const ModuleName& name, std::string& text, std::string& digest, std::string& why) const {
    const std::string path = PathOf(name);
    std::error_code error;
    text.clear();
    digest.clear();
    if (path.empty()) {
        why = "this is no name of a file";
        return false;
    }
    if (!fs::exists(path, error) && !error) return true;
    if (!ReadModuleFile(path, text)) {
        why = std::exchange(text, "");
        return false;
    }
    digest = Sha1Text(text);
    return true;
}

ModuleEditor::Result ModuleEditor::Check(const ModuleName& name, const std::string& digest, std::string& why) const {
    std::string text, present;
    if (PathOf(name).empty()) {
        why = "a module and a device are named by plain file names";
        return Result::kNoName;
    }
    if (!Read(name, text, present, why)) return Result::kFailed;
    if (present == digest) return Result::kDone;
    why = present.empty() ? "the file is gone" : "the file has been changed meanwhile";
    return Result::kChanged;
}

ModuleEditor::Result ModuleEditor::Write(const ModuleName& name, const std::string& text, const std::string& digest,
                                         std::string& why) {
    const std::lock_guard<std::mutex> guard(_mutex);
    if (const Result checked = Check(name, digest, why); checked != Result::kDone) return checked;
    Json::Value keys;
    if (!ReadStrictly(text, keys, why)) return Result::kRefused;
    if (!keys.isObject()) {
        why = std::string("it is ") + KindOf(keys) + ", not an object of keys";
        return Result::kRefused;
    }
    const fs::path path = PathOf(name);
    std::error_code error;
    fs::create_directories(path.parent_path(), error);
    Quern::FileReplacement file(path.string());
    if (file.Prepare(text) && file.PutInPlace()) return Result::kDone;
    why = path.filename().string() + ": " + strerror(errno);
    return Result::kFailed;
}

ModuleEditor::Result ModuleEditor::Remove(const ModuleName& name, const std::string& digest, std::string& why) {
    const std::lock_guard<std::mutex> guard(_mutex);
    if (const Result checked = Check(name, digest, why); checked != Result::kDone) return checked;
    std::error_code error;
    if (fs::remove(PathOf(name), error)) return Result::kDone;
    why = error ? error.message() : "the file is gone";
    return error ? Result::kFailed : Result::kChanged;
}

}  // namespace OrvaneDevServer
