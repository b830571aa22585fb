#include <fcntl.h>
#include <strings.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

#include "Storage/File/FileReplacement.h"
#include "Storage/File/Linux/SecretFiles.h"
#include "Storage/File/PathSource.h"
#include "Storage/File/Sandbox.h"

namespace Quern {
namespace {

// Empty if there is nothing.
std::string WithoutLinks(const std::string& path) {
    if (path.find('\0') != std::string::npos) return {};
    const std::unique_ptr<char, void (*)(void*)> real(realpath(path.c_str(), nullptr), free);
    return real ? real.get() : std::string();
}

constexpr const char* kSecrets[] = {kKeychainFileName, kDefaultsFileName};

bool BearsNameOf(std::string_view component, std::string_view secret) {
    if (component.starts_with('.')) component.remove_prefix(1);
    return component.size() >= secret.size() && strncasecmp(component.data(), secret.data(), secret.size()) == 0;
}

// In any folder, since a copy holds the same, and below a folder of that name: the locks and new files of a secret, and
// what was set aside, bear its name with a "." in front or something behind it. On some file systems the case of
// letters makes no other file.
bool BearsNameOfSecret(const std::string& pathInContainer) {
    for (const std::filesystem::path& component : std::filesystem::path(pathInContainer))
        for (const char* const secret : kSecrets)
            if (BearsNameOf(component.native(), secret)) return true;
    return false;
}

// The secrets as they are at one moment.
class Secrets {
public:
    // A secret that was set aside may be a link as well.
    explicit Secrets(const std::string& home) {
        for (const char* const name : kSecrets)
            for (const char* const suffix : {"", kUnusableSuffix})
                Add(home + "/Library/" + name + suffix);
    }

    bool Have(const std::string& path, const struct stat& status) const {
        for (const Secret& secret : _secrets)
            if (IsSame(secret.status, status) || LiesBeside(secret.path, path)) return true;
        return false;
    }

private:
    struct Secret {
        std::string path;  // of the file that it is, where its name is a link
        struct stat status;
    };

    void Add(const std::string& name) {
        Secret secret{WithoutLinks(name), {}};
        if (!secret.path.empty() && stat(secret.path.c_str(), &secret.status) == 0)
            _secrets.push_back(std::move(secret));
    }
    // The very file, under whatever name.
    static bool IsSame(const struct stat& one, const struct stat& other) {
        return one.st_dev == other.st_dev && one.st_ino == other.st_ino;
    }
    // At its place, which may hold a newer one by now, or what its writer leaves there.
    static bool LiesBeside(const std::string& secret, const std::string& path) {
        const size_t name = secret.rfind('/') + 1;
        return path == secret || path == secret + kUnusableSuffix ||
               path.starts_with(secret.substr(0, name) + "." + secret.substr(name) +
                                std::string(FileReplacement::kSuffix));
    }

    std::vector<Secret> _secrets;
};

// The part of the path below the container; false if it lies elsewhere.
bool CutHome(const std::string& home, const std::string& path, std::string& below) {
    const std::string folder = home == "/" ? home : home + "/";
    if (home.empty() || (path != home && !path.starts_with(folder))) return false;
    below = path.substr(std::min(folder.size(), path.size()));
    return true;
}

// Walks from the folder down, without following a link and never up. What a device or a pipe is opened for does not
// wait. -1 if that leads nowhere.
int WalkDown(const std::string& home, std::string_view path) {
    constexpr int kFolder = O_PATH | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
    constexpr int kFile = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC;
    int reached = open(home.c_str(), kFolder);
    for (bool isLast = false; reached >= 0 && !isLast;) {
        const std::string name(path.substr(0, path.find('/')));
        isLast = name.size() == path.size();
        path.remove_prefix(std::min(name.size() + 1, path.size()));
        const int next = name == ".." ? -1 : openat(reached, name.c_str(), isLast ? kFile : kFolder);
        close(reached);
        reached = next;
    }
    return reached;
}

class Container final : public Sandbox {
public:
    std::string Resolve(const std::string& path) override {
        const std::string home = WithoutLinks(PathSource::Current().Home());
        std::string real = WithoutLinks(path), below;
        struct stat status;
        if (real.empty() || !CutHome(home, real, below) || BearsNameOfSecret(below) ||
            stat(real.c_str(), &status) != 0 || Secrets(home).Have(real, status))
            return {};
        return real;
    }

    // A secret may be replaced meanwhile, and the file be the old one or the new.
    int OpenToRead(const std::string& path) override {
        const std::string home = WithoutLinks(PathSource::Current().Home());
        std::string below;
        if (path.find('\0') != std::string::npos || !CutHome(home, path, below) || BearsNameOfSecret(below)) return -1;
        const Secrets before(home);
        const int descriptor = WalkDown(home, below);
        struct stat status;
        if (descriptor < 0 || (fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
                               !before.Have(path, status) && !Secrets(home).Have(path, status)))
            return descriptor;
        close(descriptor);
        return -1;
    }
};

}  // namespace

template <>
std::shared_ptr<Sandbox> Seam<Sandbox>::MakeBuiltIn() {
    return std::make_shared<Container>();
}

}  // namespace Quern
