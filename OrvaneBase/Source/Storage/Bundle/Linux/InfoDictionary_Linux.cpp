#include "Storage/Bundle/InfoDictionary.h"

#include <cstdlib>
#include <fstream>
#include <mutex>

#include "Base/ConsoleSink.h"
#include "Base/Linux/ExecutablePath.h"
#include "Storage/Bundle/Linux/PropertyList.h"

namespace Quern {
namespace {

// Which file is read: the one that the host set, else the environment's, else the one beside the executable.
struct ManifestPath {
    std::mutex lock;  // guards both
    std::string chosen;
    bool taken = false;
};

ManifestPath& ThePath() {
    static ManifestPath* path = new ManifestPath;  // never destroyed: read from threads that outlive static objects
    return *path;
}

std::string BesideExecutable() {
    const std::string executable = ExecutablePath();
    return executable.substr(0, executable.rfind('/') + 1) + "Info.plist";
}

// `named` tells whether someone asked for this very file: then it must be there.
std::string TakePath(bool& named) {
    ManifestPath& path = ThePath();
    const std::lock_guard<std::mutex> guard(path.lock);
    path.taken = true;
    const char* environment = getenv("ORVANE_INFO_PLIST");
    if (path.chosen.empty() && environment) path.chosen = environment;
    named = !path.chosen.empty();
    return named ? path.chosen : BesideExecutable();
}

InfoValue ReadManifest() {
    bool named = false;
    const std::string path = TakePath(named);
    InfoValue root{InfoValue::Dictionary()};
    std::ifstream in(path, std::ios::binary);
    std::string bytes(kLargestPropertyList + 1, '\0');  // one more than is taken, so that too much shows
    in.read(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    bytes.resize(static_cast<size_t>(in.gcount()));
    const char* why = nullptr;
    if (!in.is_open() || in.bad()) {
        if (named) PlatformLog("The manifest %s cannot be read", path.c_str());
    } else if (!ParsePropertyList(bytes, root, why)) {
        PlatformLog("The manifest %s is not used: %s", path.c_str(), why);
    }
    return root;
}

class ManifestFile final : public InfoDictionary {
public:
    const InfoValue& Root() override {
        static const InfoValue* root = new InfoValue(ReadManifest());  // never destroyed, as the path
        return *root;
    }
};

}  // namespace

bool InfoDictionary::SetPath(const char* path) {
    ManifestPath& current = ThePath();
    const std::lock_guard<std::mutex> guard(current.lock);
    if (current.taken) return false;
    current.chosen = path ? path : "";
    return true;
}

template <>
std::shared_ptr<InfoDictionary> Seam<InfoDictionary>::MakeBuiltIn() {
    return std::make_shared<ManifestFile>();
}

}  // namespace Quern
