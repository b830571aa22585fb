// A window of fixed size on a byte source: the part of a file that is in memory. However large the file, and whatever
// its headers claim, no more than this is held of it.
#ifndef ORVANE_TOOLS_LOG_BYTE_WINDOW_H
#define ORVANE_TOOLS_LOG_BYTE_WINDOW_H

#include <cstring>
#include <memory>
#include <span>

#include "Log/ByteSource.h"

namespace OrvaneLog {

// One thread. The window is moved by reading outside it; the memory stays the same.
class ByteWindow {
public:
    // Holds several blocks, so that a block is mostly read with the one before it.
    static constexpr size_t kCapacity = 256u << 10;

    // The source is borrowed.
    explicit ByteWindow(ByteSource& source)
        : _source(source), _bytes(std::make_unique_for_overwrite<uint8_t[]>(kCapacity)) {}

    // The bytes from `offset`: at least `need` of them, fewer only where the source ends, and as many more as the
    // window holds. `need` is at most kCapacity. Valid until the next call.
    std::span<const uint8_t> At(uint64_t offset, size_t need) {
        if (offset < _start || offset + need > _start + _size) {
            _start = offset;
            _size = _source.ReadAt(offset, _bytes.get(), need, kCapacity);
        }
        return {_bytes.get() + (offset - _start), _size - static_cast<size_t>(offset - _start)};
    }

    // A few bytes anywhere, without moving the window. Gives how many there are.
    size_t Peek(uint64_t offset, uint8_t* out, size_t count) {
        if (offset >= _start && offset + count <= _start + _size) {
            memcpy(out, _bytes.get() + (offset - _start), count);
            return count;
        }
        return _source.ReadAt(offset, out, count, count);
    }

    ByteSource& Source() { return _source; }

private:
    ByteSource& _source;
    std::unique_ptr<uint8_t[]> _bytes;
    uint64_t _start = 0;  // offset in the source of the window's first byte
    size_t _size = 0;     // bytes of the source that the window holds
};

}  // namespace OrvaneLog

#endif
