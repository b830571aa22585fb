#include "Base/Container/ValueString.h"

#include <cstdlib>
#include <cstring>
#include <utility>

namespace Quern {
namespace {

constexpr unsigned int kFirstMeasuredLength = 0xFFFFFFFE;

}  // namespace

char* duplicateStringValue(const char* text, unsigned int length) {
    if (!text) return nullptr;
    const size_t size = length >= kFirstMeasuredLength ? strlen(text) : length;
    char* copy = static_cast<char*>(malloc(size + 1));
    memcpy(copy, text, size);
    copy[size] = '\0';
    return copy;
}

void releaseStringValue(char* text) {
    free(text);
}

ValueString::ValueString(int index) : _text(nullptr), _indexOrPolicy(index) {}

ValueString::ValueString(const char* text, DuplicationPolicy policy)
    : _text(policy == kDuplicate ? duplicateStringValue(text) : const_cast<char*>(text)), _indexOrPolicy(policy) {}

ValueString::ValueString(const ValueString& other) : _text(other._text), _indexOrPolicy(other._indexOrPolicy) {
    if (!_text || _indexOrPolicy == kNoDuplication) return;
    _text = duplicateStringValue(_text);
    _indexOrPolicy = kDuplicate;
}

ValueString& ValueString::operator=(ValueString other) {
    std::swap(_text, other._text);
    std::swap(_indexOrPolicy, other._indexOrPolicy);
    return *this;
}

ValueString::~ValueString() {
    // The text is looked at first, in the copy above too: an index may be the number of a policy.
    if (_text && _indexOrPolicy == kDuplicate) releaseStringValue(_text);
}

bool operator<(const ValueString& left, const ValueString& right) {
    return left._text ? strcmp(left._text, right._text) < 0 : left._indexOrPolicy < right._indexOrPolicy;
}

bool operator==(const ValueString& left, const ValueString& right) {
    return left._text ? strcmp(left._text, right._text) == 0 : left._indexOrPolicy == right._indexOrPolicy;
}

}  // namespace Quern
