// The family's text: bytes of a caller's encoding, terminated.
#ifndef ORVANE_BASE_CONTAINER_A_STRING_H
#define ORVANE_BASE_CONTAINER_A_STRING_H

#include <utility>

#include "Base/Container/AData.h"

namespace Quern {

class AArray;

// A null text is an empty one wherever a whole text is given. Lengths are in bytes.
class AString : public AObject {
public:
    AString() : AObject(kTypeString) {}
    AString(const char* text);  // NOLINT(google-explicit-constructor): texts are passed as AString everywhere
    AString(const char* text, int length);
    AString(const AString& other) = default;
    AString(AString&& other) noexcept = default;
    AString& operator=(const AString& other) = default;
    AString& operator=(AString&& other) noexcept = default;
    AString& operator=(const char* text);

    // Null and a length below 1 are ignored: they leave the text as it is, in assign too.
    AString& assign(const char* text, int length);
    AString& append(const char* text);
    AString& append(const char* text, int length);
    AString& append(const AString& other);
    AString& operator+=(const char* text) { return append(text); }
    AString& operator+=(char character) { return append(&character, 1); }
    AString& operator+=(const AString& other) { return append(other); }

    // Never null.
    const char* c_str() const { return _data.Empty() ? "" : reinterpret_cast<const char*>(_data.Data()); }
    const char* CString() const { return c_str(); }
    const char* data() const { return c_str(); }
    int length() const { return _data.Size(); }
    int size() const { return _data.Size(); }
    int GetLength() const { return _data.Size(); }
    // REQUIRES: 0 <= index <= length().
    char at(int index) const { return c_str()[index]; }
    bool Empty() const { return _data.Empty(); }
    bool empty() const { return _data.Empty(); }
    void Clear() { _data.Clear(); }
    void clear() { _data.Clear(); }
    // The index of the first such byte, or -1.
    int Find(int byte) const { return _data.Find(byte); }

    static bool IsNullOrEmpty(const char* text) { return !text || !*text; }
    static bool IsNullOrEmpty(const AString& text) { return text.Empty(); }
    static bool IsNullOrEmpty(const AString* text) { return !text || text->Empty(); }

    // Digits with at most one ".", behind a "-" if there is one. "-." passes, "-" and "." alone do not.
    static bool IsNumberic(const char* text);
    // Digits, one "." and any number of "-" anywhere; the "." must be there.
    static bool IsReal(const char* text);
    bool IsNumberic() const { return IsNumberic(c_str()); }
    bool IsReal() const { return IsReal(c_str()); }

    // 0 unless IsNumberic holds. The narrow forms cut the wide ones; AsBoolean is whether AsInt is not 0, so that the
    // text "true" is false.
    bool AsBoolean() const { return AsInt() != 0; }
    int AsInt() const { return static_cast<int>(AsInt64()); }
    long long AsInt64() const;
    double AsDouble() const;
    float AsFloat() const { return static_cast<float>(AsDouble()); }

    // Each byte as two hexadecimal digits behind the prefix, with a comma between bytes. A null prefix is "0x".
    AString Dump(const char* prefix) const;

    // Adds each token to `out`, as a string that it owns. Any byte of `delimiters` ends a token, so that adjacent ones
    // give empty tokens, and an empty text gives one empty token. False if an argument is null.
    static bool Split(AArray* out, const char* text, const char* delimiters);

    // False if either is null or empty.
    static bool StartWith(const char* text, const char* prefix);
    static bool EndWith(const char* text, const char* suffix);
    bool StartWith(const char* prefix) const { return StartWith(c_str(), prefix); }
    bool EndWith(const char* suffix) const { return EndWith(c_str(), suffix); }

    // Whether the other is a text, and the same up to the first zero byte.
    bool IsEqual(const AObject* other) const override;
    AString* Clone() const override;

    friend bool operator==(const AString& left, const AString& right) { return left.IsEqual(&right); }
    friend AString operator+(AString left, const AString& right) { return std::move(left += right); }
    friend AString operator+(AString left, const char* right) { return std::move(left += right); }

private:
    AData _data;
};

}  // namespace Quern

#endif
