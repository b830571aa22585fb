#include "Serializer/ZYL/ZylBuf.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace Quern {
namespace {

constexpr char kHexDigits[] = "0123456789ABCDEF";

// -1 where the character is no digit.
int HexValue(char digit) {
    if ('0' <= digit && digit <= '9') return digit - '0';
    if ('A' <= digit && digit <= 'F') return digit - 'A' + 10;
    if ('a' <= digit && digit <= 'f') return digit - 'a' + 10;
    return -1;
}

}  // namespace

void ZylWriteBuf::_reset() {
    _set(nullptr, 0);
}

void ZylWriteBuf::_set(char* buffer, unsigned long capacity) {
    beginPtr = buffer;
    position = 0;
    length = buffer == nullptr ? 0 : capacity;
}

template <typename Unsigned>
int ZylWriteBuf::writeBigEndian(Unsigned value) {
    if (room() < sizeof(Unsigned)) return ZylError::ZYL_SHORT_BUFFER_TO_WRITE;
    char* const target = beginPtr + position;
    for (size_t i = 0; i < sizeof(Unsigned); ++i) {
        target[i] = static_cast<char>(value >> (8 * (sizeof(Unsigned) - 1 - i)));
    }
    position += sizeof(Unsigned);
    return ZylError::ZYL_NO_ERROR;
}

int ZylWriteBuf::writeUInt8(unsigned char value) {
    return writeBigEndian(value);
}
int ZylWriteBuf::writeInt8(signed char value) {
    return writeBigEndian(static_cast<uint8_t>(value));
}
int ZylWriteBuf::writeChar(char value) {
    return writeBigEndian(static_cast<uint8_t>(value));
}
int ZylWriteBuf::writeUInt16(unsigned short value) {
    return writeBigEndian(value);
}
int ZylWriteBuf::writeInt16(short value) {
    return writeBigEndian(static_cast<uint16_t>(value));
}
int ZylWriteBuf::writeUInt32(unsigned int value) {
    return writeBigEndian(value);
}
int ZylWriteBuf::writeInt32(int value) {
    return writeBigEndian(static_cast<uint32_t>(value));
}
int ZylWriteBuf::writeUInt64(unsigned long long value) {
    return writeBigEndian(value);
}
int ZylWriteBuf::writeInt64(long long value) {
    return writeBigEndian(static_cast<uint64_t>(value));
}
int ZylWriteBuf::writeFloat(float value) {
    return writeBigEndian(std::bit_cast<uint32_t>(value));
}
int ZylWriteBuf::writeDouble(double value) {
    return writeBigEndian(std::bit_cast<uint64_t>(value));
}

int ZylWriteBuf::writeCharWithNull(char value) {
    if (room() < 2) return ZylError::ZYL_SHORT_BUFFER_TO_WRITE;
    beginPtr[position] = value;
    beginPtr[++position] = '\0';
    return ZylError::ZYL_NO_ERROR;
}

int ZylWriteBuf::writeBytes(const void* data, unsigned long size) {
    const size_t free = room();
    if (data == nullptr) return ZylError::ZYL_ARGUMENT_IS_NULL;
    if (free < size) return ZylError::ZYL_SHORT_BUFFER_TO_WRITE;
    if (size > 0) memmove(beginPtr + position, data, size);
    position += size;
    return ZylError::ZYL_NO_ERROR;
}

int ZylWriteBuf::textize(const char* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    const int code = vtextize(format, arguments);
    va_end(arguments);
    return code;
}

int ZylWriteBuf::vtextize(const char* format, va_list arguments) {
    const size_t free = room();
    const int printed = vsnprintf(beginPtr + position, free, format, arguments);
    if (printed < 0 || static_cast<size_t>(printed) >= free) return ZylError::ZYL_SHORT_BUFFER_TO_WRITE;
    position += static_cast<size_t>(printed);
    return ZylError::ZYL_NO_ERROR;
}

void ZylReadBuf::_reset() {
    _set(nullptr, 0);
}

void ZylReadBuf::_set(const char* data, unsigned long size) {
    beginPtr = data;
    position = 0;
    length = data == nullptr ? 0 : size;
}

template <typename Unsigned, typename Value>
int ZylReadBuf::readBigEndian(Value& value) {
    static_assert(sizeof(Unsigned) == sizeof(Value));
    if (left() < sizeof(Unsigned)) return ZylError::ZYL_SHORT_BUFFER_TO_READ;
    uint64_t bits = 0;
    for (size_t i = 0; i < sizeof(Unsigned); ++i) {
        bits = bits << 8 | static_cast<unsigned char>(beginPtr[position + i]);
    }
    value = std::bit_cast<Value>(static_cast<Unsigned>(bits));
    position += sizeof(Unsigned);
    return ZylError::ZYL_NO_ERROR;
}

int ZylReadBuf::readUInt8(unsigned char& value) {
    return readBigEndian<uint8_t>(value);
}
int ZylReadBuf::readInt8(signed char& value) {
    return readBigEndian<uint8_t>(value);
}
int ZylReadBuf::readChar(char& value) {
    return readBigEndian<uint8_t>(value);
}
int ZylReadBuf::readUInt16(unsigned short& value) {
    return readBigEndian<uint16_t>(value);
}
int ZylReadBuf::readInt16(short& value) {
    return readBigEndian<uint16_t>(value);
}
int ZylReadBuf::readUInt32(unsigned int& value) {
    return readBigEndian<uint32_t>(value);
}
int ZylReadBuf::readInt32(int& value) {
    return readBigEndian<uint32_t>(value);
}
int ZylReadBuf::readUInt64(unsigned long long& value) {
    return readBigEndian<uint64_t>(value);
}
int ZylReadBuf::readInt64(long long& value) {
    return readBigEndian<uint64_t>(value);
}
int ZylReadBuf::readFloat(float& value) {
    return readBigEndian<uint32_t>(value);
}
int ZylReadBuf::readDouble(double& value) {
    return readBigEndian<uint64_t>(value);
}

int ZylReadBuf::readBytes(void* data, unsigned long size) {
    const size_t available = left();
    if (data == nullptr) return ZylError::ZYL_ARGUMENT_IS_NULL;
    if (available < size) return ZylError::ZYL_SHORT_BUFFER_TO_READ;
    if (size > 0) memmove(data, beginPtr + position, size);
    position += size;
    return ZylError::ZYL_NO_ERROR;
}

int ZylReadBuf::toHexStr(char* dest, unsigned long size, unsigned long* usedSize) const {
    const size_t count = left();
    ORVANE_ASSERT(NULL != dest);
    // 2 * count + 1 characters, compared without the product, which could overflow.
    if (size == 0 || (size - 1) / 2 < count) return ZylError::ZYL_SHORT_BUFFER_TO_WRITE;
    for (size_t i = 0; i < count; ++i) {
        const auto byte = static_cast<unsigned char>(beginPtr[position + i]);
        *dest++ = kHexDigits[byte >> 4];
        *dest++ = kHexDigits[byte & 15];
    }
    *dest = '\0';
    if (usedSize != nullptr) *usedSize = 2 * count + 1;
    return ZylError::ZYL_NO_ERROR;
}

int ZylReadBuf::fromHexStr(const char* src, unsigned long size, unsigned long* usedSize) {
    const size_t free = left();
    ORVANE_ASSERT(NULL != src);
    if (size % 2 != 0) return ZylError::ZYL_INVALID_HEX_LENGTH;
    const size_t count = std::min<size_t>(size / 2, free);
    char* const target = const_cast<char*>(beginPtr) + position;
    for (size_t i = 0; i < count; ++i) {
        const int high = HexValue(src[2 * i]);
        const int low = HexValue(src[2 * i + 1]);
        if (high < 0 || low < 0) {
            if (usedSize != nullptr) *usedSize = 4 * i;
            return ZylError::ZYL_INVALID_HEX_FORMAT;
        }
        target[i] = static_cast<char>(high << 4 | low);
    }
    length = position + count;
    if (usedSize != nullptr) *usedSize = 2 * count;
    return ZylError::ZYL_NO_ERROR;
}

}  // namespace Quern
