#include "Storage/Log/PtrBuffer.h"

#include <algorithm>
#include <cstring>

#include "Base/Assert.h"

namespace Quern {

// The texts of the assertions stay as they are, since crash reports are searched for them: some name parameters that
// are called otherwise here.
void PtrBuffer::Attach(void* buffer, size_t length, size_t maxLength) {
    ORVANE_ASSERT_TEXT(length <= maxLength, "length_ <= max_length_");
    _buffer = static_cast<uint8_t*>(buffer);
    _position = 0;
    _length = length;
    _maxLength = maxLength;
}

void PtrBuffer::Write(const void* data, size_t length) {
    const size_t written = std::min(length, _maxLength - _position);
    Write(data, length, static_cast<off_t>(_position));
    _position += written;
}

void PtrBuffer::Write(const void* data, size_t length, off_t offset) {
    ORVANE_ASSERT_TEXT(data != nullptr, "NULL != _pBuffer");
    ORVANE_ASSERT_TEXT(offset >= 0, "0 <= _nPos");
    const size_t at = static_cast<size_t>(offset);
    ORVANE_ASSERT_TEXT(at <= _length, "(unsigned int)_nPos <= Length()");
    const size_t count = std::min(length, _maxLength - at);
    if (count == 0) return;
    memcpy(_buffer + at, data, count);
    _length = std::max(_length, at + count);
}

size_t PtrBuffer::Read(void* data, size_t length) {
    const size_t count = Read(data, length, static_cast<off_t>(_position));
    _position += count;
    return count;
}

size_t PtrBuffer::Read(void* data, size_t length, off_t offset) const {
    ORVANE_ASSERT_TEXT(data != nullptr, "NULL != _pBuffer");
    ORVANE_ASSERT_TEXT(offset >= 0, "0 <= _nPos");
    const size_t at = static_cast<size_t>(offset);
    ORVANE_ASSERT_TEXT(at < _length, "(unsigned int)_nPos < Length()");
    const size_t count = std::min(length, _length - at);
    memcpy(data, _buffer + at, count);
    return count;
}

void PtrBuffer::Seek(off_t offset, TSeek from) {
    const off_t base = from == kSeekStart ? 0 : static_cast<off_t>(from == kSeekCurrent ? _position : _length);
    const off_t target = base + offset;
    _position = target < 0 ? 0 : std::min(static_cast<size_t>(target), _length);
}

void PtrBuffer::Length(off_t position, size_t length) {
    ORVANE_ASSERT_TEXT(position >= 0, "0 <= _nPos");
    ORVANE_ASSERT_TEXT(static_cast<size_t>(position) <= length, "(size_t)_nPos <= _nLenght");
    ORVANE_ASSERT_TEXT(length <= _maxLength, "_nLenght <= MaxLength()");
    _position = static_cast<size_t>(position);
    _length = length;
}

}  // namespace Quern
