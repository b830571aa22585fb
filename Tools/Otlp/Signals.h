// What is sent: spans and log records, in the terms of OpenTelemetry (opentelemetry-proto 1.x), before they are JSON.
#ifndef ORVANE_TOOLS_OTLP_SIGNALS_H
#define ORVANE_TOOLS_OTLP_SIGNALS_H

#include <stdint.h>

#include <string>
#include <utility>
#include <vector>

namespace OrvaneOtlp {

struct Attribute {
    std::string key;
    std::string text;
    int64_t number;
    bool isNumber;
};

// Attributes in the order in which they came. A key stands once: the last value of it holds.
class Attributes {
public:
    void Set(const std::string& key, const std::string& text) { Put({key, text, 0, false}); }
    void Set(const std::string& key, int64_t number) { Put({key, std::string(), number, true}); }
    const std::vector<Attribute>& List() const { return _list; }

private:
    // Records have some twenty attributes, and whoever sends them is in no hurry.
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

enum SpanKind { kSpanInternal = 1, kSpanClient = 3 };
enum SpanStatus { kStatusUnset = 0, kStatusOk = 1, kStatusError = 2 };

// Times are nanoseconds since the epoch.
struct Span {
    std::string traceId;       // 32 hexadecimal digits
    std::string spanId;        // 16
    std::string parentSpanId;  // 16, or empty for a root
    std::string name;
    SpanKind kind = kSpanInternal;
    uint64_t start = 0;
    uint64_t end = 0;
    SpanStatus status = kStatusUnset;
    std::string statusMessage;
    Attributes attributes;
};

enum SeverityNumber {
    kSeverityUnknown = 0,
    kSeverityDebug = 5,
    kSeverityInfo = 9,
    kSeverityInfo4 = 12,
    kSeverityWarn = 13,
    kSeverityError = 17,
};

struct LogRecord {
    std::string scope;      // who logs
    uint64_t time = 0;      // 0: not known
    uint64_t observed = 0;  // when it was taken in
    SeverityNumber severity = kSeverityUnknown;
    std::string severityText;
    std::string body;
    std::string eventName;  // of a record that is an event
    Attributes attributes;
};

// The present time.
uint64_t NanosSinceEpoch();

}  // namespace OrvaneOtlp

#endif
