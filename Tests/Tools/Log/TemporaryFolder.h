// A folder for one test, gone after it.
#ifndef ORVANE_TESTS_TOOLS_LOG_TEMPORARY_FOLDER_H
#define ORVANE_TESTS_TOOLS_LOG_TEMPORARY_FOLDER_H

#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <string>

namespace OrvaneLog {

class TemporaryFolder {
public:
    TemporaryFolder() {
        std::string pattern = (std::filesystem::temp_directory_path() / "orvane-log-test-XXXXXX").string();
        _path = mkdtemp(pattern.data());
    }
    ~TemporaryFolder() { std::filesystem::remove_all(_path); }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& Path() const { return _path; }
    std::string operator/(const std::string& name) const { return _path + "/" + name; }

    // Writes a file, and the folders that lead to it. Gives its path.
    std::string Write(const std::string& name, const std::string& content, bool append = false) const {
        const std::filesystem::path path = _path + "/" + name;
        std::filesystem::create_directories(path.parent_path());
        std::ofstream(path, std::ios::binary | (append ? std::ios::app : std::ios::trunc)) << content;
        return path.string();
    }

private:
    std::string _path;
};

}  // namespace OrvaneLog

#endif
