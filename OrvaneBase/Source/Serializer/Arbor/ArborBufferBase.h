// Objects that cross to the script layer, or into a file, as bytes: their fields one behind the other in an order that
// writer and reader agree on. Nothing in the bytes says what they are.
#ifndef ORVANE_SERIALIZER_ARBOR_ARBOR_BUFFER_BASE_H
#define ORVANE_SERIALIZER_ARBOR_ARBOR_BUFFER_BASE_H

#include "Base/Container/AString.h"

namespace Quern {

class CArborBufferReader;
class CArborBufferWriter;

// A class derives from this, and writes and reads its fields in WriteTo and ReadFrom. Sizes are in bytes.
class _tagArborBufferBase : public AObject {
public:
    _tagArborBufferBase* Clone() const override = 0;

    // Replaces `out`.
    virtual bool encode(AString& out) const;
    // Fills `buffer`, whose capacity is `size`, and sets `size` to what was written. The capacity must exceed that by
    // at least one. False, with nothing changed, if it does not or for a null buffer.
    virtual bool encode(char* buffer, int& size) const;
    // Takes the fields from the bytes. Fields behind the end of the input stay as they are (texts become empty), and
    // what stands behind the last field is ignored. False only for null.
    virtual bool decode(const char* data, int length);
    virtual bool decode(const AString& data);

    virtual void WriteTo(CArborBufferWriter& writer) const = 0;
    virtual void ReadFrom(CArborBufferReader& reader) = 0;
    // What goes ahead of the fields: nothing by default.
    virtual void BeforeEncode(CArborBufferWriter& writer) const;
    virtual void BeforeDecode(CArborBufferReader& reader);

    // What callers use.
    bool Encode(AString& out) const { return encode(out); }
    bool Decode(const char* data, int length) { return decode(data, length); }
    bool Decode(const AString& data) { return decode(data); }

protected:
    _tagArborBufferBase() : AObject(kTypeNone) {}
    _tagArborBufferBase(const _tagArborBufferBase&) = default;
    _tagArborBufferBase& operator=(const _tagArborBufferBase&) = default;
};

// Led by the number of an action.
class _tagArborActionBufferBase : public _tagArborBufferBase {
public:
    explicit _tagArborActionBufferBase(int number) : action(number) {}

    void BeforeEncode(CArborBufferWriter& writer) const override;
    void BeforeDecode(CArborBufferReader& reader) override;

    int action;
};

// An action without fields.
class _tagArborAction : public _tagArborActionBufferBase {
public:
    _tagArborAction() : _tagArborActionBufferBase(0) {}

    _tagArborAction* Clone() const override;
    void WriteTo(CArborBufferWriter&) const override {}
    void ReadFrom(CArborBufferReader&) override {}
};

// Carries the fields of one class over to another of the same order of fields; another order gives other values, which
// nothing can notice. False if either is null, or one does not encode or decode.
bool Convert(const _tagArborBufferBase* from, _tagArborBufferBase* to);

}  // namespace Quern

#endif
