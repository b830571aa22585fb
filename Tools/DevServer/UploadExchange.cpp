// The upload half of DevServer.
#include <algorithm>

#include "DevServer/ClientVerdict.h"
#include "DevServer/DevServer.h"
#include "DevServer/Lint/StoredValue.h"

namespace OrvaneDevServer {
namespace {

constexpr int kRefused = 1;  // "ret"

// Where the client is told to go on, as ordered faults have it.
int64_t NextPosition(const std::vector<Fault>& faults, int64_t from, int64_t right) {
    for (const Fault& fault : faults) {
        if (fault.kind != Fault::Kind::kNextPos) continue;
        right = fault.text == "same" ? from : fault.isRelative ? right + fault.number : fault.number;
    }
    return right;
}

std::string AddressOfPart(const Request& request, const std::vector<Fault>& faults, const std::string& upload,
                          int64_t position) {
    const std::string* const host = FindHeader(request, "Host");
    const char* path = kPartPath;
    for (const Fault& fault : faults) {
        if (fault.kind != Fault::Kind::kUploadUrl) continue;
        if (!fault.text.empty()) return fault.text;
        path = request.target.starts_with(kOtherPartPath) ? kPartPath : kOtherPartPath;
    }
    return PartUrl("http://" + (host ? *host : ""), path, upload, std::max<int64_t>(position, 0));
}

}  // namespace

Answer DevServer::HandlePrepare(Exchange& exchange) {
    BeginUpload(exchange);
    const PrepareRequest checked = CheckPrepareRequest(exchange.request);
    exchange.problems = checked.problems;
    exchange.line["device"] = checked.device;
    exchange.line["upload_id"] = checked.uploadId;
    Wait(exchange);
    Uploads::Outcome outcome;
    if (checked.isReadable && !checked.comParams.isNull() && !(_options.isStrict && !exchange.problems.empty()))
        outcome = _uploads.Announce(checked);
    else
        outcome.refusal = exchange.problems.empty() ? "the request cannot be read" : exchange.problems.front();
    return AnswerUpload(exchange, outcome, 0);
}

Answer DevServer::HandlePart(Exchange& exchange) {
    BeginUpload(exchange);
    const PartRequest checked = CheckPartRequest(exchange.request, exchange.target);
    exchange.problems = checked.problems;
    exchange.line["position"] = static_cast<Json::Int64>(checked.position);
    exchange.line["bytes"] = static_cast<Json::UInt64>(checked.part.size());
    Wait(exchange);
    Uploads::Outcome outcome;
    if (checked.isReadable)
        outcome = _uploads.Take(checked, exchange.problems);
    else
        outcome.refusal = exchange.problems.empty() ? "the request cannot be read" : exchange.problems.front();
    if (_options.isStrict && outcome.refusal.empty() && !exchange.problems.empty())
        outcome.refusal = exchange.problems.front();
    return AnswerUpload(exchange, outcome, checked.position);
}

void DevServer::BeginUpload(Exchange& exchange) {
    exchange.kind = "upload";
    exchange.number = ++_uploadRequests;
    exchange.faults = _faults.For(Protocol::kUpload, exchange.number);
}

// `from`: where the part that was sent begins.
Answer DevServer::AnswerUpload(Exchange& exchange, const Uploads::Outcome& outcome, int64_t from) {
    Answer answer;
    if (outcome.refusal.empty()) {
        const int64_t next = NextPosition(exchange.faults, from, outcome.next);
        exchange.line["right"]["next_pos"] = static_cast<Json::Int64>(outcome.next);
        answer.body = UploadAnswer(AddressOfPart(exchange.request, exchange.faults, outcome.upload, next), next);
    } else {
        exchange.line["refusal"] = outcome.refusal;
        answer.body = UploadError(kRefused, outcome.refusal);
    }
    SpoilAnswer(exchange, answer);
    const UploadOutcome verdict = UploadVerdict(answer, exchange.request.method == "PUT");
    if (verdict.isTaken && !exchange.hasLeft) _uploads.Confirm(outcome.upload);
    Note(exchange, answer, exchange.hasLeft ? "has left without an answer" : verdict.text);
    for (const std::string& note : outcome.notes)
        _options.say("    kept: " + note);
    return answer;
}

// An order that a device has carried out is no order any more: the client would carry it out again at each fetch. It
// sends under the id that it reads, which is "" for one that is not there or that it drops.
void DevServer::TakeOrderBack(Exchange& exchange, const std::string& device, Json::Value& modules) {
    const Json::Value& served = modules;  // so that what is missing reads as null
    if (!served["Upload"].isObject()) return;
    const std::string id = StoreValue(served["Upload"]["upload_id"]).text;
    if (!_uploads.IsWhole(device, id)) return;
    exchange.line["carried_out"] = id;
    _options.say("the order \"" + id + "\" has been carried out and is taken back for this device");
    modules.removeMember("Upload");
}

}  // namespace OrvaneDevServer
