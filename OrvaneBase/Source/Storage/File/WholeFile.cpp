#include "Storage/File/WholeFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdlib>

namespace Quern {
namespace {

bool WriteAll(int descriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t count = write(descriptor, content.data(), content.size());
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) return false;
        content.remove_prefix(static_cast<size_t>(count));
    }
    return true;
}

// So that the new name is on the disk too.
void SyncFolderOf(const std::string& path) {
    const size_t slash = path.rfind('/');
    const std::string folder = slash == std::string::npos ? "." : path.substr(0, slash + 1);
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) return;
    fsync(descriptor);
    close(descriptor);
}

// Gives the file its name, unless something bears that name already. What rename gives.
int RenameToNew(const char* from, const char* to) {
    if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return 0;
    if (errno != EINVAL && errno != ENOSYS) return -1;
    return link(from, to) == 0 ? unlink(from) : -1;  // a file system that knows no such rename
}

bool WriteAside(const std::string& path, std::string_view content, mode_t mode,
                int (*giveName)(const char*, const char*)) {
    std::string aside = path + ".XXXXXX";
    const int descriptor = mkostemp(aside.data(), O_CLOEXEC);
    if (descriptor < 0) return false;
    bool done = fchmod(descriptor, mode) == 0 && WriteAll(descriptor, content) && fsync(descriptor) == 0;
    int error = errno;
    if (close(descriptor) != 0 && done) {
        done = false;
        error = errno;
    }
    if (done && giveName(aside.c_str(), path.c_str()) == 0) return true;
    if (done) error = errno;
    unlink(aside.c_str());
    errno = error;
    return false;
}

// The file that is to take the place of another, locked against other writers. -1 if it cannot be made.
int OpenNext(const std::string& next) {
    for (;;) {
        const int descriptor = open(next.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0666);
        if (descriptor < 0) return -1;
        while (flock(descriptor, LOCK_EX) != 0 && errno == EINTR) {
        }
        // Who held the lock before may have given the file its new name.
        struct stat opened {};
        struct stat named {};
        if (fstat(descriptor, &opened) == 0 && stat(next.c_str(), &named) == 0 && opened.st_ino == named.st_ino &&
            opened.st_dev == named.st_dev)
            return descriptor;
        close(descriptor);
    }
}

bool OverwriteInPlace(const std::string& path, std::string_view content) {
    const int descriptor = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
    if (descriptor < 0) return false;
    const bool isWhole = WriteAll(descriptor, content);
    return close(descriptor) == 0 && isWhole;
}

}  // namespace

std::string ReadToEnd(FILE* file, bool* error) {
    std::string bytes;
    char chunk[8192];
    for (size_t count; (count = fread(chunk, 1, sizeof chunk, file)) > 0;)
        bytes.append(chunk, count);
    if (error) *error = ferror(file) != 0;
    return bytes;
}

FileReplacement::FileReplacement(const char* path, std::string_view content) : _path(path), _content(content) {
    if (!_path.empty()) Prepare();
}

void FileReplacement::Prepare() {
    char real[PATH_MAX];
    if (realpath(_path.c_str(), real)) _path = real;
    struct stat old {};
    const bool exists = stat(_path.c_str(), &old) == 0;
    if (exists && (!S_ISREG(old.st_mode) || old.st_uid != geteuid())) return;
    _next = _path + ".new";
    _descriptor = OpenNext(_next);
    if (_descriptor < 0) return;
    _isWhole = ftruncate(_descriptor, 0) == 0 && WriteAll(_descriptor, _content) &&
               (!exists || fchmod(_descriptor, old.st_mode & 07777) == 0);
}

bool FileReplacement::PutInPlace() {
    if (_descriptor < 0) return OverwriteInPlace(_path, _content);
    const bool done = _isWhole && rename(_next.c_str(), _path.c_str()) == 0;
    if (done) _next.clear();
    return done;
}

FileReplacement::~FileReplacement() {
    if (_descriptor < 0) return;
    if (!_next.empty()) unlink(_next.c_str());
    flock(_descriptor, LOCK_UN);  // a process that was forked meanwhile has the descriptor too
    close(_descriptor);
}

bool ReplaceFile(const std::string& path, std::string_view content, mode_t mode) {
    return WriteAside(path, content, mode, rename);
}

bool CreateFile(const std::string& path, std::string_view content, mode_t mode) {
    if (!WriteAside(path, content, mode, RenameToNew)) return false;
    SyncFolderOf(path);
    return true;
}

}  // namespace Quern
