#include "Serializer/Arbor/ArborBufferWriter.h"

#include <cstdint>

namespace Quern {
namespace {

template <typename Unsigned>
void AppendBigEndian(AString& out, Unsigned value) {
    char bytes[sizeof value];
    for (size_t i = sizeof value; i-- > 0; value >>= 8)
        bytes[i] = static_cast<char>(value & 0xFF);
    out.append(bytes, sizeof bytes);
}

}  // namespace

void CArborBufferWriter::Write(int value) {
    AppendBigEndian(*this, static_cast<uint32_t>(value));
}

void CArborBufferWriter::Write(long long value) {
    AppendBigEndian(*this, static_cast<uint64_t>(value));
}

void CArborBufferWriter::Write(unsigned char value) {
    *this += static_cast<char>(value);
}

void CArborBufferWriter::Write(const AString& text) {
    Write(text.length());
    append(text);
}

void CArborBufferWriter::Write(const ANumber& number) {
    switch (number.GetType()) {
        case kNumberBool:
            return Write(number.BoolValue());
        case kNumberByte:
            return Write(number.ByteValue());
        case kNumberInt32:
            return Write(number.IntValue());
        case kNumberInt64:
            return Write(number.LongLongValue());
        case kNumberNull:
        case kNumberFloat:
        case kNumberDouble:
            return;
    }
}

void CArborBufferWriter::Write(const AArray& array) {
    Write(array.Count());
    for (int i = 0; i < array.Count(); ++i)
        Write(array.ObjectAtIndex(i));
}

void CArborBufferWriter::Write(const ADictionary& dictionary) {
    Write(dictionary.Count());
    for (const auto& [key, value] : dictionary.EntriesInOrder()) {
        Write(key);
        Write(value);
    }
}

void CArborBufferWriter::Write(const _tagArborBufferBase& object) {
    object.BeforeEncode(*this);
    object.WriteTo(*this);
}

void CArborBufferWriter::Write(const _tagArborBufferBase* object) {
    if (object) Write(*object);
}

void CArborBufferWriter::Write(const AObject* object) {
    if (!object) return;
    switch (object->GetObjectType()) {
        case kTypeNone:  // other classes than ours have this type as well
            return Write(dynamic_cast<const _tagArborBufferBase*>(object));
        case kTypeString:
            return Write(static_cast<const AString&>(*object));
        case kTypeNumber:
            return Write(static_cast<const ANumber&>(*object));
        case kTypeArray:
            return Write(static_cast<const AArray&>(*object));
        case kTypeDictionary:
            return Write(static_cast<const ADictionary&>(*object));
        case kTypeData:
            return;
    }
}

}  // namespace Quern
