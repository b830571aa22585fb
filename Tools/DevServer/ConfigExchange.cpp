// The configuration half of DevServer.
#include "DevServer/ClientVerdict.h"
#include "DevServer/DevServer.h"

namespace OrvaneDevServer {
namespace {

constexpr size_t kMostDevices = 10000;  // whose rule ids are remembered
constexpr char kPlaceholder[] = "${server}";

bool IsHost(const std::string& host) {
    return !host.empty() &&
           host.find_first_not_of("abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789.-:[]") ==
               std::string::npos;
}

// Puts the address under which the client reached this server, a proxy's perhaps, in the place of "${server}".
void FillIn(const Request& request, Json::Value& modules) {
    const std::string* host = FindHeader(request, "Host");
    if (!host || !IsHost(*host)) return;
    for (Json::Value& module : modules) {
        for (Json::Value& value : module) {
            if (!value.isString()) continue;
            std::string text = value.asString();
            const size_t at = text.find(kPlaceholder);
            if (at != std::string::npos) value = text.replace(at, sizeof kPlaceholder - 1, "http://" + *host);
        }
    }
}

}  // namespace

Answer DevServer::HandleConfig(Exchange& exchange) {
    exchange.kind = "config";
    exchange.number = ++_configRequests;
    exchange.faults = _faults.For(Protocol::kConfig, exchange.number);
    const ConfigRequest checked = CheckConfigRequest(exchange.request, exchange.target, _options.now());
    exchange.problems = checked.problems;
    exchange.line["device"] = checked.device;
    exchange.line["com_params"] = checked.comParams;
    const Fetches::Entry entry(_fetches, checked.device, exchange.request);
    if (entry.IsSecond())
        exchange.problems.push_back(
            "another fetch of this device still waits for its answer; a client has one at a time");

    Wait(exchange);
    Answer answer = RightConfigAnswer(exchange, checked);
    SpoilAnswer(exchange, answer);
    if (exchange.hasLeft)
        Note(exchange, answer,
             "has left without an answer: it keeps the old file and tries again while its retries last");
    else
        Note(exchange, answer, ConfigOutcome(checked.device, answer, exchange.taken));
    return answer;
}

Answer DevServer::RightConfigAnswer(Exchange& exchange, const ConfigRequest& checked) {
    Answer answer;
    if (checked.comParams.isNull() || (_options.isStrict && !exchange.problems.empty())) {
        answer.body = ConfigError(1, exchange.problems.empty() ? "com_params is missing" : exchange.problems.front());
        return answer;
    }
    Json::Value modules;
    int64_t ruleId = 0;
    {
        const std::lock_guard<std::mutex> guard(_modulesMutex);
        ruleId = RefreshModules();
        modules = _modules.For(checked.device);
    }
    TakeOrderBack(exchange, checked.device, modules);
    FillIn(exchange.request, modules);
    for (const Fault& fault : exchange.faults)
        if (fault.kind == Fault::Kind::kRuleId) ruleId = fault.isRelative ? ruleId + fault.number : fault.number;
    exchange.line["right"]["rule_id"] = static_cast<Json::Int64>(ruleId);
    exchange.line["right"]["merged_cfg"] = modules;
    answer.body = ConfigAnswer(ruleId, modules);
    return answer;
}

std::string DevServer::ConfigOutcome(const std::string& device, const Answer& answer, Json::Value& taken) {
    const std::lock_guard<std::mutex> guard(_devicesMutex);
    if (_highestRuleIds.size() > kMostDevices) _highestRuleIds.clear();
    return ConfigVerdict(answer, _highestRuleIds[device], &taken);
}

// Reads what was edited; the rule id of what is served now. REQUIRES: _modulesMutex.
int32_t DevServer::RefreshModules() {
    std::vector<std::string> notes = _modules.Refresh();
    std::string problem;
    const int32_t ruleId = _ruleId.Of(_modules.All(), problem);
    if (!problem.empty()) notes.push_back(problem);
    if (notes.empty()) return ruleId;
    Json::Value line(Json::objectValue);
    line["kind"] = "modules";
    line["rule_id"] = ruleId;
    for (const std::string& note : notes) {
        line["notes"].append(note);
        _options.say("modules, rule id " + std::to_string(ruleId) + ": " + note);
    }
    Write(line);
    return ruleId;
}

}  // namespace OrvaneDevServer
