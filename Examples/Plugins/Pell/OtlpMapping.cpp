#include "OtlpMapping.h"

#include <json/json.h>
#include <stdlib.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <map>
#include <memory>

#include "Orvane/TraceParent.h"

namespace Pell {
namespace {

using OrvaneOtlp::Attributes;

// The numbered field in which the report service puts the user's id on every event.
constexpr char kOpenIdNumber[] = "110002";
constexpr char kFieldPrefix[] = "orvane.field.";

bool IsOpenId(const EventField& field) {
    return field.key == "openid" || field.key == kOpenIdNumber;
}

void SetField(Attributes& attributes, const std::string& key, const EventField& field) {
    if (field.isNumber)
        attributes.Set(key, static_cast<int64_t>(field.number));
    else
        attributes.Set(key, field.text);
}

// Microseconds in decimal digits, as nanoseconds; 0 for what is no such number, or negative.
uint64_t Nanos(const std::string& micros) {
    const long long number = atoll(micros.c_str());
    constexpr long long kMost = std::numeric_limits<long long>::max() / 1000;
    return static_cast<uint64_t>(std::max(0LL, std::min(number, kMost))) * 1000;
}

// The game's own tags, by their own names.
void SetTags(Attributes& attributes, const std::string& tags) {
    Json::Value object;
    const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
    try {
        if (!reader->parse(tags.data(), tags.data() + tags.size(), &object, nullptr) || !object.isObject()) return;
        for (const std::string& key : object.getMemberNames())
            if (!key.empty() && object[key].isString()) attributes.Set(key, object[key].asString());
    } catch (const Json::Exception&) {  // nested too deeply: nothing that the library made
    }
}

// The texts of the span's fields, each taken out once.
class Fields {
public:
    explicit Fields(const Event& event) {
        for (const EventField& field : event.fields)
            if (!field.isNumber) _texts[field.key] = field.text;
    }
    const std::string& operator[](const std::string& key) { return _texts[key]; }

private:
    std::map<std::string, std::string> _texts;
};

// "0" is the one code of success; a span that was sent without one has no outcome yet.
OrvaneOtlp::SpanStatus StatusOf(const std::string& errcode) {
    if (errcode.empty()) return OrvaneOtlp::kStatusUnset;
    return errcode == "0" ? OrvaneOtlp::kStatusOk : OrvaneOtlp::kStatusError;
}

void SetTimes(OrvaneOtlp::Span& span, uint64_t reported, const std::string& ts, const std::string& dur) {
    span.start = Nanos(ts);
    // A span that has not been finished ends as it is sent. The duration of one without a beginning counts from the
    // epoch: that is when it ended.
    span.end = dur.empty() ? reported : span.start + std::min(Nanos(dur), ~uint64_t(0) - span.start);
    if (span.start == 0) span.start = span.end;
    span.end = std::max(span.start, span.end);
}

}  // namespace

OrvaneOtlp::Span SpanOf(const Event& event, bool withOpenId) {
    Fields fields(event);
    OrvaneOtlp::Span span;
    span.traceId = Orvane::Plugin::sg_otel_trace_id(fields["tid"]);
    span.spanId = Orvane::Plugin::sg_otel_span_id(fields["sid"]);
    span.parentSpanId = Orvane::Plugin::sg_otel_span_id(fields["pid"]);
    span.name = fields["name"].empty() ? "unnamed" : fields["name"];
    // Whom a span asks is what makes it a client's.
    span.kind = fields["rmtname"].empty() ? OrvaneOtlp::kSpanInternal : OrvaneOtlp::kSpanClient;
    SetTimes(span, event.time, fields["ts"], fields["dur"]);
    span.status = StatusOf(fields["errcode"]);
    if (span.status == OrvaneOtlp::kStatusError) span.statusMessage = fields["errmsg"];

    SetTags(span.attributes, fields["tags"]);
    if (!fields["rmtname"].empty()) span.attributes.Set("peer.service", fields["rmtname"]);
    static const char* const kOwnAttributes[] = {"tid",     "sid",     "pid",    "buzid",  "setid",  "pritype",
                                                 "pubtype", "errcode", "errmsg", "openid", "locname"};
    static const char* const kMapped[] = {"kind", "name", "ts", "dur", "rmtname", "tags"};
    for (const EventField& field : event.fields) {
        const auto is = [&field](const char* key) { return field.key == key; };
        if ((IsOpenId(field) && !withOpenId) || std::any_of(std::begin(kMapped), std::end(kMapped), is)) continue;
        const bool isOwn = std::any_of(std::begin(kOwnAttributes), std::end(kOwnAttributes), is);
        SetField(span.attributes, (isOwn ? "orvane." : kFieldPrefix) + field.key, field);
    }
    return span;
}

OrvaneOtlp::LogRecord LogRecordOf(const Event& event, bool withOpenId) {
    OrvaneOtlp::LogRecord record;
    record.scope = "PELL";
    record.time = record.observed = event.time;
    record.severity = OrvaneOtlp::kSeverityInfo;
    record.body = record.eventName = event.name;
    record.attributes.Set("orvane.source", static_cast<int64_t>(event.source));
    for (const EventField& field : event.fields)
        if (withOpenId || !IsOpenId(field)) SetField(record.attributes, kFieldPrefix + field.key, field);
    return record;
}

}  // namespace Pell
