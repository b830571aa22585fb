#include "Storage/File/FileReplacement.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/random.h>
#include <sys/resource.h>
#include <unistd.h>

#include <cerrno>
#include <climits>
#include <cstdio>
#include <cstdlib>
#include <thread>
#include <vector>

#include "Storage/File/WholeFile.h"

namespace Quern {
namespace {

constexpr mode_t kOwnerAlone = 0600;
constexpr mode_t kModeBits = 07777;
constexpr mode_t kOthers = 0077;
constexpr int kLooks = 16;  // at a name that someone may be changing

using Clock = std::chrono::steady_clock;

std::string NextOf(const std::string& name) {
    return "." + name + std::string(FileReplacement::kSuffix);
}

bool IsSame(const struct stat& a, const struct stat& b) {
    return a.st_ino == b.st_ino && a.st_dev == b.st_dev;
}

bool TryToLock(int descriptor) {
    int result = 0;
    while ((result = flock(descriptor, LOCK_EX | LOCK_NB)) != 0 && errno == EINTR) {
    }
    return result == 0;
}

// A process that was forked meanwhile has the descriptor too, and would go on holding the lock.
void UnlockAndClose(int descriptor) {
    const int error = errno;
    flock(descriptor, LOCK_UN);
    close(descriptor);
    errno = error;
}

// Makes sure that writing will not run out of room half-way, where the file system can promise that.
bool Reserve(int descriptor, size_t size) {
    rlimit limit{};
    if (getrlimit(RLIMIT_FSIZE, &limit) == 0 && size > limit.rlim_cur) {
        errno = EFBIG;
        return false;
    }
    return size == 0 || fallocate(descriptor, FALLOC_FL_KEEP_SIZE, 0, static_cast<off_t>(size)) == 0 ||
           errno == EOPNOTSUPP || errno == ENOSYS;
}

}  // namespace

FileReplacement::FileReplacement(const std::string& path) {
    char real[PATH_MAX];
    const std::string whole = realpath(path.c_str(), real) ? real : path;
    const size_t slash = whole.rfind('/');
    _name = whole.substr(slash + 1);
    if (_name.empty()) return;
    const std::string folder = slash == std::string::npos ? "." : whole.substr(0, slash + 1);
    _folder = open(folder.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
    LookAtOld();
}

FileReplacement::~FileReplacement() {
    CloseNext();
    if (_inPlace >= 0) {
        if (_isReady && !_hasOld) unlinkat(_folder, _name.c_str(), 0);
        if (_isReady && _hasOld) ftruncate(_inPlace, _old.st_size);  // gives the room back that was not used
        close(_inPlace);
    }
    if (_folder >= 0) close(_folder);
}

void FileReplacement::LookAtOld() {
    _hasOld = fstatat(_folder, _name.c_str(), &_old, AT_SYMLINK_NOFOLLOW) == 0;
}

void FileReplacement::CloseNext() {
    if (_descriptor < 0) return;
    if (!_next.empty() && !_isLeftOver) unlinkat(_folder, _next.c_str(), 0);
    UnlockAndClose(_descriptor);
    _descriptor = -1;
    _hasLock = _isLeftOver = false;
}

// Whether a new file was written by this user, and no one else can write to it. What root edits is its owner's, and so
// is the new file that its owner's program is writing.
bool FileReplacement::IsOurs(int descriptor) const {
    struct stat state {};
    if (fstat(descriptor, &state) != 0) return false;
    const bool isOwn = state.st_uid == geteuid() || (geteuid() == 0 && _hasOld && state.st_uid == _old.st_uid);
    const mode_t allowed = _hasOld && S_ISREG(_old.st_mode) ? _old.st_mode : kOwnerAlone;
    return isOwn && S_ISREG(state.st_mode) && state.st_nlink == 1 && (state.st_mode & kOthers & ~allowed) == 0;
}

// Opens or makes the new file under its fixed name. False, if that cannot be done.
bool FileReplacement::OpenNext() {
    constexpr int kFlags = O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    for (int look = 0; look < kLooks; ++look) {
        _descriptor = openat(_folder, _next.c_str(), O_RDWR | kFlags);
        // A new file has the mode of NAME, so it may be read-only: locking and renaming need no right to write.
        if (_descriptor < 0 && errno == EACCES) _descriptor = openat(_folder, _next.c_str(), O_RDONLY | kFlags);
        _isLeftOver = _descriptor >= 0;
        if (_isLeftOver && IsOurs(_descriptor)) return true;
        // A link, a folder, or a file of someone else's: nothing of ours is lost with it.
        const bool isForeign = _isLeftOver || errno == ELOOP || errno == EACCES;
        if (_isLeftOver) close(_descriptor);
        _isLeftOver = false;
        if (isForeign && unlinkat(_folder, _next.c_str(), 0) != 0 && errno != ENOENT) break;
        _descriptor = openat(_folder, _next.c_str(), O_RDWR | kFlags | O_CREAT | O_EXCL, kOwnerAlone);
        if (_descriptor >= 0) return true;
        if (errno != EEXIST) break;
    }
    _descriptor = -1;
    _isLeftOver = false;
    return false;
}

bool FileReplacement::Lock(Duration patience) {
    if (_hasLock) return true;
    if (_folder < 0 || _descriptor >= 0) return false;
    _isRefused = true;
    const Clock::time_point begin = Clock::now();
    Clock::time_point since = begin;
    ino_t holder = 0;
    for (;;) {
        _next = NextOf(_name);
        if (!OpenNext()) return false;
        struct stat opened {
        }, named{};
        const bool isLocked = TryToLock(_descriptor);
        // Who held the lock before may have given the file its new name.
        const bool isNamed = fstat(_descriptor, &opened) == 0 &&
                             fstatat(_folder, _next.c_str(), &named, AT_SYMLINK_NOFOLLOW) == 0 && IsSame(opened, named);
        LookAtOld();  // he may have replaced it, too
        if (isLocked && isNamed) {
            _isRefused = false;
            return _hasLock = true;
        }
        const Clock::time_point now = Clock::now();
        UnlockAndClose(_descriptor);
        _descriptor = -1;
        _isLeftOver = false;
        if (opened.st_ino != holder) since = now;
        holder = opened.st_ino;
        if (now - since >= patience || now - begin >= 4 * patience) return false;
        if (isNamed) std::this_thread::sleep_for(Duration(1));
    }
}

std::string FileReplacement::LeftOver(size_t most) const {
    if (_folder < 0 || (_hasLock && !_isLeftOver)) return {};
    const int descriptor = openat(_folder, NextOf(_name).c_str(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) return {};
    FILE* const file = IsOurs(descriptor) ? fdopen(descriptor, "rb") : nullptr;
    if (!file) {
        close(descriptor);
        return {};
    }
    bool error = false;
    std::string bytes = ReadToEnd(file, &error, most);
    fclose(file);
    return error ? std::string() : bytes;
}

bool FileReplacement::PutLeftOverInPlace() {
    const std::string bytes = LeftOver();
    if (!_hasLock || !_isLeftOver || !MoveNext(bytes)) return false;
    _isLeftOver = false;
    CloseNext();
    _content = {};
    if (_inPlace >= 0) close(_inPlace);
    _inPlace = -1;
    LookAtOld();
    Lock();
    return true;
}

// A new file for a writer without the lock, under a name that nobody else has.
void FileReplacement::OpenStray() {
    unsigned long long number = 0;
    if (getrandom(&number, sizeof number, 0) != sizeof number) return;
    char digits[20];
    snprintf(digits, sizeof digits, "-%016llx", number);
    _next = NextOf(_name) + digits;
    _descriptor = openat(_folder, _next.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, kOwnerAlone);
    if (_descriptor >= 0) TryToLock(_descriptor);  // tells the next writer that it is in use
}

void FileReplacement::RemoveStrays() {
    const int listed = openat(_folder, ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    DIR* const folder = listed >= 0 ? fdopendir(listed) : nullptr;
    if (!folder) {
        if (listed >= 0) close(listed);
        return;
    }
    const std::string prefix = NextOf(_name) + "-";
    while (const dirent* entry = readdir(folder)) {
        if (!std::string_view(entry->d_name).starts_with(prefix)) continue;
        const int stray = openat(_folder, entry->d_name, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
        if (stray < 0) continue;
        if (IsOurs(stray) && TryToLock(stray)) unlinkat(_folder, entry->d_name, 0);
        UnlockAndClose(stray);
    }
    closedir(folder);
}

bool FileReplacement::Prepare(std::string_view content) {
    if (_folder < 0) {
        errno = ENOENT;
        return false;
    }
    _content = content;
    // A lock that was refused is not asked for again: its holder may have been killed meanwhile, and what he left would
    // be overwritten before anybody had looked at it.
    if (!_isRefused) Lock();
    while (_hasLock && (fcntl(_descriptor, F_GETFL) & O_ACCMODE) == O_RDONLY) {
        _isLeftOver = false;
        CloseNext();  // removes it
        Lock();
    }
    _isLeftOver = false;
    if (_hasLock)
        RemoveStrays();
    else if (_descriptor < 0)
        OpenStray();
    if (_descriptor >= 0 && WriteNext()) return _isReady = true;
    const int error = errno;
    if (_descriptor >= 0) ftruncate(_descriptor, 0);  // the room that it takes may be what the old file needs
    if (OpenInPlace()) return _isReady = true;
    errno = error;
    return false;
}

bool FileReplacement::WriteNext() {
    return ftruncate(_descriptor, 0) == 0 && GiveOwnerAndMode() && WriteAll(_descriptor, _content) &&
           fsync(_descriptor) == 0;
}

// Called before the first byte is written, so that whoever may not read or write the old file cannot read or write
// this.
bool FileReplacement::GiveOwnerAndMode() {
    if (!_hasOld) return fchmod(_descriptor, kOwnerAlone) == 0;
    struct stat state {};
    errno = EPERM;
    if (!S_ISREG(_old.st_mode) || fstat(_descriptor, &state) != 0) return false;
    const bool isOwner = state.st_uid == _old.st_uid && state.st_gid == _old.st_gid;
    return (isOwner || fchown(_descriptor, _old.st_uid, _old.st_gid) == 0) &&
           fchmod(_descriptor, _old.st_mode & kModeBits) == 0;
}

bool FileReplacement::OpenInPlace() {
    const bool isLink = _hasOld && S_ISLNK(_old.st_mode);  // one that leads to nothing yet
    // Where there was no file, only a new one is opened: one that another made meanwhile is neither written nor
    // removed.
    const int create = !_hasOld ? O_CREAT | O_EXCL : isLink ? O_CREAT : 0;
    const int descriptor = openat(_folder, _name.c_str(), O_WRONLY | O_NONBLOCK | O_CLOEXEC | create, kOwnerAlone);
    if (descriptor < 0) return false;
    struct stat state {};
    const bool isIt =
        fstat(descriptor, &state) == 0 && S_ISREG(state.st_mode) && (!_hasOld || isLink || IsSame(state, _old));
    if (isIt && Reserve(descriptor, _content.size())) {
        _inPlace = descriptor;
        return true;
    }
    close(descriptor);
    if (!_hasOld) unlinkat(_folder, _name.c_str(), 0);
    return false;
}

bool FileReplacement::WriteInPlace(std::string_view content) {
    return WriteAll(_inPlace, content) && ftruncate(_inPlace, static_cast<off_t>(content.size())) == 0 &&
           fsync(_inPlace) == 0;
}

// Renames the new file, or where that cannot be done writes its content over the old one. In the second case the new
// file stays until the content is on the disk.
bool FileReplacement::MoveNext(std::string_view content) {
    const std::string next = std::move(_next);
    _next.clear();
    if (renameat(_folder, next.c_str(), _folder, _name.c_str()) == 0) return true;
    _content = content;
    if (!OpenInPlace() || !WriteInPlace(content)) return false;
    _next = next;  // to be removed
    return true;
}

bool FileReplacement::PutInPlace() {
    if (!_isReady) return false;
    _isReady = false;
    return _inPlace >= 0 ? WriteInPlace(_content) : MoveNext(_content);
}

}  // namespace Quern
