#include "Support/TestContainer.h"

#include <stdlib.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "Support/TemporaryFolder.h"

namespace OrvaneTest {
namespace fs = std::filesystem;
namespace {

struct Container {
    Container() : cache(folder / "Library/Caches") {
        setenv("ORVANE_HOME", folder.Path().c_str(), 1);
        fs::create_directories(cache);
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

std::string ReadFile(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream content;
    content << in.rdbuf();
    return content.str();
}

void WriteFile(const std::string& path, const std::string& content) {
    fs::create_directories(fs::path(path).parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

std::vector<std::string> FilesIn(const std::string& folder) {
    std::vector<std::string> names;
    std::error_code error;
    for (const auto& entry : fs::directory_iterator(folder, error))
        names.push_back(entry.path().filename().string());
    std::sort(names.begin(), names.end());
    return names;
}

std::string ReadLogFiles(const std::string& module) {
    std::string content;
    for (const std::string& name : FilesIn(LogFolder(module)))
        content += ReadFile(LogFolder(module) + "/" + name);
    return content;
}

}  // namespace OrvaneTest
