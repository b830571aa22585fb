#include "DevServer/DevServer.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>

#include "DevServer/FaultyAnswer.h"
#include "DevServer/JsonText.h"
#include "DevServer/PageGuard.h"
#include "Orvane/IPluginManager.h"

namespace OrvaneDevServer {
namespace fs = std::filesystem;
namespace {

constexpr size_t kMostTextInLine = 20000;

// What a new folder begins with: the library finds the trace ids of the server that it has its configuration from.
constexpr char kFirstModule[] = "{\n    \"YarrowUrl\": \"${server}/traceids\"\n}\n";

Json::Value ListOf(const std::vector<std::string>& texts) {
    Json::Value list(Json::arrayValue);
    for (const std::string& text : texts)
        list.append(text);
    return list;
}

bool MakeFolder(const std::string& folder, std::string& error) {
    std::error_code problem;
    if (fs::exists(folder + "/modules", problem)) return true;
    fs::create_directories(folder + "/modules", problem);
    if (!problem) fs::create_directories(folder + "/devices", problem);
    if (problem) {
        error = folder + ": " + problem.message();
        return false;
    }
    const std::string path = folder + "/modules/" + Orvane::Plugin::kCoreModule + ".json";
    std::ofstream file(path);
    if (file << kFirstModule << std::flush) return true;
    error = path + ": " + strerror(errno);
    return false;
}

// A person who typed the server's address into a browser.
bool IsForConsole(const Request& request, const Target& target) {
    const std::string* const accept = FindHeader(request, "Accept");
    return target.path == "/" && request.method == "GET" && accept && accept->find("text/html") != std::string::npos;
}

Answer LeadToConsole() {
    Answer answer;
    answer.status = 302;
    answer.contentType = "text/plain";
    answer.headers = {{"Location", std::string(kConsolePath) + "/"}};
    return answer;
}

}  // namespace

DevServer::DevServer(ServerOptions options)
    : _options(std::move(options)),
      _gate(_options.mostWaiting),
      _uploads(_options.folder + "/uploads"),
      _console(_options.folder, _options.keyFiles,
               [this](const std::string& device) {
                   const std::lock_guard<std::mutex> guard(_modulesMutex);
                   const int32_t ruleId = RefreshModules();
                   return Console::Served{_modules.For(device), ruleId};
               }),
      _modules(_options.folder),
      _ruleId(_options.folder + "/rule_id.json") {
    for (const Fault& fault : _options.faults)
        _faults.Add(fault, 0);
}

bool DevServer::Open(std::string& error) {
    const std::string journal = _options.folder + "/journal.jsonl";
    if (!MakeFolder(_options.folder, error) || !_journal.Open(journal, error)) return false;
    _console.ReadJournal(journal);
    const std::lock_guard<std::mutex> guard(_modulesMutex);
    RefreshModules();
    return true;
}

Answer DevServer::Handle(const Request& request) {
    try {
        return Route(request);
    } catch (const std::exception& problem) {
        _options.say(std::string("a request could not be answered: ") + problem.what());
        Answer answer;
        answer.status = 500;
        answer.contentType = "text/plain";
        return answer;
    }
}

Answer DevServer::Route(const Request& request) {
    const Target target = SplitTarget(request.target);
    Exchange exchange{request, target, "unknown"};
    if (target.path.starts_with(kControlPath)) return HandleControl(exchange);
    if (const std::string refusal = PageRefusal(request); !refusal.empty()) return HandlePage(exchange, refusal);
    if (IsForConsole(request, target)) return LeadToConsole();
    if (target.path == kConfigPath) return HandleConfig(exchange);
    if (target.path == kTraceIdPath) return HandleTraceIds(exchange);
    if (target.path == kPreparePath) return HandlePrepare(exchange);
    if (target.path == kPartPath || target.path == kOtherPartPath) return HandlePart(exchange);
    return HandleUnknown(exchange);
}

uint64_t DevServer::Served(Protocol protocol) const {
    switch (protocol) {
        case Protocol::kConfig:
            return _configRequests;
        case Protocol::kTraceIds:
            return _traceIdRequests;
        case Protocol::kUpload:
            break;
    }
    return _uploadRequests;
}

Answer DevServer::HandleUnknown(Exchange& exchange) {
    const std::string& path = exchange.target.path;
    std::string problem = "the path is \"" + path + "\"; there are \"" + kConfigPath + "\", \"" + kTraceIdPath +
                          "\" and \"" + kPreparePath + "\"";
    if (path == std::string("/") + kConfigPath || path == std::string("/") + kTraceIdPath ||
        path == std::string("/") + kPreparePath)
        problem += ": the address that the client was given must not end in \"/\"";
    else if (path.ends_with(kConfigPath) || path.ends_with(kPreparePath))
        problem += ": the address that the client was given must have no path";
    return Refuse(exchange, 404, problem, "for a browser, the console is at \"" + std::string(kConsolePath) + "/\"");
}

Answer DevServer::HandlePage(Exchange& exchange, const std::string& refusal) {
    exchange.kind = "page";
    return Refuse(exchange, 403, "refused, and not counted: " + refusal);
}

Answer DevServer::Refuse(Exchange& exchange, int status, const std::string& problem, const std::string& advice) {
    exchange.problems.push_back(problem);
    Answer answer;
    answer.status = status;
    answer.contentType = "text/plain";
    answer.body = problem + "\n" + (advice.empty() ? "" : advice + "\n");
    Note(exchange, answer, "");
    return answer;
}

void DevServer::NoteRefused(const std::string& method, const std::string& target, int status) {
    Json::Value line(Json::objectValue);
    line["kind"] = "refused";
    line["method"] = method.substr(0, kMostTextInLine);
    line["target"] = target.substr(0, kMostTextInLine);
    line["status"] = status;
    const std::string problem =
        status == 414   ? "the request's first line is too long for this server, which takes 8192 bytes"
        : status == 413 ? "the request's body is too big for this server, which takes 1 MB, and 64 MB in a part"
                        : "the bytes that came are no HTTP request that can be answered";
    line["problems"].append(problem);
    _options.say("refused with " + std::to_string(status) + ": " + problem);
    Write(line);
}

void DevServer::Wait(Exchange& exchange) {
    for (const Fault& fault : exchange.faults) {
        Gate::End end = Gate::End::kGoOn;
        if (fault.kind == Fault::Kind::kDelay)
            end = _gate.Delay(std::chrono::milliseconds(fault.number), exchange.request.senderHasLeft);
        if (fault.kind == Fault::Kind::kHold) end = _gate.Hold(exchange.request.senderHasLeft);
        exchange.hasLeft = end == Gate::End::kLeft;
        if (exchange.hasLeft) return;
        if (end == Gate::End::kFull) _options.say(fault.order + ": not waited, too many requests wait already");
    }
}

void DevServer::SpoilAnswer(const Exchange& exchange, Answer& answer) const {
    for (const Fault& fault : exchange.faults)
        Spoil(fault, exchange.number, exchange.request.target, answer);
}

void DevServer::Note(Exchange& exchange, const Answer& answer, const std::string& outcome) {
    Json::Value& line = exchange.line;
    line["kind"] = exchange.kind;
    if (exchange.number > 0) line["number"] = static_cast<Json::UInt64>(exchange.number);
    line["method"] = exchange.request.method;
    line["target"] = exchange.request.target;
    line["status"] = answer.status;
    line["length"] = static_cast<Json::UInt64>(answer.body.size() + answer.fillerLength + answer.tail.size());
    std::vector<std::string> orders;
    for (const Fault& fault : exchange.faults)
        orders.push_back(fault.order);
    line["faults"] = ListOf(orders);
    line["problems"] = ListOf(exchange.problems);
    if (!outcome.empty()) line["client"] = outcome;

    const std::string device = line.get("device", "").asString();
    _options.say(std::string(exchange.kind) + (exchange.number > 0 ? " #" + std::to_string(exchange.number) : "") +
                 (device.empty() ? "" : ", device " + device) + ": " + std::to_string(answer.status) +
                 (outcome.empty() ? "" : ", " + outcome));
    for (const std::string& problem : exchange.problems)
        _options.say("    breaks the protocol: " + problem);
    Write(line, exchange.taken.isNull() ? nullptr : &exchange.taken);
}

void DevServer::Write(Json::Value line, const Json::Value* taken) {
    line["time"] = Journal::Now();
    if (!_journal.Write(line)) _options.say(std::string("the journal lacks a line: ") + strerror(errno));
    _console.Take(line, taken);
}

}  // namespace OrvaneDevServer
