// The trace id half of DevServer.
#include "DevServer/ClientVerdict.h"
#include "DevServer/DevServer.h"

namespace OrvaneDevServer {

Answer DevServer::HandleTraceIds(Exchange& exchange) {
    exchange.kind = "traceids";
    exchange.number = ++_traceIdRequests;
    exchange.faults = _faults.For(Protocol::kTraceIds, exchange.number);
    const TraceIdRequest checked = CheckTraceIdRequest(exchange.request, exchange.target);
    exchange.problems = checked.problems;
    exchange.line["game"] = checked.gameId;

    Wait(exchange);
    Answer answer = RightTraceIdAnswer(exchange, checked);
    SpoilAnswer(exchange, answer);
    Note(exchange, answer,
         exchange.hasLeft ? "has left without an answer: it keeps its stock and does not ask again in this run"
                          : TraceIdVerdict(answer));
    return answer;
}

Answer DevServer::RightTraceIdAnswer(Exchange& exchange, const TraceIdRequest& checked) {
    Answer answer;
    if (checked.count == 0 || (_options.isStrict && !exchange.problems.empty())) {
        answer.body = TraceIdError(1, exchange.problems.empty() ? "count is missing" : exchange.problems.front());
        return answer;
    }
    const std::vector<std::string> ids = IssueTraceIds(checked, _options.now());
    for (const std::string& id : ids)
        exchange.line["right"]["traceids"].append(id);
    answer.body = TraceIdAnswer(ids);
    return answer;
}

}  // namespace OrvaneDevServer
