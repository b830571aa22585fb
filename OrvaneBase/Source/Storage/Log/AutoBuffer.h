// An owning buffer that grows.
#ifndef ORVANE_STORAGE_LOG_AUTO_BUFFER_H
#define ORVANE_STORAGE_LOG_AUTO_BUFFER_H

#include <cstddef>
#include <cstdint>

#include "Storage/Log/PtrBuffer.h"

namespace Quern {

// Capacity grows to the next multiple of the allocation unit; new bytes are zero. Holds at most 20 MiB: one byte more,
// a failed allocation and every other broken contract, which stand behind REQUIRES, end the process. One thread at a
// time. Sizes and offsets are in bytes.
class AutoBuffer {
public:
    static constexpr size_t kDefaultUnit = 128;
    static constexpr size_t kMaxLength = 20 * 1024 * 1024;

    explicit AutoBuffer(size_t unit = kDefaultUnit) : _unit(unit) {}
    AutoBuffer(const void* data, size_t length, size_t unit = kDefaultUnit);
    ~AutoBuffer() { Reset(); }
    AutoBuffer(const AutoBuffer&) = delete;
    AutoBuffer& operator=(const AutoBuffer&) = delete;

    // Room for `length` bytes at the position; with changeLength the length covers that room.
    void AllocWrite(size_t length, bool changeLength = true);
    // Room for that many bytes more than the capacity.
    void AddCapacity(size_t length);

    // At the position, which moves behind what was written, or at an offset, which leaves the position. What ends
    // behind the length makes it longer. REQUIRES: 0 <= offset <= Length(); null data only with a length of 0.
    void Write(const void* data, size_t length);
    void Write(const AutoBuffer& source) { Write(source.Ptr(), source.Length()); }
    void Write(long long offset, const void* data, size_t length);
    void Write(long long offset, const AutoBuffer& source) { Write(offset, source.Ptr(), source.Length()); }
    // From the position, which moves behind what was read, or from an offset, which leaves it. Returns the bytes read:
    // at most those up to the length. The forms with `out` write at its position. REQUIRES: 0 <= offset <= Length().
    size_t Read(void* data, size_t length);
    size_t Read(AutoBuffer& out, size_t length);
    size_t Read(long long offset, void* data, size_t length) const;
    size_t Read(long long offset, AutoBuffer& out, size_t length) const;

    // Positive: moves the content up and zeroes the gap. Negative: drops that many bytes from the front. The position
    // goes along.
    void Move(long long offset);
    // The result is clamped to 0 and to the length.
    void Seek(long long offset, TSeek from);
    // Sets position and length. REQUIRES: 0 <= position <= length <= Capacity().
    void Length(long long position, size_t length);

    // Takes memory from malloc over, dropping what was held.
    void Attach(void* buffer, size_t length);
    void Attach(AutoBuffer& other);
    // Hands the memory out, to be freed by the caller, and resets. `length` may be null.
    void* Detach(size_t* length = nullptr);
    void Reset();

    uint8_t* Ptr(long long offset = 0) { return _buffer + offset; }
    const uint8_t* Ptr(long long offset = 0) const { return _buffer + offset; }
    uint8_t* PosPtr() { return _buffer + _position; }
    long long Pos() const { return static_cast<long long>(_position); }
    size_t PosLength() const { return _length - _position; }
    size_t Length() const { return _length; }
    size_t Capacity() const { return _capacity; }

private:
    void FitSize(size_t length);

    uint8_t* _buffer = nullptr;
    size_t _position = 0;
    size_t _length = 0;
    size_t _capacity = 0;
    size_t _unit;
};

}  // namespace Quern

#endif
