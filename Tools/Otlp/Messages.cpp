#include "Otlp/Messages.h"

#include <json/json.h>

#include <algorithm>
#include <charconv>
#include <chrono>
#include <map>
#include <memory>
#include <string_view>

#include "Base/CompactJson.h"
#include "Support/PrintableText.h"

namespace OrvaneOtlp {
namespace {

constexpr size_t kLongestRefusal = 200;

// Texts of games may hold any bytes, and jsoncpp takes them as they come; a receiver refuses the whole request.
std::string ValidUtf8(const std::string& text) {
    std::string valid;
    for (size_t at = 0; at < text.size();) {
        const size_t length = OrvaneTools::Utf8Length(std::string_view(text).substr(at));
        if (length == 0)
            valid += "\xEF\xBF\xBD";
        else
            valid.append(text, at, length);
        at += std::max<size_t>(length, 1);
    }
    return valid;
}

Json::Value AttributesJson(const Attributes& attributes) {
    Json::Value list(Json::arrayValue);
    for (const Attribute& attribute : attributes.List()) {
        Json::Value entry;
        entry["key"] = ValidUtf8(attribute.key);
        if (attribute.isNumber)
            entry["value"]["intValue"] = std::to_string(attribute.number);
        else
            entry["value"]["stringValue"] = ValidUtf8(attribute.text);
        list.append(std::move(entry));
    }
    return list;
}

Json::Value SpanJson(const Span& span) {
    Json::Value json;
    json["traceId"] = span.traceId;
    json["spanId"] = span.spanId;
    if (!span.parentSpanId.empty()) json["parentSpanId"] = span.parentSpanId;
    json["name"] = ValidUtf8(span.name);
    json["kind"] = static_cast<int>(span.kind);
    json["startTimeUnixNano"] = std::to_string(span.start);
    json["endTimeUnixNano"] = std::to_string(span.end);
    json["attributes"] = AttributesJson(span.attributes);
    json["status"] = Json::Value(Json::objectValue);
    if (span.status != kStatusUnset) json["status"]["code"] = static_cast<int>(span.status);
    if (!span.statusMessage.empty()) json["status"]["message"] = ValidUtf8(span.statusMessage);
    return json;
}

Json::Value LogRecordJson(const LogRecord& record) {
    Json::Value json;
    if (record.time != 0) json["timeUnixNano"] = std::to_string(record.time);
    json["observedTimeUnixNano"] = std::to_string(record.observed);
    if (record.severity != kSeverityUnknown) json["severityNumber"] = static_cast<int>(record.severity);
    if (!record.severityText.empty()) json["severityText"] = ValidUtf8(record.severityText);
    json["body"]["stringValue"] = ValidUtf8(record.body);
    if (!record.eventName.empty()) json["eventName"] = ValidUtf8(record.eventName);
    json["attributes"] = AttributesJson(record.attributes);
    return json;
}

// {"resourceXs":[{"resource":{..},"scopeXs":[..]}]}
std::string Message(const char* resources, const char* scopes, const Attributes& resource, Json::Value scopeList) {
    Json::Value entry;
    entry["resource"]["attributes"] = AttributesJson(resource);
    entry[scopes] = std::move(scopeList);
    Json::Value message;
    message[resources].append(std::move(entry));
    return Quern::WriteCompactJson(message);
}

// An answer's JSON; null for anything else.
Json::Value Parse(const std::string& text) {
    Json::Value value;
    const std::unique_ptr<Json::CharReader> reader(Json::CharReaderBuilder().newCharReader());
    try {
        if (!reader->parse(text.data(), text.data() + text.size(), &value, nullptr)) return {};
    } catch (const Json::Exception&) {  // nested too deeply
        return {};
    }
    return value;
}

std::string TextMember(const Json::Value& object, const char* name) {
    const Json::Value member = object.isObject() ? object.get(name, "") : Json::Value("");
    return member.isString() ? member.asString() : "";
}

// A 64-bit number is a text, but a receiver may also write it as a number.
uint64_t CountMember(const Json::Value& object, const char* name) {
    const Json::Value member = object.isObject() ? object.get(name, 0) : Json::Value(0);
    if (member.isUInt64()) return member.asUInt64();
    if (!member.isString()) return 0;
    const std::string text = member.asString();
    uint64_t count = 0;
    const auto [stop, failure] = std::from_chars(text.data(), text.data() + text.size(), count);
    return failure == std::errc() && stop == text.data() + text.size() ? count : 0;
}

}  // namespace

uint64_t NanosSinceEpoch() {
    const auto now = std::chrono::system_clock::now().time_since_epoch();
    return static_cast<uint64_t>(std::chrono::duration_cast<std::chrono::nanoseconds>(now).count());
}

std::string TracesMessage(const Attributes& resource, const std::string& scope, const std::vector<Span>& spans) {
    Json::Value entry;
    entry["scope"]["name"] = ValidUtf8(scope);
    for (const Span& span : spans)
        entry["spans"].append(SpanJson(span));
    Json::Value scopes;
    scopes.append(std::move(entry));
    return Message("resourceSpans", "scopeSpans", resource, std::move(scopes));
}

std::string LogsMessage(const Attributes& resource, const std::vector<LogRecord>& records) {
    std::map<std::string, Json::Value> lists;
    for (const LogRecord& record : records)
        lists[record.scope].append(LogRecordJson(record));
    Json::Value scopes;
    for (auto& [scope, list] : lists) {
        Json::Value entry;
        entry["scope"]["name"] = ValidUtf8(scope);
        entry["logRecords"] = std::move(list);
        scopes.append(std::move(entry));
    }
    return Message("resourceLogs", "scopeLogs", resource, std::move(scopes));
}

PartialSuccess ReadPartialSuccess(const std::string& answer) {
    const Json::Value root = Parse(answer);
    const Json::Value partial = root.isObject() ? root.get("partialSuccess", Json::Value()) : Json::Value();
    // Of the two counts an answer has the one of its signal.
    return {CountMember(partial, "rejectedSpans") + CountMember(partial, "rejectedLogRecords"),
            TextMember(partial, "errorMessage").substr(0, kLongestRefusal)};
}

std::string ReadRefusal(const std::string& answer) {
    std::string message = TextMember(Parse(answer), "message");
    if (message.empty()) message = answer.substr(0, answer.find_first_of("\r\n"));
    return message.substr(0, kLongestRefusal);
}

}  // namespace OrvaneOtlp
