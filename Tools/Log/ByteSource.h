// Where bytes come from: a file, a pipe, memory. Read by offset, so that a search can go back.
#ifndef ORVANE_TOOLS_LOG_BYTE_SOURCE_H
#define ORVANE_TOOLS_LOG_BYTE_SOURCE_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>

namespace OrvaneLog {

// One thread at a time.
class ByteSource {
public:
    virtual ~ByteSource() = default;

    // Reads from `offset` into `out`: at least `atLeast` bytes, fewer only where the data ends or cannot be read
    // (Error() then is not 0), and at most `atMost`, which is the room at `out`.
    virtual size_t ReadAt(uint64_t offset, uint8_t* out, size_t atLeast, size_t atMost) = 0;
    // How much there is, where that is known before reading.
    virtual std::optional<uint64_t> Size() const { return std::nullopt; }
    // Promises that nothing in front of `offset` will be asked for again.
    virtual void Forget(uint64_t offset) { (void)offset; }

    // The errno of a read that failed, else 0.
    int Error() const { return _error; }

protected:
    int _error = 0;
};

// A file that can be read at any offset. Never mapped: a file cut short under a mapping would kill the reader.
class FileSource : public ByteSource {
public:
    // Owns the descriptor.
    explicit FileSource(int descriptor) : _descriptor(descriptor) {}
    ~FileSource() override;
    FileSource(const FileSource&) = delete;
    FileSource& operator=(const FileSource&) = delete;

    size_t ReadAt(uint64_t offset, uint8_t* out, size_t atLeast, size_t atMost) override;
    std::optional<uint64_t> Size() const override;

private:
    int _descriptor;
};

// A pipe, kept in an unnamed temporary file as far as it was read; forgotten parts are given back to the disk.
class PipeSource : public ByteSource {
public:
    // Does not own the descriptor.
    explicit PipeSource(int descriptor);
    ~PipeSource() override;
    PipeSource(const PipeSource&) = delete;
    PipeSource& operator=(const PipeSource&) = delete;

    size_t ReadAt(uint64_t offset, uint8_t* out, size_t atLeast, size_t atMost) override;
    void Forget(uint64_t offset) override;

private:
    bool SpoolTo(uint64_t end);

    int _pipe;
    int _spool;
    uint64_t _spooled = 0;
    uint64_t _forgotten = 0;
    bool _ended = false;
};

// Bytes that someone else owns.
class MemorySource : public ByteSource {
public:
    explicit MemorySource(std::span<const uint8_t> bytes) : _bytes(bytes) {}

    size_t ReadAt(uint64_t offset, uint8_t* out, size_t atLeast, size_t atMost) override;
    std::optional<uint64_t> Size() const override { return _bytes.size(); }

private:
    std::span<const uint8_t> _bytes;
};

// The first bytes of another source.
class BoundedSource : public ByteSource {
public:
    // Borrows the source.
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

// Opens a file for reading, or standard input for "-". Null, and the reason in `error`, if that fails.
std::unique_ptr<ByteSource> OpenSource(const std::string& path, std::string& error);

}  // namespace OrvaneLog

#endif
