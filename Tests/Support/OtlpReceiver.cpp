#include "Support/OtlpReceiver.h"

#include <regex>
#include <sstream>

namespace OrvaneTest {
namespace {

// What a message may hold: the paths of its values, each with the value. From the published definitions of
// opentelemetry-proto, those of its members that a sender of ours has a use for.
const std::regex kShape(
    R"(resource(Spans|Logs)\.(()"
    R"(resource\.attributes|scope(Spans|Logs)\.(spans|logRecords)\.attributes)\.(key "[^]+|value\.(stringValue "[^]*|intValue "-?\d{1,19}"))|)"
    R"(scope(Spans|Logs)\.scope\.name "[^]*|)"
    R"(scopeSpans\.spans\.(traceId "(?!0{32})[\da-fA-F]{32}"|(spanId|parentSpanId) "(?!0{16})[\da-fA-F]{16}"|)"
    R"(name "[^]+|kind [1-5]|(startTimeUnixNano|endTimeUnixNano) "\d{1,20}"|status\.(code [0-2]|message "[^]*))|)"
    R"(scopeLogs\.logRecords\.((observedTimeUnixNano|timeUnixNano) "\d{1,20}"|severityNumber ([1-9]|1\d|2[0-4])|)"
    R"((severityText|body\.stringValue) "[^]*|eventName "[^]+)))");
const std::map<std::string, std::string> kRequired = {
    {"spans", "traceId spanId name kind startTimeUnixNano endTimeUnixNano"},
    {"logRecords", "observedTimeUnixNano body"},
};

void AddAttributes(const Json::Value& list, std::map<std::string, std::string>& attributes, std::string& problems) {
    for (const Json::Value& one : list) {
        const Json::Value value = one["value"];
        if (value.size() != 1) problems += "not of one type: " + one.toStyledString();
        if (!attributes.emplace(one["key"].asString(), value.begin()->asString()).second)
            problems += "a key stands twice: " + one["key"].asString() + "\n";
    }
}

}  // namespace

OtlpReceiver::OtlpReceiver(Behaviour behaviour)
    : _behaviour(std::move(behaviour)), _server([this](const HttpRequest& request) { return Answer(request); }) {}

std::vector<OtlpRecord> OtlpReceiver::Records() const {
    const std::lock_guard guard(_mutex);
    return _records;
}

std::string OtlpReceiver::Problems() const {
    const std::lock_guard guard(_mutex);
    return _problems;
}

std::string OtlpReceiver::Answer(const HttpRequest& request) {
    const std::string answer = _behaviour(request);
    if (answer != "200") return answer;
    const std::lock_guard guard(_mutex);
    if (request.method != "POST" || request.Header("Content-Type") != "application/json") _problems += request.head;
    Take(request.body);
    return HttpAnswer("200 OK", "{}", "Content-Type: application/json\r\n");
}

void OtlpReceiver::Take(const std::string& body) {
    Json::Value message;
    if (!Json::Reader().parse(body, message)) _problems += "no JSON: " + body;
    for (const std::string signal : {"Spans", "Logs"})
        for (const Json::Value& resource : message["resource" + signal])
            for (const Json::Value& scope : resource["scope" + signal])
                for (const Json::Value& record : scope[signal == "Spans" ? "spans" : "logRecords"]) {
                    OtlpRecord taken{record, scope["scope"]["name"].asString(), {}};
                    AddAttributes(resource["resource"]["attributes"], taken.attributes, _problems);
                    if (!taken.attributes.count("service.name")) _problems += "no service.name\n";
                    AddAttributes(record["attributes"], taken.attributes, _problems);
                    _records.push_back(taken);
                }
    for (const std::string& member : message.getMemberNames())
        if (!message[member].isNull()) Check(message[member], member);
}

// An object's members and a list's elements, down to the values.
void OtlpReceiver::Check(const Json::Value& value, const std::string& path) {
    const auto required = kRequired.find(path.substr(path.rfind('.') + 1));
    for (const Json::Value& element : value) {
        if (!value.isArray()) break;
        std::istringstream names(required == kRequired.end() ? "" : required->second);
        for (std::string name; names >> name;)
            if (!element.isMember(name)) _problems += path + " lacks " + name + "\n";
        Check(element, path);
    }
    if (value.isObject())
        for (const std::string& member : value.getMemberNames())
            Check(value[member], path + "." + member);
    if (value.isArray() || value.isObject()) return;
    const std::string leaf =
        path + (value.isString() ? " \"" + value.asString().substr(0, 100) + "\"" : " " + value.asString());
    if (!std::regex_match(leaf, kShape)) _problems += leaf + "\n";
}

}  // namespace OrvaneTest
