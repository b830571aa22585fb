// A view on memory that somebody else owns, with a position, a length and a maximum length.
#ifndef ORVANE_STORAGE_LOG_PTR_BUFFER_H
#define ORVANE_STORAGE_LOG_PTR_BUFFER_H

#include <sys/types.h>

#include <cstddef>
#include <cstdint>

namespace Quern {

// From where an offset counts in the buffers of this folder.
enum TSeek { kSeekStart = 0, kSeekCurrent = 1, kSeekEnd = 2 };

// Never allocates; a write is cut at the maximum length. Broken contracts end the process: they stand behind REQUIRES.
// The memory must outlive the view. One thread at a time. Sizes are in bytes.
class PtrBuffer {
public:
    PtrBuffer() = default;
    PtrBuffer(void* buffer, size_t length, size_t maxLength) { Attach(buffer, length, maxLength); }
    PtrBuffer(void* buffer, size_t maxLength) { Attach(buffer, maxLength); }

    // The position becomes 0. REQUIRES: length <= maxLength.
    void Attach(void* buffer, size_t length, size_t maxLength);
    // Length and maximum both `maxLength`.
    void Attach(void* buffer, size_t maxLength) { Attach(buffer, maxLength, maxLength); }
    void Reset() { *this = PtrBuffer(); }

    // At the position, which moves behind what was written, or at an offset, which leaves the position. What ends
    // behind the length makes it longer. REQUIRES: `data` is not null, 0 <= offset <= Length().
    void Write(const void* data, size_t length);
    void Write(const void* data, size_t length, off_t offset);
    // From the position, which moves behind what was read, or from an offset, which leaves it. Returns the bytes read:
    // at most those up to the length. REQUIRES: `data` is not null, 0 <= offset < Length(). The position counts as an
    // offset, so a read at the end of the data ends the process.
    size_t Read(void* data, size_t length);
    size_t Read(void* data, size_t length, off_t offset) const;

    // The result is clamped to 0 and to the length.
    void Seek(off_t offset, TSeek from);
    // Sets position and length. REQUIRES: 0 <= position <= length <= MaxLength().
    void Length(off_t position, size_t length);

    uint8_t* Ptr() { return _buffer; }
    const uint8_t* Ptr() const { return _buffer; }
    uint8_t* PosPtr() { return _buffer + _position; }
    size_t Pos() const { return _position; }
    // What lies between the position and the length.
    size_t PosLength() const { return _length - _position; }
    size_t Length() const { return _length; }
    size_t MaxLength() const { return _maxLength; }

private:
    uint8_t* _buffer = nullptr;
    size_t _position = 0;
    size_t _length = 0;
    size_t _maxLength = 0;
};

}  // namespace Quern

#endif
