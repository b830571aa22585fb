#include "Base/Container/AData.h"

#include <algorithm>
#include <climits>
#include <cstring>
#include <functional>
#include <utility>

namespace Quern {
namespace {

constexpr int kInitialCapacity = 64;
// A buffer up to this size is kept for new content however small that is.
constexpr int kAlwaysReusedCapacity = 128;

const unsigned char* AsBytes(const char* text) {
    return reinterpret_cast<const unsigned char*>(text);
}

// A longer text gives a negative length, which is not taken.
int TextLength(const char* text) {
    const size_t length = strlen(text);
    return length <= INT_MAX ? static_cast<int>(length) : -1;
}

}  // namespace

AData::AData() : AObject(kTypeData), _capacity(kInitialCapacity) {}

AData::AData(int capacity) : AData() {
    SetCapacity(capacity);
}

AData::AData(const unsigned char* bytes, int length) : AData() {
    Append(bytes, length);
}

AData::AData(const AData& other) : AObject(other), _capacity(kInitialCapacity) {
    if (!other.Empty()) Append(other);
}

AData::AData(AData&& other) noexcept
    : AObject(other),
      _bytes(std::move(other._bytes)),
      _capacity(std::exchange(other._capacity, kInitialCapacity)),
      _size(std::exchange(other._size, 0)) {}

AData& AData::operator=(const AData& other) {
    if (this == &other) return *this;
    if (other.Empty())
        Clear();
    else
        Assign(other.Data(), other.Size());
    return *this;
}

AData& AData::operator=(AData&& other) noexcept {
    if (this == &other) return *this;
    _bytes = std::move(other._bytes);
    _capacity = std::exchange(other._capacity, kInitialCapacity);
    _size = std::exchange(other._size, 0);
    return *this;
}

AData& AData::operator=(const char* text) {
    if (!text || !*text)
        Clear();
    else
        Assign(AsBytes(text), TextLength(text));
    return *this;
}

AData& AData::operator+=(const AData& other) {
    Append(other);
    return *this;
}

AData& AData::operator+=(const char* text) {
    Append(text);
    return *this;
}

void AData::Assign(const unsigned char* bytes, int length) {
    if (bytes == _bytes.get()) return;
    if (length > 0 && IsInside(bytes)) {
        const AData source(bytes, length);
        Assign(source.Data(), length);
        return;
    }
    const bool wasteful = _capacity > kAlwaysReusedCapacity && _capacity > 2 * static_cast<int64_t>(length);
    if (_bytes && _capacity >= length && !wasteful) {
        memset(_bytes.get(), 0, static_cast<size_t>(_capacity));
        _size = 0;
    } else {
        Clear();
    }
    Append(bytes, length);
}

void AData::Append(const unsigned char* bytes, int length) {
    if (!bytes || length < 0) return;
    if (length >= INT_MAX - _size) return;
    if (length > 0 && IsInside(bytes)) {
        const std::unique_ptr<unsigned char[]> source(new unsigned char[static_cast<unsigned>(length)]);
        memcpy(source.get(), bytes, static_cast<size_t>(length));
        Append(source.get(), length);
        return;
    }
    const int newSize = _size + length;
    if (_capacity - _size <= length) SetCapacity(newSize <= INT_MAX / 2 ? newSize * 2 : INT_MAX);
    if (!_bytes) _bytes.reset(new unsigned char[static_cast<unsigned>(_capacity)]());
    memcpy(_bytes.get() + _size, bytes, static_cast<size_t>(length));
    _size = newSize;
}

void AData::Append(const AData& other) {
    Append(other.Data(), other.Size());
}

void AData::Append(const char* text) {
    if (text) Append(AsBytes(text), TextLength(text));
}

void AData::SetCapacity(int capacity) {
    if (capacity < 1 || capacity == _capacity) return;
    std::unique_ptr<unsigned char[]> bytes(new unsigned char[static_cast<unsigned>(capacity)]);
    const int kept = capacity > _capacity && _bytes ? _size : 0;
    if (kept > 0) memcpy(bytes.get(), _bytes.get(), static_cast<size_t>(kept));
    memset(bytes.get() + kept, 0, static_cast<size_t>(capacity - kept));
    _bytes = std::move(bytes);
    _capacity = capacity;
    _size = kept;
}

void AData::Clear() {
    _bytes.reset();
    _capacity = kInitialCapacity;
    _size = 0;
}

int AData::Find(int byte) const {
    if (Empty()) return -1;
    const void* found = memchr(_bytes.get(), byte, static_cast<size_t>(_size));
    return found ? static_cast<int>(static_cast<const unsigned char*>(found) - _bytes.get()) : -1;
}

bool AData::IsEqual(const AObject* other) const {
    if (!other || other->GetObjectType() != kTypeData) return false;
    const AData& data = static_cast<const AData&>(*other);
    if (!_bytes && !data._bytes) return true;
    return _size == data._size && (_size == 0 || memcmp(Data(), data.Data(), static_cast<size_t>(_size)) == 0);
}

AData* AData::Clone() const {
    return new AData(*this);
}

bool AData::IsInside(const unsigned char* bytes) const {
    const std::less<const unsigned char*> before;
    return _bytes && !before(bytes, _bytes.get()) && before(bytes, _bytes.get() + _capacity);
}

}  // namespace Quern
