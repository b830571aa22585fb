#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

#include "Base/CoreModule.h"
#include "Base/Linux/ExecutablePath.h"
#include "Storage/Bundle/InfoDictionary.h"
#include "Storage/File/PathSource.h"

namespace Quern {
namespace {

constexpr mode_t kPrivate = 0700;

// The value of a variable that holds an absolute path, without the slashes at its end; else empty. A relative one would
// move with the working directory, and the XDG rules tell to ignore it.
std::string DirectoryFromEnvironment(const char* name) {
    const char* value = getenv(name);
    if (!value || *value != '/') return {};
    std::string path = value;
    while (path.size() > 1 && path.back() == '/')
        path.pop_back();
    return path;
}

std::string UserHome() {
    const std::string home = DirectoryFromEnvironment("HOME");
    if (!home.empty()) return home;
    passwd entry;
    passwd* found = nullptr;
    char texts[4096];
    if (getpwuid_r(getuid(), &entry, texts, sizeof texts, &found) == 0 && found && found->pw_dir && *found->pw_dir)
        return found->pw_dir;
    return "/";
}

// The bundle id of the manifest, if it can be a folder's name; else empty.
std::string BundleId() {
    const InfoValue* id = InfoDictionary::Current().Root().Find("CFBundleIdentifier");
    const std::string* text = id ? id->Text() : nullptr;
    if (!text || text->empty() || text->size() > NAME_MAX || text->find('/') != std::string::npos || (*text)[0] == '.')
        return {};
    return *text;
}

std::string ExecutableName() {
    const std::string whole = ExecutablePath();
    const std::string name = whole.substr(whole.rfind('/') + 1);
    return name.empty() ? kCoreModule : name;
}

std::string ContainerPath() {
    const std::string chosen = DirectoryFromEnvironment("ORVANE_HOME");
    if (!chosen.empty()) return chosen;
    std::string data = DirectoryFromEnvironment("XDG_DATA_HOME");
    if (data.empty()) data = UserHome() + "/.local/share";
    const std::string bundleId = BundleId();
    return data + "/" + (bundleId.empty() ? ExecutableName() : bundleId);
}

// Makes a directory and those above it, readable by their user alone. What exists stays as it is.
void MakeDirectory(const std::string& path) {
    if (mkdir(path.c_str(), kPrivate) == 0 || errno != ENOENT) return;
    const size_t slash = path.rfind('/');
    if (slash == std::string::npos || slash == 0) return;
    MakeDirectory(path.substr(0, slash));
    mkdir(path.c_str(), kPrivate);
}

std::string MakeFolder(std::string path) {
    MakeDirectory(path);
    return path;
}

class ContainerPaths final : public PathSource {
public:
    std::string Home() override { return MakeFolder(ContainerPath()); }
    std::string Documents() override { return MakeFolder(ContainerPath() + "/Documents"); }
    std::string Caches() override { return MakeFolder(ContainerPath() + "/Library/Caches"); }
};

}  // namespace

template <>
std::shared_ptr<PathSource> Seam<PathSource>::MakeBuiltIn() {
    return std::make_shared<ContainerPaths>();
}

}  // namespace Quern
