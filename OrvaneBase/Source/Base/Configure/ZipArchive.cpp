#include "Base/Configure/ZipArchive.h"

#include <fcntl.h>
#include <minizip/zip.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <ctime>
#include <utility>
#include <vector>

#include "Storage/File/Sandbox.h"

namespace Quern {
namespace {

// A regular file that has no second name becomes empty, and its owner's alone.
bool MakePrivate(int descriptor) {
    struct stat status;
    if (fstat(descriptor, &status) != 0) return false;
    if (!S_ISREG(status.st_mode)) return true;
    return status.st_nlink == 1 && fchmod(descriptor, 0600) == 0 && ftruncate(descriptor, 0) == 0;
}

// minizip would open with fopen, which follows links and lets everybody read.
void* OpenPrivately(void*, const void* path, int) {
    const int descriptor = open(static_cast<const char*>(path), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (descriptor < 0) return nullptr;
    FILE* const stream = MakePrivate(descriptor) ? fdopen(descriptor, "wb+") : nullptr;
    if (!stream) close(descriptor);
    return stream;
}

bool BeginEntry(zipFile zip, const std::string& name, const struct stat& status) {
    zip_fileinfo info{};
    tm parts{};
    if (localtime_r(&status.st_mtime, &parts)) {
        info.tmz_date = {static_cast<uInt>(parts.tm_sec),  static_cast<uInt>(parts.tm_min),
                         static_cast<uInt>(parts.tm_hour), static_cast<uInt>(parts.tm_mday),
                         static_cast<uInt>(parts.tm_mon),  static_cast<uInt>(parts.tm_year + 1900)};
    }
    const int isBig = status.st_size >= INT64_C(0xFFFFFFFF);  // needs another kind of entry
    return zipOpenNewFileInZip64(zip, name.c_str(), &info, nullptr, 0, nullptr, 0, nullptr, Z_DEFLATED,
                                 Z_DEFAULT_COMPRESSION, isBig) == ZIP_OK;
}

bool CopyToEntry(zipFile zip, int descriptor, long long length) {
    std::vector<char> piece(64 * 1024);
    while (length > 0) {
        const ssize_t count = read(descriptor, piece.data(), std::min(piece.size(), static_cast<size_t>(length)));
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return count == 0;  // it has become shorter
        if (zipWriteInFileInZip(zip, piece.data(), static_cast<unsigned>(count)) != ZIP_OK) return false;
        length -= count;
    }
    return true;
}

}  // namespace

bool ZipArchive::CreateZipFile(const std::string& path) {
    CloseZipFile();
    zlib_filefunc64_def functions;
    fill_fopen64_filefunc(&functions);
    functions.zopen64_file = OpenPrivately;
    _zip = zipOpen2_64(path.c_str(), APPEND_STATUS_CREATE, nullptr, &functions);
    return _zip != nullptr;
}

// The file is opened before its entry, so that one that cannot be opened leaves none.
bool ZipArchive::AddFileToZip(const std::string& path, const std::string& nameInZip) {
    if (!_zip) return false;
    const int descriptor = Sandbox::Current().OpenToRead(path);
    if (descriptor < 0) return false;
    struct stat status;
    bool isAdded = fstat(descriptor, &status) == 0 && Charge(status.st_size) && BeginEntry(_zip, nameInZip, status);
    if (isAdded) {
        isAdded = CopyToEntry(_zip, descriptor, status.st_size);
        isAdded = zipCloseFileInZip(_zip) == ZIP_OK && isAdded;
    }
    close(descriptor);
    return isAdded;
}

bool ZipArchive::Charge(long long bytes) {
    if (bytes > _bytesLeft) {
        _hasLeftOut = true;
        return false;
    }
    _bytesLeft -= bytes;
    return true;
}

bool ZipArchive::CloseZipFile() {
    return _zip && zipClose(std::exchange(_zip, nullptr), nullptr) == ZIP_OK;
}

}  // namespace Quern
