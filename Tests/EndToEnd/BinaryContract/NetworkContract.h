// The network's part of the binary contract, written down a second time as Contract.h does for the rest.
#ifndef ORVANE_TESTS_BINARY_CONTRACT_NETWORK_CONTRACT_H
#define ORVANE_TESTS_BINARY_CONTRACT_NETWORK_CONTRACT_H

namespace Contract {

struct NetworkListener {
    virtual ~NetworkListener() {}
    virtual void Changed(int state) = 0;
};

// What crosses in encoded form. Texts are the library's own; their storage is all that is known of them.
struct Record {
    virtual ~Record() {}
    virtual bool IsEqual(const Record* other) const = 0;
    virtual Record* Clone() const = 0;
    virtual bool EncodeText(void* text) const = 0;
    virtual bool Encode(char* bytes, int& capacity) const = 0;
    virtual bool Decode(const char* bytes, int size) = 0;
    virtual bool DecodeText(const void* text) = 0;
    virtual void Write(void* writer) const = 0;
    virtual void Read(void* reader) = 0;
    virtual void BeforeWrite(void* writer) const = 0;
    virtual void BeforeRead(void* reader) = 0;
};

// Room for the detail record, which the library makes in it and whose destructor is the record's own.
struct DetailRoom {
    ~DetailRoom() { get()->~Record(); }
    Record* get() { return reinterpret_cast<Record*>(bytes); }
    // The first three texts: the carrier's code, the network's name, the access point.
    void* Text(int index) { return bytes + 24 + 48 * index; }
    alignas(8) char bytes[24 + 4 * 48];
};

struct Network {
    virtual ~Network() {}
    virtual int State() = 0;
    virtual DetailRoom Detail() = 0;
    virtual void Callback(void (*callback)(int state)) = 0;
    virtual void Add(NetworkListener* listener) = 0;
    virtual void Remove(NetworkListener* listener) = 0;
};

}  // namespace Contract

#endif
