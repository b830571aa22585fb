#include "Storage/Log/MappedFile.h"

#include <errno.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include "Base/XLog.h"

namespace Quern {
namespace {

struct CloseFile {
    void operator()(FILE* file) const { fclose(file); }
};
using File = std::unique_ptr<FILE, CloseFile>;

long SizeOf(FILE* file) {
    return fseek(file, 0, SEEK_END) == 0 ? ftell(file) : -1;
}

// Brings a file that is shorter to the wanted size, as zeros all through.
bool EnsureSize(const char* path, size_t size) {
    const long wanted = static_cast<long>(size);
    File file(fopen(path, "rb+"));
    if (!file) return false;
    if (SizeOf(file.get()) >= wanted) return true;

    const std::vector<char> zeros(size, '\0');
    if (fseek(file.get(), 0, SEEK_SET) != 0) return false;
    if (fwrite(zeros.data(), 1, size, file.get()) != size || fflush(file.get()) != 0) return false;
    ORVANE_CONSOLE(kLogError, "copy data 2 mmap file success");
    file.reset(fopen(path, "rb"));
    return file && SizeOf(file.get()) >= wanted;
}

}  // namespace

int open_mmap_file(const char* path, void** memory, size_t size) {
    if (!path || !*path || !memory) return 0;
    const int descriptor = open(path, O_RDWR | O_CREAT | O_CLOEXEC, 0660);
    if (descriptor < 0) {
        ORVANE_CONSOLE(kLogError, "open(%s) fail: %s", path, strerror(errno));
        return 0;
    }
    if (!EnsureSize(path, size)) {
        ORVANE_CONSOLE(kLogError, "fill %s with %zu bytes fail: %s", path, size, strerror(errno));
        close(descriptor);
        return 0;
    }
    void* mapped = mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED, descriptor, 0);
    const int error = errno;
    close(descriptor);
    if (mapped == MAP_FAILED) {
        ORVANE_CONSOLE(kLogError, "open mmap fail , reason : %s", strerror(error));
        return 0;
    }
    if (access(path, F_OK) != 0) {
        munmap(mapped, size);
        return 0;
    }
    *memory = mapped;
    return 1;
}

}  // namespace Quern
