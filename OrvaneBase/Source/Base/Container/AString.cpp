#include "Base/Container/AString.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "Base/Container/AArray.h"

namespace Quern {
namespace {

bool IsDigit(char character) {
    return character >= '0' && character <= '9';
}

bool IsLoneSign(const char* text) {
    return (*text == '-' || *text == '.') && text[1] == '\0';
}

}  // namespace

AString::AString(const char* text) : AString() {
    append(text);
}

AString::AString(const char* text, int length) : AString() {
    append(text, length);
}

AString& AString::operator=(const char* text) {
    _data = text;
    return *this;
}

AString& AString::assign(const char* text, int length) {
    if (text && length > 0) _data.Assign(reinterpret_cast<const unsigned char*>(text), length);
    return *this;
}

AString& AString::append(const char* text) {
    if (text && *text) _data.Append(text);
    return *this;
}

AString& AString::append(const char* text, int length) {
    if (text && length > 0) _data.Append(reinterpret_cast<const unsigned char*>(text), length);
    return *this;
}

AString& AString::append(const AString& other) {
    return append(other.c_str(), other.length());
}

bool AString::IsNumberic(const char* text) {
    if (IsNullOrEmpty(text) || IsLoneSign(text)) return false;
    if (*text == '-') ++text;
    bool hasPoint = false;
    for (; *text; ++text) {
        if (*text == '.') {
            if (hasPoint) return false;
            hasPoint = true;
        } else if (!IsDigit(*text)) {
            return false;
        }
    }
    return true;
}

bool AString::IsReal(const char* text) {
    if (IsNullOrEmpty(text) || IsLoneSign(text)) return false;
    bool hasPoint = false;
    for (; *text; ++text) {
        if (*text == '.') {
            if (hasPoint) return false;
            hasPoint = true;
        } else if (!IsDigit(*text) && *text != '-') {
            return false;
        }
    }
    return hasPoint;
}

long long AString::AsInt64() const {
    // Tested first, since strtoll takes "12abc" for 12. It stops at a ".", which cuts off the fraction.
    return IsNumberic() ? strtoll(c_str(), nullptr, 10) : 0;
}

double AString::AsDouble() const {
    return IsNumberic() ? strtod(c_str(), nullptr) : 0;
}

AString AString::Dump(const char* prefix) const {
    AString listing;
    for (int i = 0; i < length(); ++i) {
        char byte[3];
        snprintf(byte, sizeof byte, "%02x", static_cast<unsigned char>(at(i)));
        if (i > 0) listing += ',';
        listing.append(prefix ? prefix : "0x").append(byte);
    }
    return listing;
}

bool AString::Split(AArray* out, const char* text, const char* delimiters) {
    if (!out || !text || !delimiters) return false;
    for (;;) {
        const size_t length = strcspn(text, delimiters);
        out->Add(new AString(text, static_cast<int>(length)), true);
        if (!text[length]) return true;
        text += length + 1;
    }
}

bool AString::StartWith(const char* text, const char* prefix) {
    if (IsNullOrEmpty(text) || IsNullOrEmpty(prefix)) return false;
    return strncmp(text, prefix, strlen(prefix)) == 0;
}

bool AString::EndWith(const char* text, const char* suffix) {
    if (IsNullOrEmpty(text) || IsNullOrEmpty(suffix)) return false;
    const size_t textLength = strlen(text);
    const size_t suffixLength = strlen(suffix);
    return suffixLength <= textLength && memcmp(text + textLength - suffixLength, suffix, suffixLength) == 0;
}

bool AString::IsEqual(const AObject* other) const {
    if (!other || other->GetObjectType() != kTypeString) return false;
    return strcmp(c_str(), static_cast<const AString*>(other)->c_str()) == 0;
}

AString* AString::Clone() const {
    return new AString(*this);
}

}  // namespace Quern
