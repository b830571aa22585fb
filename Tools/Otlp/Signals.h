// What is sent: spans and log records, in the terms of OpenTelemetry (opentelemetry-proto 1.x), before they are JSON.
// Plain data, which its owner fills on one thread. A text may hold any bytes: what is no UTF-8 is replaced when the
// message is made (Messages.h).
#ifndef ORVANE_TOOLS_OTLP_SIGNALS_H
#define ORVANE_TOOLS_OTLP_SIGNALS_H

#include <stdint.h>

#include <string>
#include <utility>
#include <vector>

namespace OrvaneOtlp {

// One key with a text or a whole number.
struct Attribute {
    std::string key;   // such as "thread.id"; a dot parts the levels of a name
    std::string text;  // empty for a number
    int64_t number;    // 0 for a text
    bool isNumber;
};

// Attributes in the order in which they came. A key stands once: the last value of it holds.
class Attributes {
public:
    void Set(const std::string& key, const std::string& text) { Put({key, text, 0, false}); }
    void Set(const std::string& key, int64_t number) { Put({key, std::string(), number, true}); }
    const std::vector<Attribute>& List() const { return _list; }

private:
    // A walk over the list: records have some twenty attributes, and whoever sends them is in no hurry.
    void Put(Attribute attribute) {
        for (Attribute& known : _list) {
            if (known.key != attribute.key) continue;
            known = std::move(attribute);
            return;
        }
        _list.push_back(std::move(attribute));
    }

    std::vector<Attribute> _list;
};

// The numbers of Span.SpanKind and Status.StatusCode, those that are used here.
enum SpanKind { kSpanInternal = 1, kSpanClient = 3 };
enum SpanStatus { kStatusUnset = 0, kStatusOk = 1, kStatusError = 2 };

// Times are nanoseconds since 1970, by the device's clock.
struct Span {
    std::string traceId;       // 32 hexadecimal digits
    std::string spanId;        // 16
    std::string parentSpanId;  // 16, or empty for a root
    std::string name;
    SpanKind kind = kSpanInternal;
    uint64_t start = 0;
    uint64_t end = 0;
    SpanStatus status = kStatusUnset;  // unset: nobody judged whether it went well
    std::string statusMessage;         // for people; empty for none
    Attributes attributes;
};

// The numbers of SeverityNumber, those that are used here. Each level has four, and the first is the usual one.
enum SeverityNumber {
    kSeverityUnknown = 0,  // the message then has none
    kSeverityDebug = 5,
    kSeverityInfo = 9,
    kSeverityInfo4 = 12,  // the highest below a warning: the level "Event"
    kSeverityWarn = 13,
    kSeverityError = 17,
};

// One line of a log, or one event. Times as in Span.
struct LogRecord {
    std::string scope;      // who logs
    uint64_t time = 0;      // 0: not known
    uint64_t observed = 0;  // when it was taken in
    SeverityNumber severity = kSeverityUnknown;
    std::string severityText;  // the level's own word, as it was logged
    std::string body;          // the text
    std::string eventName;     // of a record that is an event
    Attributes attributes;
};

// The present time, by the device's clock. Any thread.
uint64_t NanosSinceEpoch();

}  // namespace OrvaneOtlp

#endif
