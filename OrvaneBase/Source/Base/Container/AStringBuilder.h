// A text that is put together piece by piece.
#ifndef ORVANE_BASE_CONTAINER_A_STRING_BUILDER_H
#define ORVANE_BASE_CONTAINER_A_STRING_BUILDER_H

#include "Base/Container/AString.h"

namespace Quern {

// A null source adds nothing. The object carries no type of its own.
class AStringBuilder : public AObject {
public:
    AStringBuilder() : AObject(kTypeNone) {}
    explicit AStringBuilder(const char* text);
    explicit AStringBuilder(const AString& text);
    explicit AStringBuilder(const AString* text);
    AStringBuilder(const AStringBuilder& other) = default;
    AStringBuilder& operator=(const AStringBuilder& other) = default;
    // These two replace what is there: with nothing for a null or empty text, and only up to a text's first zero byte.
    AStringBuilder& operator=(const AString& text);
    AStringBuilder& operator=(const char* text);

    AStringBuilder& Append(const char* text);
    AStringBuilder& Append(const AString& text);
    AStringBuilder& Append(const AString* text);
    AStringBuilder& operator+=(const char* text) { return Append(text); }
    AStringBuilder& operator+=(const AString& text) { return Append(text); }

    // Makes room for that many more bytes, and for as much again.
    void resize(int request);
    // Null while there is no buffer, so after Clear too. Terminated. Valid until the next change.
    const char* ToString() const { return reinterpret_cast<const char*>(_data.Data()); }
    void Clear() { _data.Clear(); }

    // Whether the other is a builder of the same bytes.
    bool IsEqual(const AObject* other) const override;
    AStringBuilder* Clone() const override;

private:
    AData _data;
};

}  // namespace Quern

#endif
