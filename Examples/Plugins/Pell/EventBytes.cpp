#include "EventBytes.h"

#include <string.h>

namespace Pell {
namespace {

// What comes next in the bytes.
enum Tag : char { kNamedText, kNumberedText, kNumberedNumber };

// As much as a span takes with a few tags, so that adding its fields allocates once.
constexpr size_t kUsualSize = 768;

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
    _bytes.append(sizeof(uint64_t), '\0');
    Put(&source, sizeof source);
    PutText(name, strlen(name));
}

void EventBytes::Add(const char* key, const char* value, int length) {
    if (!key) return;
    _bytes += kNamedText;
    PutText(key, strlen(key));
    PutText(value, value && length > 0 ? static_cast<size_t>(length) : 0);
}

void EventBytes::Add(int key, const char* value, int length) {
    _bytes += kNumberedText;
    Put(&key, sizeof key);
    PutText(value, value && length > 0 ? static_cast<size_t>(length) : 0);
}

void EventBytes::Add(int key, int value) {
    _bytes += kNumberedNumber;
    Put(&key, sizeof key);
    Put(&value, sizeof value);
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

void EventBytes::PutText(const char* text, size_t length) {
    const uint32_t size = static_cast<uint32_t>(length);
    Put(&size, sizeof size);
    Put(text, length);
}

}  // namespace Pell
