// The control half of DevServer: orders that come while it runs.
//
//     GET    /_orvane/status     how many requests there were, how many are held, the rule id, the faults in force
//     POST   /_orvane/faults     orders faults, one a line of the body
//     DELETE /_orvane/faults     takes all faults back
//     POST   /_orvane/release    lets the requests that are held go on
//     *      /_orvane/console    the page in the browser: Console/Console.h
#include <sstream>

#include "DevServer/DevServer.h"
#include "DevServer/JsonAnswer.h"
#include "DevServer/PageGuard.h"

namespace OrvaneDevServer {
namespace {

Json::Value Orders(const FaultList& faults) {
    Json::Value list(Json::arrayValue);
    for (const std::string& order : faults.Orders())
        list.append(order);
    return list;
}

}  // namespace

Answer DevServer::HandleControl(Exchange& exchange) {
    exchange.kind = "control";
    if (const std::string refusal = ControlRefusal(exchange.request); !refusal.empty()) {
        exchange.problems.push_back("refused: " + refusal);
        const Answer answer = ErrorAnswer(403, refusal);
        Note(exchange, answer, "");
        return answer;
    }
    const Answer answer = Control(exchange, exchange.target.path.substr(sizeof kControlPath - 1));
    // A look changes nothing, and the lint looks at what somebody types.
    if (exchange.request.method != "GET" && !exchange.target.path.ends_with("/data/lint")) Note(exchange, answer, "");
    return answer;
}

Answer DevServer::Control(const Exchange& exchange, const std::string& path) {
    const Request& request = exchange.request;
    const bool isGet = request.method == "GET", isPost = request.method == "POST";
    constexpr std::string_view kConsole = "console";
    if (path == kConsole || path.starts_with("console/"))
        return _console.Handle(request, exchange.target, path.substr(kConsole.size()));
    Json::Value value(Json::objectValue);
    if (path == "status" && isGet) {
        value["config"] = static_cast<Json::UInt64>(_configRequests);
        value["traceids"] = static_cast<Json::UInt64>(_traceIdRequests);
        value["upload"] = static_cast<Json::UInt64>(_uploadRequests);
        value["held"] = static_cast<Json::UInt64>(_gate.Held());
        value["faults"] = Orders(_faults);
        const std::lock_guard<std::mutex> guard(_modulesMutex);
        value["rule_id"] = _ruleId.Current();
    } else if (path == "faults" && isPost) {
        return OrderFaults(request.body);
    } else if (path == "faults" && request.method == "DELETE") {
        _faults.Clear();
        value["faults"] = Orders(_faults);
    } else if (path == "release" && isPost) {
        value["released"] = static_cast<Json::UInt64>(_gate.Release());
    } else if (path == "status" || path == "faults" || path == "release") {
        return ErrorAnswer(405, "not by " + request.method);
    } else {
        return ErrorAnswer(404, "there are \"status\", \"faults\", \"release\" and \"console\"");
    }
    return JsonAnswer(200, value);
}

// All of them, or none if one is wrong.
Answer DevServer::OrderFaults(const std::string& orders) {
    std::vector<Fault> faults;
    std::istringstream lines(orders);
    for (std::string line, error; std::getline(lines, line);) {
        if (line.ends_with('\r')) line.pop_back();
        if (line.empty()) continue;
        if (!ParseFault(line, faults.emplace_back(), error)) return ErrorAnswer(400, error);
    }
    if (faults.empty()) return ErrorAnswer(400, "the body holds no order");
    for (Fault& fault : faults) {
        const uint64_t served = Served(fault.protocol);
        _faults.Add(std::move(fault), served);
    }
    Json::Value value(Json::objectValue);
    value["faults"] = Orders(_faults);
    return JsonAnswer(200, value);
}

}  // namespace OrvaneDevServer
