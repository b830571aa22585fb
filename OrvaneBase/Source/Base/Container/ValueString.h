// The key of an entry of a Value: a name, or the index of an array's element.
#ifndef ORVANE_BASE_CONTAINER_VALUE_STRING_H
#define ORVANE_BASE_CONTAINER_VALUE_STRING_H

#include <cstdint>

namespace Quern {

// A copy of a text, made by malloc and terminated; null for null. A length of 0xFFFFFFFF or 0xFFFFFFFE has it measured.
// Given back through releaseStringValue.
char* duplicateStringValue(const char* text, unsigned int length = 0xFFFFFFFF);
void releaseStringValue(char* text);

enum DuplicationPolicy : int32_t {
    kNoDuplication = 0,    // borrows the text, and so do its copies
    kDuplicate = 1,        // owns a copy of the text
    kDuplicateOnCopy = 2,  // borrows the text, but each of its copies owns one
};

// A borrowed text must outlive the key. One map holds keys of one kind alone: they do not compare with each other.
class ValueString {
public:
    explicit ValueString(int index);
    // REQUIRES: `text` is not null.
    ValueString(const char* text, DuplicationPolicy policy);
    ValueString(const ValueString& other);
    ValueString& operator=(ValueString other);
    ~ValueString();

    // Names in the order of strcmp, indices by number.
    friend bool operator<(const ValueString& left, const ValueString& right);
    friend bool operator==(const ValueString& left, const ValueString& right);

    // The index; of a name, its policy.
    int index() const { return _indexOrPolicy; }
    // The name, or null.
    const char* c_str() const { return _text; }
    bool isStaticString() const { return _text && _indexOrPolicy == kNoDuplication; }

private:
    char* _text;
    int32_t _indexOrPolicy;
};

}  // namespace Quern

#endif
