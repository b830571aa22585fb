// An event as bytes, between whoever reports it and the thread that sends it: fields go in at the cost of a copy each,
// and are taken apart where nobody waits.
#ifndef ORVANE_EXAMPLES_PELL_EVENT_BYTES_H
#define ORVANE_EXAMPLES_PELL_EVENT_BYTES_H

#include <stddef.h>
#include <stdint.h>

#include <string>
#include <vector>

namespace Pell {

struct EventField {
    std::string key;  // of a numbered field its number in decimal digits
    std::string text;
    int number;
    bool isNumber;  // it holds `number`, not `text`
};

struct Event {
    uint64_t time;  // when it was reported, in nanoseconds since the epoch
    int source;
    std::string name;
    std::vector<EventField> fields;
};

// The bytes of one event, which grows by fields. For the process alone: numbers are as the machine has them.
class EventBytes {
public:
    EventBytes(int source, const char* name);
    void Add(const char* key, const char* value, int length);
    void Add(int key, const char* value, int length);
    void Add(int key, int value);

    // The event as reported now.
    std::string ReportedAt(uint64_t time) const;
    static Event Read(const std::string& reported);

private:
    // Room for so many bytes more, which the caller fills.
    char* Grow(size_t size);

    std::string _bytes;  // begins with room for the time
};

}  // namespace Pell

#endif
