#include "Serializer/Arbor/ArborBufferReader.h"

#include <cstdint>

namespace Quern {

template <typename Integer>
void CArborBufferReader::ReadInteger(Integer& value) {
    constexpr int kSize = sizeof value;
    if (_buffer.length() - _position < kSize) {
        // A part of a number is no value, and what stands behind it cannot be placed: all is used up.
        _position = _buffer.length();
        return;
    }
    const char* const bytes = _buffer.data() + _position;
    std::make_unsigned_t<Integer> bits = 0;
    for (int i = 0; i < kSize; ++i)
        bits = static_cast<std::make_unsigned_t<Integer>>(uint64_t{bits} << 8 | static_cast<unsigned char>(bytes[i]));
    value = static_cast<Integer>(bits);
    _position += kSize;
}

void CArborBufferReader::Read(int& value) {
    ReadInteger(value);
}

void CArborBufferReader::Read(long long& value) {
    ReadInteger(value);
}

void CArborBufferReader::Read(unsigned char& value) {
    ReadInteger(value);
}

void CArborBufferReader::Read(bool& value) {
    unsigned char byte = value;
    Read(byte);
    value = byte != 0;
}

void CArborBufferReader::Read(AString& text) {
    text.Clear();
    int length = 0;
    Read(length);
    if (length < 1 || length > _buffer.length() - _position) return;
    text.assign(_buffer.data() + _position, length);
    _position += length;
}

void CArborBufferReader::Read(_tagArborBufferBase& object) {
    object.BeforeDecode(*this);
    object.ReadFrom(*this);
}

void CArborBufferReader::Read(_tagArborBufferBase* object) {
    if (object) Read(*object);
}

bool CArborBufferReader::ReadCount(int& count) {
    count = 0;
    Read(count);
    count = std::min(count, _buffer.length() - _position);
    return !IsAtEnd();
}

}  // namespace Quern
