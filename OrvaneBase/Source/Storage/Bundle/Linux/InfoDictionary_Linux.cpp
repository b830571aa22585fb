#include "Storage/Bundle/InfoDictionary.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
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

// False if it cannot be opened and read, and for anything but a file: a pipe would be waited for.
bool ReadBytes(const std::string& path, std::string& bytes) {
    const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) return false;
    struct stat state {};
    FILE* const file = fstat(descriptor, &state) == 0 && S_ISREG(state.st_mode) ? fdopen(descriptor, "rb") : nullptr;
    if (!file) {
        close(descriptor);
        return false;
    }
    bytes.resize(kLargestPropertyList + 1);  // one more than is taken, so that too much shows
    bytes.resize(fread(bytes.data(), 1, bytes.size(), file));
    const bool isRead = ferror(file) == 0;
    fclose(file);
    return isRead;
}

InfoValue ReadManifest() {
    bool named = false;
    const std::string path = TakePath(named);
    InfoValue root{InfoValue::Dictionary()};
    std::string bytes;
    const char* why = nullptr;
    if (!ReadBytes(path, bytes)) {
        if (named) PlatformLog("The manifest %s cannot be read", path.c_str());
    } else if (!ParsePropertyList(bytes, root, why)) {
        PlatformLog("The manifest %s is not used: %s", path.c_str(), why);
    }
    return root;
}

class ManifestFile final : public InfoDictionary {
public:
    // Two threads may both read the file, and the second gives way: no lock is held over that, which writes to the
    // console.
    const InfoValue& Root() override {
        const InfoValue* root = _root.load(std::memory_order_acquire);
        if (root) return *root;
        const auto* const read = new InfoValue(ReadManifest());  // never destroyed: threads outlive static objects
        if (_root.compare_exchange_strong(root, read, std::memory_order_acq_rel, std::memory_order_acquire))
            return *read;
        delete read;
        return *root;
    }

private:
    std::atomic<const InfoValue*> _root{nullptr};
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
