#include "Serializer/Arbor/ArborBufferBuffer.h"

#include <cstring>
#include <memory>

namespace Quern {

_tagArborBufferBuffer::~_tagArborBufferBuffer() {
    delete[] data;
}

_tagArborBufferBuffer* _tagArborBufferBuffer::Clone() const {
    auto clone = std::make_unique<_tagArborBufferBuffer>();
    return clone->decode(data, size) ? clone.release() : nullptr;
}

bool _tagArborBufferBuffer::encode(AString& out) const {
    if (!data || size < 1) return false;
    out.assign(data, size);
    return true;
}

bool _tagArborBufferBuffer::encode(char* buffer, int& capacity) const {
    if (!buffer || size >= capacity) return false;
    // Both fields are public: there may be a size without data.
    const int held = data && size > 0 ? size : 0;
    if (held > 0) memcpy(buffer, data, static_cast<size_t>(held));
    capacity = held;
    return true;
}

bool _tagArborBufferBuffer::decode(const char* bytes, int length) {
    if (!bytes || length < 1) return false;
    data = static_cast<char*>(memcpy(new char[static_cast<size_t>(length)], bytes, static_cast<size_t>(length)));
    size = length;
    return true;
}

bool _tagArborBufferBuffer::decode(const AString& bytes) {
    return decode(bytes.data(), bytes.length());
}

}  // namespace Quern
