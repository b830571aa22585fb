#include "Base/Container/AStringBuilder.h"

#include <climits>

namespace Quern {

AStringBuilder::AStringBuilder(const char* text) : AStringBuilder() {
    Append(text);
}

AStringBuilder::AStringBuilder(const AString& text) : AStringBuilder() {
    Append(text);
}

AStringBuilder::AStringBuilder(const AString* text) : AStringBuilder() {
    Append(text);
}

AStringBuilder& AStringBuilder::operator=(const AString& text) {
    return *this = text.c_str();
}

AStringBuilder& AStringBuilder::operator=(const char* text) {
    _data = text;
    return *this;
}

AStringBuilder& AStringBuilder::Append(const char* text) {
    _data.Append(text);  // which makes room by the rule of resize
    return *this;
}

AStringBuilder& AStringBuilder::Append(const AString& text) {
    _data.Append(reinterpret_cast<const unsigned char*>(text.c_str()), text.length());
    return *this;
}

AStringBuilder& AStringBuilder::Append(const AString* text) {
    return text ? Append(*text) : *this;
}

void AStringBuilder::resize(int request) {
    if (_data.LeftSize() >= request) return;
    const int64_t capacity = 2 * (static_cast<int64_t>(_data.Size()) + request);
    _data.SetCapacity(capacity <= INT_MAX ? static_cast<int>(capacity) : INT_MAX);
}

bool AStringBuilder::IsEqual(const AObject* other) const {
    const auto* builder = dynamic_cast<const AStringBuilder*>(other);
    return builder && _data.IsEqual(&builder->_data);
}

AStringBuilder* AStringBuilder::Clone() const {
    return new AStringBuilder(*this);
}

}  // namespace Quern
