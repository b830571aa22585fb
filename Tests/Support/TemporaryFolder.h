// A folder of a test's own, gone with the object.
#ifndef ORVANE_TESTS_SUPPORT_TEMPORARY_FOLDER_H
#define ORVANE_TESTS_SUPPORT_TEMPORARY_FOLDER_H

#include <stdlib.h>
#include <unistd.h>

#include <stdexcept>

#include "Support/Files.h"

namespace OrvaneTest {

class TemporaryFolder {
public:
    TemporaryFolder() : _owner(getpid()) {
        _path = (std::filesystem::temp_directory_path() / "orvane-test-XXXXXX").string();
        if (!mkdtemp(_path.data())) throw std::runtime_error("no temporary folder");
    }
    ~TemporaryFolder() {
        std::error_code ignored;
        if (getpid() == _owner) std::filesystem::remove_all(_path, ignored);  // a forked child leaves it where it is
    }
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    const std::string& Path() const { return _path; }
    std::string operator/(const std::string& name) const { return _path + "/" + name; }

    // Writes a file, and the folders that lead to it. Gives its path.
    std::string Write(const std::string& name, const std::string& content, bool append = false) const {
        WriteFile(*this / name, content, append);
        return *this / name;
    }

private:
    const pid_t _owner;
    std::string _path;
};

}  // namespace OrvaneTest

#endif
