// The two buffers on which the Zyl forms stand: one to write into, one to read from.
//
// A buffer is a view: it owns nothing and allocates nothing. It belongs to one thread. The invariant is
// position <= length; every operation tests it first and ends the process where it is broken. The results are codes
// of ZylError, 0 for success.
//
// The bytes of a number are an agreement between this library and the generator of the code that calls it, the same on
// every machine: network byte order (big-endian), signed numbers in two's complement, floating ones as their IEEE 754
// bits. Numbers of every size fail alike: -1 for lack of space, -2 for lack of data, and nothing moves.
#ifndef ORVANE_SERIALIZER_ZYL_ZYL_BUF_H
#define ORVANE_SERIALIZER_ZYL_ZYL_BUF_H

#include <cstdarg>
#include <cstddef>
#include <string_view>

#include "Base/Assert.h"
#include "Serializer/ZYL/ZylError.h"
#include "Serializer/ZYL/ZylShortText.h"

namespace Quern {

class ZylWriteBuf {
public:
    char* beginPtr;   // first byte, never owned
    size_t position;  // next byte to write
    size_t length;    // capacity

    ZylWriteBuf() { _reset(); }
    ZylWriteBuf(char* buffer, unsigned long capacity) { _set(buffer, capacity); }

    void _reset();
    // A null buffer has no capacity, whatever `capacity` says.
    void _set(char* buffer, unsigned long capacity);

    // -1 where the buffer is full.
    int writeUInt8(unsigned char value);
    int writeInt8(signed char value);
    int writeChar(char value);
    // -1 with fewer bytes free than the number has.
    int writeUInt16(unsigned short value);
    int writeInt16(short value);
    int writeUInt32(unsigned int value);
    int writeInt32(int value);
    int writeUInt64(unsigned long long value);
    int writeInt64(long long value);
    int writeFloat(float value);
    int writeDouble(double value);

    // Needs two free bytes, else -1: a terminator goes behind the character, and the next write overwrites it.
    int writeCharWithNull(char value);
    // -8 for null data, -1 for lack of space. `data` may lie in the buffer itself.
    int writeBytes(const void* data, unsigned long size);

    // Prints at the position. All of the text and a terminator must fit, else -1 and the position stays; what a failed
    // print has left behind the position is garbage. The terminator is not counted: the next write overwrites it.
    int textize(const char* format, ...) __attribute__((format(printf, 2, 3)));
    int vtextize(const char* format, va_list arguments) __attribute__((format(printf, 2, 0)));
    // The pieces, texts all, in a row as one print, without the cost of a format. They must not lie in the buffer.
    template <typename... Pieces>
    int join(const Pieces&... pieces) {
        return joinViews(std::string_view(pieces)...);
    }
    // The same for a short text that `print` puts at a given place; it gets room for kMaxShortText characters and
    // returns the end of the text.
    template <typename Print>
    int printShort(const Print& print) {
        if (room() <= kMaxShortText) {
            char text[kMaxShortText];
            return joinViews(std::string_view(text, static_cast<size_t>(print(text) - text)));
        }
        char* const end = print(beginPtr + position);
        *end = '\0';
        position = static_cast<size_t>(end - beginPtr);
        return ZylError::ZYL_NO_ERROR;
    }

private:
    size_t room() const {
        ORVANE_ASSERT(position <= length);
        return length - position;
    }
    template <typename... Views>
    int joinViews(Views... views) {
        const size_t size = (views.size() + ...);
        if (size >= room()) return ZylError::ZYL_SHORT_BUFFER_TO_WRITE;
        char* target = beginPtr + position;
        ((target = CopyText(target, views)), ...);
        *target = '\0';
        position += size;
        return ZylError::ZYL_NO_ERROR;
    }
    template <typename Unsigned>
    int writeBigEndian(Unsigned value);
};

class ZylReadBuf {
public:
    const char* beginPtr;  // first byte, never owned
    size_t position;       // next byte to read
    size_t length;         // size of the data

    ZylReadBuf() { _reset(); }
    ZylReadBuf(const char* data, unsigned long size) { _set(data, size); }

    void _reset();
    // Null data has no size, whatever `size` says.
    void _set(const char* data, unsigned long size);

    // -2 with fewer bytes left than the value has; the value is then left as it was.
    int readUInt8(unsigned char& value);
    int readInt8(signed char& value);
    int readChar(char& value);
    int readUInt16(unsigned short& value);
    int readInt16(short& value);
    int readUInt32(unsigned int& value);
    int readInt32(int& value);
    int readUInt64(unsigned long long& value);
    int readInt64(long long& value);
    int readFloat(float& value);
    int readDouble(double& value);
    // -8 for a null target, -2 for lack of data.
    int readBytes(void* data, unsigned long size);

    // The bytes from the position to the end as upper-case digits, high half first, and a terminator; the position
    // stays. REQUIRES: dest is not null. -1 where dest is too small. `usedSize` may be null; on success it receives
    // the characters written, the terminator included.
    int toHexStr(char* dest, unsigned long size, unsigned long* usedSize) const;
    // The inverse: turns up to `size` digits of either case into bytes at the position, as many as fit before the end,
    // and makes the end of these bytes the end of the data. The position stays.
    // REQUIRES: src is not null; the memory behind beginPtr is writable.
    // -17 for an odd size, nothing changed. -18 at a character that is no digit: the bytes before it stay written.
    // `usedSize` may be null. It receives the characters taken; on -18 twice as many, which callers have come to rely
    // on.
    int fromHexStr(const char* src, unsigned long size, unsigned long* usedSize);

private:
    size_t left() const {
        ORVANE_ASSERT(position <= length);
        return length - position;
    }
    template <typename Unsigned, typename Value>
    int readBigEndian(Value& value);
};

}  // namespace Quern

#endif
