#include <strings.h>
#include <sys/stat.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string_view>

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

// The very file under whatever name, and, where it is a link, what its writer leaves beside the file it leads to.
bool IsOrLiesBeside(const std::string& secret, const std::string& path, const struct stat& status) {
    struct stat state;
    const std::string target = WithoutLinks(secret);
    if (target.empty() || stat(target.c_str(), &state) != 0) return false;
    if (state.st_dev == status.st_dev && state.st_ino == status.st_ino) return true;
    const size_t name = target.rfind('/') + 1;
    return path == target + kUnusableSuffix ||
           path.starts_with(target.substr(0, name) + "." + target.substr(name) + std::string(FileReplacement::kSuffix));
}

// A secret that was set aside may be a link as well.
bool IsSecret(const std::string& home, const std::string& path) {
    if (BearsNameOfSecret(path.substr(home.size()))) return true;
    struct stat status;
    if (stat(path.c_str(), &status) != 0) return true;  // gone meanwhile
    for (const char* const name : kSecrets) {
        const std::string secret = home + "/Library/" + name;
        if (IsOrLiesBeside(secret, path, status) || IsOrLiesBeside(secret + kUnusableSuffix, path, status)) return true;
    }
    return false;
}

class Container final : public Sandbox {
public:
    std::string Resolve(const std::string& path) override {
        const std::string home = WithoutLinks(PathSource::Current().Home());
        std::string real = WithoutLinks(path);
        if (home.empty() || real.empty()) return {};
        const bool isInside = real == home || real.starts_with(home == "/" ? home : home + "/");
        return isInside && !IsSecret(home, real) ? real : std::string();
    }
};

}  // namespace

template <>
std::shared_ptr<Sandbox> Seam<Sandbox>::MakeBuiltIn() {
    return std::make_shared<Container>();
}

}  // namespace Quern
