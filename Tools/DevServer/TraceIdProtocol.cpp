#include "DevServer/TraceIdProtocol.h"

#include "DevServer/JsonText.h"
#include "DevServer/TraceIds.h"
#include "DevServer/Transport.h"

namespace OrvaneDevServer {
namespace {

Json::Value Envelope(int64_t code, const std::string& message, const std::vector<std::string>& ids) {
    Json::Value answer(Json::objectValue);
    answer["retcode"] = static_cast<Json::Int64>(code);
    answer["retmsg"] = message;
    answer["result"]["count"] = static_cast<Json::UInt>(ids.size());
    answer["result"]["traceids"] = Json::Value(Json::arrayValue);
    for (const std::string& id : ids)
        answer["result"]["traceids"].append(id);
    return answer;
}

void CheckConstant(const Target& target, const char* name, const std::string& wanted, Problems& problems) {
    const std::string* value = FindValue(target, name);
    // One that is missing has been told with the names.
    if (value && *value != wanted)
        problems.push_back(std::string(name) + " is \"" + *value + "\"; it must be " + wanted);
}

}  // namespace

TraceIdRequest CheckTraceIdRequest(const Request& request, const Target& target) {
    TraceIdRequest checked;
    CheckTransport(request, checked.problems);
    CheckNames(target, {"buzid", "setid", "pritype", "pubtype", "count"}, checked.problems);
    if (const std::string* game = FindValue(target, "buzid")) checked.gameId = *game;
    if (checked.gameId.find('%') != std::string::npos)
        checked.problems.push_back("buzid is \"" + checked.gameId + "\"; the values are sent without any encoding");
    CheckConstant(target, "setid", "0", checked.problems);
    CheckConstant(target, "pritype", "0", checked.problems);
    CheckConstant(target, "pubtype", "1", checked.problems);
    const std::string* count = FindValue(target, "count");
    if (!count) return checked;
    uint64_t number = 0;
    if (ReadDecimal(*count, number) && number >= 1 && number <= kMostTraceIds)
        checked.count = number;
    else
        checked.problems.push_back("count is \"" + *count + "\"; it must be a decimal number from 1 to " +
                                   std::to_string(kMostTraceIds));
    return checked;
}

std::vector<std::string> IssueTraceIds(const TraceIdRequest& request, time_t now) {
    uint64_t game = 0;
    if (!ReadDecimal(request.gameId, game) || game > UINT32_MAX) game = 0;
    std::vector<std::string> ids;
    for (uint64_t i = 0; i < request.count; ++i)
        ids.push_back(MakeTraceId(static_cast<uint32_t>(game), now));
    return ids;
}

std::string TraceIdAnswer(const std::vector<std::string>& ids) {
    return WriteCompact(Envelope(0, "ok", ids));
}

std::string TraceIdError(int64_t code, const std::string& message) {
    return WriteCompact(Envelope(code, message, {}));
}

}  // namespace OrvaneDevServer
