// A device's zip: what comes of it are plain files in the one folder, no more and no larger than allowed.
#include "DevServer/Unpack.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

namespace {

namespace fs = std::filesystem;

// What the zip's name stands for, which bears the zip's size alone.
std::string g_path;
const uint8_t* g_zip = nullptr;
size_t g_size = 0;

void Require(bool condition) {
    if (!condition) abort();
}

}  // namespace

// Opens what minizip reads, some hundred times an input with a seek before each: in memory that takes no system call.
extern "C" __attribute__((visibility("default"))) FILE* fopen64(const char* path, const char* mode) {
    return path == g_path ? fmemopen(const_cast<uint8_t*>(g_zip), g_size, mode) : fopen(path, mode);
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    // The folder stays: a new one for each input would be most of the work.
    static const int file = memfd_create("zip", 0);
    static const std::string top = std::string(getenv("ORVANE_HOME") ? getenv("ORVANE_HOME") : "/tmp") + "/unpack",
                             folder = top + "/folder";
    g_path = "/proc/self/fd/" + std::to_string(file);
    g_zip = data;
    g_size = size;
    Require(ftruncate(file, static_cast<off_t>(size)) == 0);

    const OrvaneDevServer::UnpackLimits limits{1 << 14, 1100, 8};
    Require(!OrvaneDevServer::Unpack(g_path, folder, limits).empty());
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
