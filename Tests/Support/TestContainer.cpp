#include "Support/TestContainer.h"

#include <cstdlib>

#include "Support/TemporaryFolder.h"

namespace OrvaneTest {
namespace {

struct Container {
    Container() : cache(folder / "Library/Caches") {
        setenv("ORVANE_HOME", folder.Path().c_str(), 1);
        std::filesystem::create_directories(cache);
    }
    TemporaryFolder folder;
    std::string cache;
};

}  // namespace

const std::string& CacheFolder() {
    static Container container;
    return container.cache;
}

std::string LogFolder(const std::string& module) {
    return CacheFolder() + "/OrvaneSDKLog/" + module;
}

std::string ReadLogFiles(const std::string& module) {
    std::string content;
    for (const std::string& name : FilesIn(LogFolder(module)))
        content += ReadFile(LogFolder(module) + "/" + name);
    return content;
}

}  // namespace OrvaneTest
