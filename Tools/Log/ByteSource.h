// Where bytes come from: a file, a pipe, memory. Everything is read by its offset, so that the search for records can
// go back behind damage, even in a pipe.
#ifndef ORVANE_TOOLS_LOG_BYTE_SOURCE_H
#define ORVANE_TOOLS_LOG_BYTE_SOURCE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace OrvaneLog {

// The base of all sources. One thread at a time. Offsets count from the first byte of the source. A source may grow
// while it is read: what was its end at one call may not be at the next.
class ByteSource {
public:
    virtual ~ByteSource() = default;

    // Reads from `offset` into `out`: at least `atLeast` bytes, fewer only where the data ends or cannot be read
    // (Error() then is not 0), and at most `atMost`, which is the room at `out`.
    virtual size_t ReadAt(uint64_t offset, uint8_t* out, size_t atLeast, size_t atMost) = 0;
    // How many bytes there are now; nothing where that is not known before reading (a pipe).
    virtual std::optional<uint64_t> Size() const { return std::nullopt; }
    // Promises that nothing in front of `offset` will be asked for again. Only a hint: a source may keep it all.
    virtual void Forget(uint64_t offset) { (void)offset; }

    // The errno of the last read that failed, else 0. A caller asks for it once, at the end of its reading.
    int Error() const { return _error; }

protected:
    int _error = 0;  // set by the source whose read fails
};

// A file that can be read at any offset. Never mapped: a file cut short under a mapping would kill the reader.
class FileSource : public ByteSource {
public:
    // Owns the descriptor, and closes it. Its position is neither used nor moved.
    explicit FileSource(int descriptor) : _descriptor(descriptor) {}
    ~FileSource() override;
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;

    size_t ReadAt(uint64_t offset, uint8_t* out, size_t atLeast, size_t atMost) override;
    std::optional<uint64_t> Size() const override;

private:
    int _descriptor;
};

// A pipe, or anything else that can be read only once. What was read is kept in a temporary file without a name, so
// that it can be read again; the disk space of forgotten parts is given back.
class PipeSource : public ByteSource {
public:
    // Does not own the descriptor. If no temporary file can be made, Error() is not 0 and the source has no bytes.
    explicit PipeSource(int descriptor);
    ~PipeSource() override;
    PipeSource(const PipeSource&) = delete;
    PipeSource& operator=(const PipeSource&) = delete;

    // Waits until the pipe has `atLeast` bytes from there, or ends.
    size_t ReadAt(uint64_t offset, uint8_t* out, size_t atLeast, size_t atMost) override;
    void Forget(uint64_t offset) override;

private:
    // Reads the pipe on until so much of it is in the temporary file. False if it ended before.
    bool SpoolTo(uint64_t end);

    int _pipe;
    int _spool;               // the temporary file; -1 if there is none
    uint64_t _spooled = 0;    // bytes read from the pipe so far
    uint64_t _forgotten = 0;  // in front of this the disk space was given back
    bool _ended = false;      // the pipe is at its end, or could not be read or kept
};

// Bytes that someone else owns and keeps until the source is gone.
class MemorySource : public ByteSource {
public:
    explicit MemorySource(std::span<const uint8_t> bytes) : _bytes(bytes) {}

    size_t ReadAt(uint64_t offset, uint8_t* out, size_t atLeast, size_t atMost) override;
    std::optional<uint64_t> Size() const override { return _bytes.size(); }

private:
    std::span<const uint8_t> _bytes;
};

// The first bytes of another source, for a file whose end is not to be read.
class BoundedSource : public ByteSource {
public:
    // Borrows the source. `size`: where this one ends; the other may end before.
    BoundedSource(ByteSource& source, uint64_t size) : _source(source), _size(size) {}

    size_t ReadAt(uint64_t offset, uint8_t* out, size_t atLeast, size_t atMost) override;
    std::optional<uint64_t> Size() const override { return _size; }
    void Forget(uint64_t offset) override { _source.Forget(offset); }

private:
    ByteSource& _source;
    uint64_t _size;
};

// A temporary file without a name, in $TMPDIR or /tmp; -1 and errno. The caller closes it.
int OpenUnnamedFile();
// Reads at least so many bytes from that offset of a file, fewer where it ends or cannot be read, which sets `error`.
size_t ReadFully(int descriptor, uint64_t offset, uint8_t* out, size_t atLeast, size_t atMost, int& error);
// False, and errno, if not all of it could be written.
bool WriteFully(int descriptor, const uint8_t* data, size_t length);

// Opens a file for reading, or standard input for "-", which stays open for others. A folder is refused. Null, and the
// reason in `error`, if that fails.
std::unique_ptr<ByteSource> OpenSource(const std::string& path, std::string& error);

}  // namespace OrvaneLog

#endif
