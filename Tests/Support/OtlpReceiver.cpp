#include "Support/OtlpReceiver.h"

#include <memory>
#include <regex>

namespace OrvaneTest {
namespace {

constexpr char kNanos[] = "\"(0|[1-9][0-9]{0,19})\"";
constexpr char kText[] = "\".*\"", kList[] = "\\[.*\\]", kObject[] = "\\{.*\\}";
// The members of each object and what their JSON looks like; those with a "?" may be missing. From the published
// definitions of opentelemetry-proto, those of them that a sender of ours has a use for.
const std::map<std::string, std::string> kSpanShape = {
    {"traceId", "\"(?!0{32})[0-9a-fA-F]{32}\""},
    {"spanId", "\"(?!0{16})[0-9a-fA-F]{16}\""},
    {"parentSpanId?", "\"(?!0{16})[0-9a-fA-F]{16}\""},
    {"name", "\".+\""},
    {"kind", "[1-5]"},
    {"startTimeUnixNano", kNanos},
    {"endTimeUnixNano", kNanos},
    {"attributes?", kList},
    {"status?", kObject},
};
const std::map<std::string, std::string> kStatusShape = {{"code?", "[0-2]"}, {"message?", kText}};
const std::map<std::string, std::string> kLogShape = {
    {"timeUnixNano?", kNanos},
    {"observedTimeUnixNano", kNanos},
    {"severityNumber?", "[1-9]|1[0-9]|2[0-4]"},
    {"severityText?", kText},
    {"body", kObject},
    {"eventName?", "\".+\""},
    {"attributes?", kList},
};
const std::map<std::string, std::string> kAttributeShape = {{"key", "\".+\""}, {"value", kObject}};
const std::map<std::string, std::string> kValueShape = {{"stringValue?", kText}, {"intValue?", "\"-?[0-9]{1,19}\""}};

std::string Compact(const Json::Value& value) {
    Json::StreamWriterBuilder builder;
    builder["indentation"] = "";
    return Json::writeString(builder, value);
}

// Making an expression costs more than using it, and there are few.
const std::regex& Look(const std::string& look) {
    static std::map<std::string, std::regex> known;
    const auto found = known.find(look);
    return found != known.end() ? found->second : known.emplace(look, look).first->second;
}

}  // namespace

OtlpReceiver::OtlpReceiver(Behaviour behaviour)
    : _behaviour(std::move(behaviour)), _server([this](const HttpRequest& request) { return Answer(request); }) {}

std::vector<OtlpRecord> OtlpReceiver::Spans() const {
    const std::lock_guard guard(_mutex);
    return _spans;
}

std::vector<OtlpRecord> OtlpReceiver::Logs() const {
    const std::lock_guard guard(_mutex);
    return _logs;
}

std::string OtlpReceiver::Problems() const {
    const std::lock_guard guard(_mutex);
    return _problems;
}

std::string OtlpReceiver::Answer(const HttpRequest& request) {
    std::string answer = _behaviour ? _behaviour(request) : "200";
    if (answer == "200") answer = HttpAnswer("200 OK", "{}", "Content-Type: application/json\r\n");
    if (answer.starts_with("HTTP/1.1 200")) Take(request);
    return answer;
}

void OtlpReceiver::Take(const HttpRequest& request) {
    const std::lock_guard guard(_mutex);
    if (request.method != "POST") Problem("the method is " + request.method);
    if (request.Header("Content-Type") != "application/json") Problem("no JSON: " + request.Header("Content-Type"));
    Json::Value message;
    std::string error;
    Json::CharReaderBuilder builder;
    builder["rejectDupKeys"] = true;
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    if (!reader->parse(request.body.data(), request.body.data() + request.body.size(), &message, &error))
        return Problem(error);
    const bool isSpans = message.isMember("resourceSpans");
    const std::string resources = isSpans ? "resourceSpans" : "resourceLogs";
    const std::string scopes = isSpans ? "scopeSpans" : "scopeLogs", records = isSpans ? "spans" : "logRecords";
    Check(message, {{resources, kList}}, "the message");
    for (const Json::Value& resource : message[resources]) {
        Check(resource, {{"resource", kObject}, {scopes, kList}}, resources);
        Check(resource["resource"], {{"attributes", kList}}, "resource");
        OtlpRecord surroundings;
        surroundings.resource = TakeAttributes(resource["resource"]["attributes"]);
        if (!surroundings.resource.count("service.name")) Problem("no service.name");
        for (const Json::Value& scope : resource[scopes]) {
            Check(scope, {{"scope", kObject}, {records, kList}}, scopes);
            Check(scope["scope"], {{"name", kText}}, "scope");
            surroundings.scope = scope["scope"]["name"].asString();
            for (const Json::Value& record : scope[records])
                TakeRecord(record, isSpans, surroundings);
        }
    }
}

void OtlpReceiver::TakeRecord(const Json::Value& record, bool isSpan, const OtlpRecord& surroundings) {
    Check(record, isSpan ? kSpanShape : kLogShape, isSpan ? "a span" : "a log record");
    OtlpRecord taken = surroundings;
    taken.json = record;
    taken.attributes = TakeAttributes(record["attributes"]);
    if (isSpan) {
        Check(record["status"], kStatusShape, "status");
        if (std::stoull(record["endTimeUnixNano"].asString()) < std::stoull(record["startTimeUnixNano"].asString()))
            Problem("a span ends before it begins");
    } else {
        Check(record["body"], kValueShape, "body");
    }
    (isSpan ? _spans : _logs).push_back(taken);
}

std::map<std::string, std::string> OtlpReceiver::TakeAttributes(const Json::Value& list) {
    std::map<std::string, std::string> attributes;
    for (const Json::Value& attribute : list) {
        Check(attribute, kAttributeShape, "an attribute");
        const Json::Value& value = attribute["value"];
        Check(value, kValueShape, "a value");
        if (value.size() != 1) Problem("a value is not of one type: " + Compact(value));
        const std::string text =
            value.isMember("intValue") ? value["intValue"].asString() : value["stringValue"].asString();
        if (!attributes.emplace(attribute["key"].asString(), text).second)
            Problem("a key stands twice: " + attribute["key"].asString());
    }
    return attributes;
}

void OtlpReceiver::Check(const Json::Value& object, const std::map<std::string, std::string>& shape,
                         const std::string& what) {
    if (!object.isObject()) return Problem(what + " is no object");
    for (const auto& [name, look] : shape) {
        const bool isOptional = name.ends_with('?');
        const std::string member = isOptional ? name.substr(0, name.size() - 1) : name;
        if (!object.isMember(member)) {
            if (!isOptional) Problem(what + " lacks " + member);
            continue;
        }
        // Long texts are too much for the matcher, and have no look of their own.
        const std::string text = Compact(object[member]);
        const bool isAny = look == kList || look == kObject || look == kText;
        const bool fits = isAny ? text.front() == (look == kList     ? '['
                                                   : look == kObject ? '{'
                                                                     : '"')
                                : std::regex_match(text.substr(0, 200), Look(look));
        if (!fits) Problem(what + ": " + member + " is " + text.substr(0, 200));
    }
    for (const std::string& member : object.getMemberNames())
        if (!shape.count(member) && !shape.count(member + "?")) Problem(what + " has an unknown " + member);
}

}  // namespace OrvaneTest
