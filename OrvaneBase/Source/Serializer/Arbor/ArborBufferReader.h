// The encoding of the script bridge, as it is read. ArborBufferWriter.h tells the bytes.
#ifndef ORVANE_SERIALIZER_ARBOR_ARBOR_BUFFER_READER_H
#define ORVANE_SERIALIZER_ARBOR_ARBOR_BUFFER_READER_H

#include <algorithm>
#include <memory>
#include <type_traits>

#include "Base/Container/AArray.h"
#include "Base/Container/ADictionary.h"
#include "Serializer/Arbor/ArborBufferBase.h"

namespace Quern {

// No read fails or passes the end of the input, whatever the input: what is not there leaves its target as it was, but
// for texts, which become empty. Belongs to one thread.
class CArborBufferReader {
public:
    // Copies the input. Null is an empty one, and so is a length below 1.
    CArborBufferReader(const char* data, int length) : _buffer(data, length) {}
    explicit CArborBufferReader(const AString& data) : _buffer(data) {}

    // How many bytes have been read.
    int GetPosition() const { return _position; }
    bool IsAtEnd() const { return _position >= _buffer.length(); }

    // A number that is cut short uses the input up.
    void Read(int& value);
    void Read(long long& value);
    void Read(unsigned char& value);
    // Every byte but 0 is true.
    void Read(bool& value);
    // A length that the rest of the input cannot hold, or a negative one, gives an empty text, and the reader stays
    // behind the length.
    void Read(AString& text);
    void Read(_tagArborBufferBase& object);
    // Null reads nothing.
    void Read(_tagArborBufferBase* object);

    // Replaces the content by as many elements as the input names and holds. T says what they are: a class that this
    // reads, or bool, unsigned char, int or long long, which become ANumbers. Nothing changes if the input ends with
    // the count, an empty array's too.
    template <typename T>
    void Read(AArray& array) {
        int count;
        if (!ReadCount(count)) return;
        array.RemoveAll();
        for (int i = 0; i < count && !IsAtEnd(); ++i)
            array.Add(ReadObject<T>().release(), true);
    }

    // The same for entries. An entry whose value is missing is kept with what a new object holds.
    template <typename Key, typename Value>
    void Read(ADictionary& dictionary) {
        int count;
        if (!ReadCount(count)) return;
        dictionary.RemoveAll();
        for (int i = 0; i < count && !IsAtEnd(); ++i) {
            const std::unique_ptr<AObject> key = ReadObject<Key>();
            dictionary.Set(*key, static_cast<const AObject&>(*ReadObject<Value>()));
        }
    }

private:
    // False at the end of the input. The count is at most that of the bytes which follow, so that elements without
    // bytes come to an end as well.
    bool ReadCount(int& count);

    template <typename T>
    std::unique_ptr<AObject> ReadObject() {
        if constexpr (std::is_arithmetic_v<T>) {
            T value{};
            Read(value);
            return std::make_unique<ANumber>(value);
        } else {
            auto object = std::make_unique<T>();
            Read(*object);
            return object;
        }
    }

    template <typename Integer>
    void ReadInteger(Integer& value);

    int _position = 0;
    AString _buffer;
};

}  // namespace Quern

#endif
