// A device's zip: what comes of it are plain files in the one folder, no more and no larger than allowed.
#include "DevServer/Unpack.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

namespace fs = std::filesystem;

void Require(bool condition) {
    if (!condition) abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // The zip is in memory, and its folder stays: a new file for each input would be most of the work.
    static const int zip = memfd_create("zip", 0);
    static const std::string path = "/proc/self/fd/" + std::to_string(zip);
    static const std::string top = std::string(getenv("ORVANE_HOME") ? getenv("ORVANE_HOME") : "/tmp") + "/unpack",
                             folder = top + "/folder";
    Require(ftruncate(zip, 0) == 0 && pwrite(zip, data, size, 0) == static_cast<ssize_t>(size));

    const OrvaneDevServer::UnpackLimits limits{1 << 14, 1100, 8};
    Require(!OrvaneDevServer::Unpack(path, folder, limits).empty());
    uint64_t bytes = 0;
    size_t files = 0;
    for (const fs::directory_entry& entry : fs::directory_iterator(folder)) {
        Require(entry.symlink_status().type() == fs::file_type::regular);
        bytes += entry.file_size();
        ++files;
        fs::remove(entry);
    }
    Require(bytes <= limits.mostBytes && bytes <= size * limits.mostRatio && files <= limits.mostEntries);
    for (const fs::directory_entry& entry : fs::directory_iterator(top))
        Require(entry.path() == folder);
    return 0;
}
