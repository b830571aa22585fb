// A growing array of bytes. At least one zero byte stands behind the data once there is a buffer, so that a text in it
// is always terminated.
#ifndef ORVANE_BASE_CONTAINER_A_DATA_H
#define ORVANE_BASE_CONTAINER_A_DATA_H

#include <memory>

#include "Base/Container/AObject.h"

namespace Quern {

// Sizes are in bytes. Data that would not fit a 32-bit size is not taken.
class AData : public AObject {
public:
    // No buffer is made before the first byte arrives; the capacity is 64 meanwhile.
    AData();
    // A capacity below 1 is taken as none given.
    explicit AData(int capacity);
    AData(const unsigned char* bytes, int length);
    AData(const AData& other);
    AData(AData&& other) noexcept;
    AData& operator=(const AData& other);
    AData& operator=(AData&& other) noexcept;
    // A null or empty text clears.
    AData& operator=(const char* text);
    AData& operator+=(const AData& other);
    AData& operator+=(const char* text);

    // Replaces the content. Does nothing if `bytes` is this object's own buffer.
    void Assign(const unsigned char* bytes, int length);
    // Null bytes or a negative length: nothing. The source may lie in this object's own buffer.
    void Append(const unsigned char* bytes, int length);
    void Append(const AData& other);
    // The text without its terminator.
    void Append(const char* text);

    // Below 1, or the present capacity: nothing. Growing keeps the bytes; shrinking drops all of them.
    void SetCapacity(int capacity);
    // Gives the buffer back.
    void Clear();

    // Null while there is no buffer.
    unsigned char* Data() { return _bytes.get(); }
    const unsigned char* Data() const { return _bytes.get(); }
    int Size() const { return _size; }
    int Capacity() const { return _capacity; }
    bool Empty() const { return !_bytes || _size == 0; }
    // What the capacity leaves, the byte of the terminator included.
    int LeftSize() const { return _capacity > _size ? _capacity - _size : 0; }
    // The index of the first such byte, or -1.
    int Find(int byte) const;

    bool IsEqual(const AObject* other) const override;
    AData* Clone() const override;

private:
    bool IsInside(const unsigned char* bytes) const;

    std::unique_ptr<unsigned char[]> _bytes;
    int _capacity;
    int _size = 0;
};

}  // namespace Quern

#endif
