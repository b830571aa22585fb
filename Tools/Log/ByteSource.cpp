#include "Log/ByteSource.h"

#include <errno.h>
#include <fcntl.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>

namespace OrvaneLog {
namespace {

// Spooled data is given back in steps of this size.
constexpr uint64_t kForgetStep = 16u << 20;
constexpr size_t kPipeChunk = 64u << 10;

}  // namespace

size_t ReadFully(int descriptor, uint64_t offset, uint8_t* out, size_t atLeast, size_t atMost, int& error) {
    size_t have = 0;
    do {
        const ssize_t count = pread(descriptor, out + have, atMost - have, static_cast<off_t>(offset + have));
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) error = errno;
        if (count <= 0) break;
        have += static_cast<size_t>(count);
    } while (have < atLeast);
    return have;
}

bool WriteFully(int descriptor, const uint8_t* data, size_t length) {
    while (length > 0) {
        const ssize_t count = write(descriptor, data, length);
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        data += count;
        length -= static_cast<size_t>(count);
    }
    return true;
}

int OpenUnnamedFile() {
    const char* folder = getenv("TMPDIR");
    std::string path = folder && *folder ? folder : "/tmp";
    const int unnamed = open(path.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (unnamed >= 0) return unnamed;
    path += "/orvane-log-XXXXXX";  // a file system without unnamed files
    const int named = mkostemp(path.data(), O_CLOEXEC);
    if (named >= 0) unlink(path.c_str());
    return named;
}

FileSource::~FileSource() {
    close(_descriptor);
}

size_t FileSource::ReadAt(uint64_t offset, uint8_t* out, size_t atLeast, size_t atMost) {
    return ReadFully(_descriptor, offset, out, atLeast, atMost, _error);
}

std::optional<uint64_t> FileSource::Size() const {
    struct stat facts;
    if (fstat(_descriptor, &facts) != 0) return std::nullopt;
    return static_cast<uint64_t>(facts.st_size);
}

PipeSource::PipeSource(int descriptor) : _pipe(descriptor), _spool(OpenUnnamedFile()) {
    if (_spool < 0) _error = errno;
}

PipeSource::~PipeSource() {
    if (_spool >= 0) close(_spool);
}

bool PipeSource::SpoolTo(uint64_t end) {
    uint8_t chunk[kPipeChunk];
    while (!_ended && _spooled < end) {
        const ssize_t count = read(_pipe, chunk, sizeof chunk);
        if (count < 0 && errno == EINTR) continue;
        if (count < 0) _error = errno;
        if (count <= 0) {
            _ended = true;
            break;
        }
        if (!WriteFully(_spool, chunk, static_cast<size_t>(count))) {
            _error = errno;
            _ended = true;
            break;
        }
        _spooled += static_cast<uint64_t>(count);
    }
    return _spooled >= end;
}

size_t PipeSource::ReadAt(uint64_t offset, uint8_t* out, size_t atLeast, size_t atMost) {
    if (_spool < 0) return 0;
    SpoolTo(offset + atLeast);
    if (offset >= _spooled) return 0;
    const size_t count = static_cast<size_t>(std::min<uint64_t>(atMost, _spooled - offset));
    return ReadFully(_spool, offset, out, count, count, _error);
}

void PipeSource::Forget(uint64_t offset) {
    if (_spool < 0 || offset < _forgotten + kForgetStep) return;
    const uint64_t until = offset / kForgetStep * kForgetStep;
    // Where the file system cannot do that the spool keeps its size: slower to end, never wrong.
    (void)!fallocate(_spool, FALLOC_FL_PUNCH_HOLE | FALLOC_FL_KEEP_SIZE, static_cast<off_t>(_forgotten),
                     static_cast<off_t>(until - _forgotten));
    _forgotten = until;
}

size_t MemorySource::ReadAt(uint64_t offset, uint8_t* out, size_t, size_t atMost) {
    if (offset >= _bytes.size()) return 0;
    const size_t count = std::min<size_t>(atMost, _bytes.size() - static_cast<size_t>(offset));
    memcpy(out, _bytes.data() + offset, count);
    return count;
}

size_t BoundedSource::ReadAt(uint64_t offset, uint8_t* out, size_t atLeast, size_t atMost) {
    if (offset >= _size) return 0;
    const size_t room = static_cast<size_t>(std::min<uint64_t>(atMost, _size - offset));
    const size_t count = _source.ReadAt(offset, out, std::min(atLeast, room), room);
    _error = _source.Error();
    return count;
}

std::unique_ptr<ByteSource> OpenSource(const std::string& path, std::string& error) {
    const int descriptor =
        path == "-" ? fcntl(STDIN_FILENO, F_DUPFD_CLOEXEC, 0) : open(path.c_str(), O_RDONLY | O_CLOEXEC);
    struct stat facts;
    if (descriptor < 0 || fstat(descriptor, &facts) != 0) {
        error = strerror(errno);
        if (descriptor >= 0) close(descriptor);
        return nullptr;
    }
    if (S_ISDIR(facts.st_mode)) {
        error = strerror(EISDIR);
        close(descriptor);
        return nullptr;
    }
    if (S_ISREG(facts.st_mode) && (path != "-" || lseek(descriptor, 0, SEEK_CUR) == 0))
        return std::make_unique<FileSource>(descriptor);

    // A pipe, a terminal, a device, or a standard input that somebody has read from already.
    struct OwnedPipe : PipeSource {
        explicit OwnedPipe(int owned) : PipeSource(owned), _owned(owned) {}
        ~OwnedPipe() override { close(_owned); }
        int _owned;
    };
    auto pipe = std::make_unique<OwnedPipe>(descriptor);
    if (pipe->Error() != 0) {
        error = std::string("no temporary file: ") + strerror(pipe->Error());
        return nullptr;
    }
    return pipe;
}

}  // namespace OrvaneLog
