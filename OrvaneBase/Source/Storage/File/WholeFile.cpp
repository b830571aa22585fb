#include "Storage/File/WholeFile.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>

namespace Quern {
namespace {

// So that the new name is on the disk too.
void SyncFolderOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return;
    fsync(descriptor);
    close(descriptor);
}

// Gives the file its name, unless something bears that name already. Returns what rename returns.
int RenameToNew(const char* from, const char* to) {
    if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return 0;
    if (errno != EINVAL && errno != ENOSYS) return -1;
    return link(from, to) == 0 ? unlink(from) : -1;  // a file system that knows no such rename
}

}  // namespace

bool WriteAll(int descriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t count = write(descriptor, content.data(), content.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return false;
        content.remove_prefix(static_cast<size_t>(count));
    }
    return true;
}

std::string ReadToEnd(FILE* file, bool* error, size_t most) {
    std::string bytes;
    char chunk[8192];
    for (size_t count; bytes.size() <= most && (count = fread(chunk, 1, sizeof chunk, file)) > 0;)
        bytes.append(chunk, count);
    if (error) *error = ferror(file) != 0 || bytes.size() > most;
    return bytes;
}

bool CreateFile(const std::string& path, std::string_view content, mode_t mode) {
    std::string aside = path + ".XXXXXX";
    const int descriptor = mkostemp(aside.data(), O_CLOEXEC);
    if (descriptor < 0) return false;
    bool done = fchmod(descriptor, mode) == 0 && WriteAll(descriptor, content) && fsync(descriptor) == 0;
    int error = errno;
    if (close(descriptor) != 0 && done) {
        done = false;
        error = errno;
    }
    if (done && RenameToNew(aside.c_str(), path.c_str()) == 0) {
        SyncFolderOf(path);
        return true;
    }
    if (done) error = errno;
    unlink(aside.c_str());
    errno = error;
    return false;
}

}  // namespace Quern
