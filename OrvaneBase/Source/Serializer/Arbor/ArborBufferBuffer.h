// Bytes that are passed on as they are, in the place of an object.
#ifndef ORVANE_SERIALIZER_ARBOR_ARBOR_BUFFER_BUFFER_H
#define ORVANE_SERIALIZER_ARBOR_ARBOR_BUFFER_BUFFER_H

#include "Serializer/Arbor/ArborBufferBase.h"

namespace Quern {

// Encoding and decoding are plain copies. As a field of another object it has no bytes.
class _tagArborBufferBuffer : public _tagArborBufferBase {
public:
    _tagArborBufferBuffer() = default;
    _tagArborBufferBuffer(const _tagArborBufferBuffer&) = delete;
    _tagArborBufferBuffer& operator=(const _tagArborBufferBuffer&) = delete;
    ~_tagArborBufferBuffer() override;

    // Null if there is nothing to copy.
    _tagArborBufferBuffer* Clone() const override;

    // False without data.
    bool encode(AString& out) const override;
    // Without data writes nothing, and succeeds if there is any capacity.
    bool encode(char* buffer, int& capacity) const override;
    // For a new object: earlier data is not freed, and stays with whoever took it. False, with nothing changed, for
    // null or a length below 1.
    bool decode(const char* bytes, int length) override;
    bool decode(const AString& bytes) override;
    void WriteTo(CArborBufferWriter&) const override {}
    void ReadFrom(CArborBufferReader&) override {}

    char* data = nullptr;  // made by new[]; owned
    int size = 0;
};

}  // namespace Quern

#endif
