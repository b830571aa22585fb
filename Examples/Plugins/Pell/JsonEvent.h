// An event that is reported as one line of JSON.
//
//     {"event":"OrvaneSDK_Versions","source":2000,"fields":[{"key":"PELL","text":"3.2"},{"key":100001,"int":3}]}
//
// Named fields have a text as key, numbered fields a number. The fields stand in the order in which they were added,
// and a key that was added twice stands twice.
#ifndef ORVANE_EXAMPLES_PELL_JSON_EVENT_H
#define ORVANE_EXAMPLES_PELL_JSON_EVENT_H

#include <string>

#include "Orvane/IEvent.h"

namespace Pell {

// One thread at a time.
class JsonEvent final : public Orvane::Plugin::IEvent {
public:
    JsonEvent(int source, const char* name);
    void Add(const char* key, const char* value, int length) override;
    void Add(int key, const char* value, int length) override;
    void Add(int key, int value) override;
    // Appends the line to the file that PELL_EVENTS names, else to pell-events.jsonl in the working directory, with one
    // write, so that the events of several threads and processes do not mix. A failure is told on the console.
    void Report() override;

private:
    void AddField(const std::string& key, const std::string& typed);

    std::string _head;
    std::string _fields;
};

// The text as a JSON string with its quotes. Bytes that are not UTF-8 become U+FFFD.
std::string JsonText(const char* text, size_t length);

}  // namespace Pell

#endif
