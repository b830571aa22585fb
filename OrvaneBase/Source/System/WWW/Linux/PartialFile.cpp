#include "System/WWW/Linux/PartialFile.h"

#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

namespace Quern {
namespace {

constexpr mode_t kMode = 0666;  // less the process's mask
constexpr size_t kMostGathered = 64 * 1024;

std::string FolderOf(const std::string& place) {
    if (place.empty()) {
        std::error_code error;
        const std::string folder = std::filesystem::temp_directory_path(error).string();
        return error ? "/tmp" : folder;
    }
    const size_t slash = place.rfind('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : place.substr(0, slash);
}

std::string OwnName(int descriptor) {
    return "/proc/self/fd/" + std::to_string(descriptor);
}

}  // namespace

PartialFile::~PartialFile() {
    if (_descriptor >= 0) close(_descriptor);
    if (!_name.empty()) unlink(_name.c_str());
}

int PartialFile::Open(const std::string& place) {
    const std::string folder = FolderOf(place);
    _descriptor = open(folder.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, kMode);
    if (_descriptor >= 0 && access(OwnName(_descriptor).c_str(), F_OK) == 0) return 0;
    if (_descriptor >= 0) {  // without /proc it could not get its name
        close(_descriptor);
        return OpenNamed(folder);
    }
    // An old kernel takes the flag for that of a folder.
    return errno == EOPNOTSUPP || errno == EISDIR || errno == EINVAL ? OpenNamed(folder) : errno;
}

int PartialFile::OpenNamed(const std::string& folder) {
    static std::atomic<unsigned> next{0};
    constexpr int kTries = 100;  // names that another process of this number has left behind
    for (int i = 0; i < kTries; ++i) {
        const std::string name =
            folder + "/.orvane-" + std::to_string(getpid()) + "-" + std::to_string(next.fetch_add(1)) + ".part";
        _descriptor = open(name.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, kMode);
        if (_descriptor >= 0) {
            _name = name;
            return 0;
        }
        if (errno != EEXIST) break;
    }
    return errno;
}

int PartialFile::Append(const char* data, size_t length) {
    if (_gathered + length > kMostGathered)
        if (const int error = Flush()) return error;
    if (length >= kMostGathered) return Write(data, length);
    if (!_pieces) _pieces = std::make_unique<char[]>(kMostGathered);
    memcpy(_pieces.get() + _gathered, data, length);
    _gathered += length;
    return 0;
}

int PartialFile::Flush() {
    return Write(_pieces.get(), std::exchange(_gathered, 0u));
}

int PartialFile::Write(const char* data, size_t length) {
    long long offset = _length;
    while (length > 0) {
        const ssize_t written = pwrite(_descriptor, data, length, offset);
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return written < 0 ? errno : EIO;
        data += written;
        offset += written;
        length -= static_cast<size_t>(written);
    }
    _length = offset;
    return 0;
}

int PartialFile::Clear() {
    _length = 0;
    _gathered = 0;
    return ftruncate(_descriptor, 0) == 0 ? 0 : errno;
}

int PartialFile::PlaceAt(const std::string& path) {
    if (!_name.empty()) {
        if (rename(_name.c_str(), path.c_str()) != 0) return errno;
        _name.clear();
        return 0;
    }
    // The first way needs a right that few processes have, the second the process's folder in /proc.
    if (linkat(_descriptor, "", AT_FDCWD, path.c_str(), AT_EMPTY_PATH) == 0) return 0;
    return linkat(AT_FDCWD, OwnName(_descriptor).c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW) == 0 ? 0 : errno;
}

}  // namespace Quern
