// The reader of the script bridge's encoding. The first byte says how many of the following tell what is read, one kind
// each; the rest is the input. No read passes the end or takes more memory than the input accounts for, and an object
// that was read comes back from its own bytes.
#include "Serializer/Arbor/ArborBufferReader.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

#include "Serializer/Arbor/ArborBufferWriter.h"

using namespace Quern;

namespace {

void Require(bool condition) {
    if (!condition) abort();
}

class Record : public _tagArborActionBufferBase {
public:
    Record() : _tagArborActionBufferBase(1) {}

    Record* Clone() const override { return new Record(*this); }
    void WriteTo(CArborBufferWriter& writer) const override {
        writer.Write(text);
        writer.Write(number);
        writer.Write(flag);
        writer.Write(byte);
        writer.Write(texts);
        writer.Write(0);  // so that an empty array is not the last
    }
    void ReadFrom(CArborBufferReader& reader) override {
        reader.Read(text);
        reader.Read(number);
        reader.Read(flag);
        reader.Read(byte);
        reader.Read<AString>(texts);
        int last;
        reader.Read(last);
    }

    AString text;
    long long number = 0;
    bool flag = false;
    unsigned char byte = 0;
    AArray texts;
};

void ReadRecord(CArborBufferReader& reader) {
    Record record;
    reader.Read(record);
    AString bytes, again;
    Require(record.Encode(bytes));
    Record back;
    Require(Convert(&record, &back) && back.Encode(again));
    Require(bytes.length() == again.length() && memcmp(bytes.data(), again.data(), size_t(bytes.length())) == 0);
}

// A dictionary leaves behind the copies of its keys that KeyAt gives; they are freed here.
void ReadDictionary(CArborBufferReader& reader) {
    std::vector<std::unique_ptr<AObject>> keys;
    ADictionary dictionary;
    reader.Read<AString, Record>(dictionary);
    for (int i = 0; AObject* key = dictionary.KeyAt(i); ++i)
        keys.emplace_back(key);
    dictionary.RemoveAll();
}

void ReadOne(CArborBufferReader& reader, uint8_t kind, int size) {
    int number;
    long long longNumber;
    unsigned char byte;
    bool flag = false;
    AString text;
    AArray array;
    switch (kind % 9) {
        case 0:
            return reader.Read(number);
        case 1:
            return reader.Read(longNumber);
        case 2:
            return reader.Read(byte);
        case 3:
            return reader.Read(flag);
        case 4:
            reader.Read(text);
            Require(text.length() <= size);
            return;
        case 5:
            reader.Read<AString>(array);
            Require(array.Count() <= size);
            return;
        case 6:
            reader.Read<Record>(array);
            Require(array.Count() <= size);
            return;
        case 7:
            return ReadDictionary(reader);
        default:
            return ReadRecord(reader);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size == 0 || size < 1u + data[0]) return 0;
    const size_t kinds = data[0];
    const int length = static_cast<int>(size - 1 - kinds);
    CArborBufferReader reader(reinterpret_cast<const char*>(data + 1 + kinds), length);
    for (size_t i = 1; i <= kinds; ++i) {
        const int before = reader.GetPosition();
        ReadOne(reader, data[i], length);
        Require(before <= reader.GetPosition() && reader.GetPosition() <= length);
    }
    return 0;
}
