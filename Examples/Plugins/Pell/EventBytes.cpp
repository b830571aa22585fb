#include "EventBytes.h"

#include <string.h>

namespace Pell {
namespace {

// What comes next in the bytes.
enum Tag : char { kNamedText, kNumberedText, kNumberedNumber };

// As much as a span takes with a few tags, so that adding its fields allocates once.
constexpr size_t kUsualSize = 768;

// In front of a text's bytes stands their number.
constexpr size_t kTextHead = sizeof(uint32_t);

size_t LengthOf(const char* value, int length) {
    return value && length > 0 ? static_cast<size_t>(length) : 0;
}

// These give the place behind what they wrote.
template <typename Number>
char* Put(char* to, Number number) {
    memcpy(to, &number, sizeof number);
    return to + sizeof number;
}

char* PutText(char* to, const char* text, size_t length) {
    to = Put(to, static_cast<uint32_t>(length));
    if (length > 0) memcpy(to, text, length);
    return to + length;
}

class Reader {
public:
    explicit Reader(const std::string& bytes) : _at(bytes.data()), _end(bytes.data() + bytes.size()) {}
    bool IsAtEnd() const { return _at >= _end; }

    template <typename Number>
    Number Take() {
        Number number = 0;
        if (static_cast<size_t>(_end - _at) >= sizeof number) memcpy(&number, _at, sizeof number);
        Skip(sizeof number);
        return number;
    }
    std::string TakeText() {
        const size_t wanted = Take<uint32_t>(), left = static_cast<size_t>(_end - _at);
        const std::string text(_at, wanted < left ? wanted : left);
        Skip(wanted);
        return text;
    }

private:
    void Skip(size_t size) { _at = size < static_cast<size_t>(_end - _at) ? _at + size : _end; }

    const char* _at;
    const char* const _end;
};

}  // namespace

EventBytes::EventBytes(int source, const char* name) {
    _bytes.reserve(kUsualSize);
    const size_t length = strlen(name);
    char* to = Grow(sizeof(uint64_t) + sizeof source + kTextHead + length) + sizeof(uint64_t);
    PutText(Put(to, source), name, length);
}

void EventBytes::Add(const char* key, const char* value, int length) {
    if (!key) return;
    const size_t keyLength = strlen(key), valueLength = LengthOf(value, length);
    char* to = Grow(sizeof(Tag) + kTextHead + keyLength + kTextHead + valueLength);
    PutText(PutText(Put(to, kNamedText), key, keyLength), value, valueLength);
}

void EventBytes::Add(int key, const char* value, int length) {
    const size_t valueLength = LengthOf(value, length);
    char* to = Grow(sizeof(Tag) + sizeof key + kTextHead + valueLength);
    PutText(Put(Put(to, kNumberedText), key), value, valueLength);
}

void EventBytes::Add(int key, int value) {
    Put(Put(Put(Grow(sizeof(Tag) + sizeof key + sizeof value), kNumberedNumber), key), value);
}

std::string EventBytes::ReportedAt(uint64_t time) const {
    std::string reported = _bytes;
    memcpy(&reported[0], &time, sizeof time);
    return reported;
}

Event EventBytes::Read(const std::string& reported) {
    Reader reader(reported);
    Event event;
    event.time = reader.Take<uint64_t>();
    event.source = reader.Take<int>();
    event.name = reader.TakeText();
    while (!reader.IsAtEnd()) {
        EventField field;
        const char tag = reader.Take<char>();
        field.key = tag == kNamedText ? reader.TakeText() : std::to_string(reader.Take<int>());
        field.isNumber = tag == kNumberedNumber;
        field.number = field.isNumber ? reader.Take<int>() : 0;
        if (!field.isNumber) field.text = reader.TakeText();
        event.fields.push_back(field);
    }
    return event;
}

char* EventBytes::Grow(size_t size) {
    const size_t before = _bytes.size();
    _bytes.resize(before + size);
    return &_bytes[before];
}

}  // namespace Pell
