#include <cstdlib>
#include <memory>

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

// The keychain and the user defaults lie in the container's folder Library itself. Their locks and new files, and what
// was set aside, bear the same name with a "." in front or something behind it.
bool IsSecret(const std::string& library, const std::string& path) {
    for (const char* const name : {"OrvaneCore.keychain", "UserDefaults.json"})
        if (path.starts_with(library + "/" + name) || path.starts_with(library + "/." + name) ||
            path == WithoutLinks(library + "/" + name))
            return true;
    return false;
}

class Container final : public Sandbox {
public:
    std::string Resolve(const std::string& path) override {
        const std::string home = WithoutLinks(PathSource::Current().Home());
        std::string real = WithoutLinks(path);
        if (home.empty() || real.empty()) return {};
        const bool isInside = real == home || real.starts_with(home == "/" ? home : home + "/");
        return isInside && !IsSecret(WithoutLinks(home + "/Library"), real) ? real : std::string();
    }
};

}  // namespace

template <>
std::shared_ptr<Sandbox> Seam<Sandbox>::MakeBuiltIn() {
    return std::make_shared<Container>();
}

}  // namespace Quern
