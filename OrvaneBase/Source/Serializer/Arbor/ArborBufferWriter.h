// The encoding of the script bridge, as it is written. Integers are big-endian; there is no header, tag or padding.
//
//   bool, byte        1 byte
//   int, long long    4, 8 bytes
//   text              its length as int, then its bytes
//   array             its count as int, then each element
//   dictionary        its count as int, then each key followed by its value, in the order of insertion
//   object            its own fields
#ifndef ORVANE_SERIALIZER_ARBOR_ARBOR_BUFFER_WRITER_H
#define ORVANE_SERIALIZER_ARBOR_ARBOR_BUFFER_WRITER_H

#include <concepts>

#include "Base/Container/AArray.h"
#include "Base/Container/ADictionary.h"
#include "Serializer/Arbor/ArborBufferBase.h"

namespace Quern {

// The writer is itself the growing string of bytes. Belongs to one thread.
class CArborBufferWriter : public AString {
public:
    const AString& GetBufferData() const { return *this; }

    void Write(int value);
    void Write(long long value);
    void Write(unsigned char value);
    // A true bool only: a pointer, which the language would turn into one, is none.
    template <std::same_as<bool> T>
    void Write(T value) {
        Write(static_cast<unsigned char>(value));
    }
    void Write(const AString& text);
    // A number in the form of its own type; a float, a double and null have none and write nothing.
    void Write(const ANumber& number);
    void Write(const AArray& array);
    void Write(const ADictionary& dictionary);
    void Write(const _tagArborBufferBase& object);
    // Null writes nothing.
    void Write(const _tagArborBufferBase* object);
    // By the object's type; null and types without a form write nothing (an array counts such an element all the same).
    void Write(const AObject* object);
};

}  // namespace Quern

#endif
