#include "Storage/Log/AutoBuffer.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "Base/Assert.h"

namespace Quern {

AutoBuffer::AutoBuffer(const void* data, size_t length, size_t unit) : _unit(unit) {
    Write(0, data, length);
}

void AutoBuffer::FitSize(size_t length) {
    if (length <= _capacity) return;
    ORVANE_ASSERT_TEXT(length <= kMaxLength, "_len <= 20 * 1024 * 1024");
    const size_t capacity = (length + _unit - 1) / _unit * _unit;
    void* p = realloc(_buffer, capacity);
    ORVANE_ASSERT(p);
    _buffer = static_cast<uint8_t*>(p);
    memset(_buffer + _capacity, 0, capacity - _capacity);
    _capacity = capacity;
}

void AutoBuffer::AllocWrite(size_t length, bool changeLength) {
    const size_t end = _position + length;
    FitSize(end);
    if (changeLength) _length = std::max(_length, end);
}

void AutoBuffer::AddCapacity(size_t length) {
    FitSize(_capacity + length);
}

void AutoBuffer::Write(const void* data, size_t length) {
    Write(static_cast<long long>(_position), data, length);
    _position += length;
}

void AutoBuffer::Write(long long offset, const void* data, size_t length) {
    ORVANE_ASSERT_TEXT(data != nullptr || length == 0, "NULL != _pbuffer || 0 == _len");
    ORVANE_ASSERT_TEXT(offset >= 0, "0 <= _pos");
    const size_t at = static_cast<size_t>(offset);
    ORVANE_ASSERT_TEXT(at <= _length, "(size_t)_pos <= Length()");
    if (length == 0) return;
    ORVANE_ASSERT_TEXT(length <= kMaxLength, "_len <= 20 * 1024 * 1024");  // before the sum below can wrap
    FitSize(at + length);
    memcpy(_buffer + at, data, length);
    _length = std::max(_length, at + length);
}

size_t AutoBuffer::Read(void* data, size_t length) {
    const size_t count = Read(static_cast<long long>(_position), data, length);
    _position += count;
    return count;
}

size_t AutoBuffer::Read(AutoBuffer& out, size_t length) {
    const size_t count = Read(static_cast<long long>(_position), out, length);
    _position += count;
    return count;
}

size_t AutoBuffer::Read(long long offset, void* data, size_t length) const {
    ORVANE_ASSERT_TEXT(data != nullptr, "NULL != _pbuffer");
    ORVANE_ASSERT_TEXT(offset >= 0, "0 <= _pos");
    const size_t at = static_cast<size_t>(offset);
    ORVANE_ASSERT_TEXT(at <= _length, "(size_t)_pos <= Length()");
    const size_t count = std::min(length, _length - at);
    if (count > 0) memcpy(data, _buffer + at, count);
    return count;
}

size_t AutoBuffer::Read(long long offset, AutoBuffer& out, size_t length) const {
    ORVANE_ASSERT_TEXT(offset >= 0, "0 <= _pos");
    ORVANE_ASSERT_TEXT(static_cast<size_t>(offset) <= _length, "(size_t)_pos <= Length()");
    const size_t count = std::min(length, _length - static_cast<size_t>(offset));
    out.Write(_buffer + offset, count);
    return count;
}

void AutoBuffer::Move(long long offset) {
    if (offset > 0) {
        const size_t up = static_cast<size_t>(offset);
        FitSize(_length + up);
        memmove(_buffer + up, _buffer, _length);
        memset(_buffer, 0, up);
        _length += up;
        _position += up;
    } else if (offset < 0) {
        const size_t drop = std::min(static_cast<size_t>(-offset), _length);
        memmove(_buffer, _buffer + drop, _length - drop);
        _length -= drop;
        _position -= std::min(drop, _position);
    }
}

void AutoBuffer::Seek(long long offset, TSeek from) {
    const long long base = from == kSeekStart ? 0 : static_cast<long long>(from == kSeekCurrent ? _position : _length);
    const long long target = base + offset;
    _position = target < 0 ? 0 : std::min(static_cast<size_t>(target), _length);
}

void AutoBuffer::Length(long long position, size_t length) {
    ORVANE_ASSERT_TEXT(position >= 0, "0 <= _pos");
    ORVANE_ASSERT_TEXT(static_cast<size_t>(position) <= length, "(size_t)_pos <= _lenght");
    ORVANE_ASSERT_TEXT(length <= _capacity, "_lenght <= Capacity()");
    _position = static_cast<size_t>(position);
    _length = length;
}

void AutoBuffer::Attach(void* buffer, size_t length) {
    Reset();
    _buffer = static_cast<uint8_t*>(buffer);
    _length = length;
    _capacity = length;
}

void AutoBuffer::Attach(AutoBuffer& other) {
    Reset();
    std::swap(_buffer, other._buffer);
    std::swap(_position, other._position);
    std::swap(_length, other._length);
    std::swap(_capacity, other._capacity);
}

void* AutoBuffer::Detach(size_t* length) {
    if (length) *length = _length;
    uint8_t* buffer = _buffer;
    _buffer = nullptr;
    Reset();
    return buffer;
}

void AutoBuffer::Reset() {
    free(_buffer);
    _buffer = nullptr;
    _position = _length = _capacity = 0;
}

}  // namespace Quern
