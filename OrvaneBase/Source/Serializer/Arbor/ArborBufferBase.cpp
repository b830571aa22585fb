#include "Serializer/Arbor/ArborBufferBase.h"

#include <cstring>
#include <utility>

#include "Serializer/Arbor/ArborBufferReader.h"
#include "Serializer/Arbor/ArborBufferWriter.h"

namespace Quern {

bool _tagArborBufferBase::encode(AString& out) const {
    CArborBufferWriter writer;
    writer.Write(*this);
    out = std::move(static_cast<AString&>(writer));  // the writer is the text: nothing is copied
    return true;
}

bool _tagArborBufferBase::encode(char* buffer, int& size) const {
    if (!buffer) return false;
    CArborBufferWriter writer;
    writer.Write(*this);
    if (writer.length() >= size) return false;
    memcpy(buffer, writer.data(), static_cast<size_t>(writer.length()));
    size = writer.length();
    return true;
}

bool _tagArborBufferBase::decode(const char* data, int length) {
    if (!data) return false;
    CArborBufferReader(data, length).Read(*this);
    return true;
}

bool _tagArborBufferBase::decode(const AString& data) {
    CArborBufferReader(data).Read(*this);
    return true;
}

void _tagArborBufferBase::BeforeEncode(CArborBufferWriter&) const {}

void _tagArborBufferBase::BeforeDecode(CArborBufferReader&) {}

void _tagArborActionBufferBase::BeforeEncode(CArborBufferWriter& writer) const {
    writer.Write(action);
}

void _tagArborActionBufferBase::BeforeDecode(CArborBufferReader& reader) {
    reader.Read(action);
}

_tagArborAction* _tagArborAction::Clone() const {
    return new _tagArborAction(*this);
}

bool Convert(const _tagArborBufferBase* from, _tagArborBufferBase* to) {
    AString bytes;
    return from && to && from->Encode(bytes) && to->Decode(bytes);
}

}  // namespace Quern
