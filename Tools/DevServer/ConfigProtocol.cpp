#include "DevServer/ConfigProtocol.h"

#include "DevServer/ComParams.h"
#include "DevServer/JsonText.h"
#include "DevServer/Transport.h"

namespace OrvaneDevServer {
namespace {

std::string InQuotes(const std::string& text) {
    return "\"" + text + "\"";
}

// The text of a value of the query. False if there is no such value, which is told with the names.
bool ReadValue(const std::string& name, const Target& target, std::string& text, Problems& problems) {
    const std::string* value = FindValue(target, name);
    if (value) text = DecodeValue(name, *value, problems);
    return value != nullptr;
}

void CheckBizParams(const Json::Value& params, Problems& problems) {
    if (!params.isMember("rule_id"))
        problems.push_back("biz_params lacks \"rule_id\"");
    else if (params["rule_id"].type() != Json::intValue)
        problems.push_back(std::string("\"rule_id\" in biz_params is ") + KindOf(params["rule_id"]) +
                           "; it must be the integer 0");
    else if (params["rule_id"].asInt64() != 0)
        problems.push_back("\"rule_id\" in biz_params is " + params["rule_id"].asString() +
                           "; it must be 0: the client never tells the highest rule id");
    for (const std::string& name : params.getMemberNames())
        if (name != "rule_id") problems.push_back("biz_params has " + InQuotes(name) + "; it holds \"rule_id\" alone");
}

void CheckTime(const Target& target, time_t now, Problems& problems) {
    const std::string* value = FindValue(target, "r");
    if (!value) return;  // told with the names
    uint64_t seconds = 0;
    if (!ReadDecimal(*value, seconds) || seconds > INT64_MAX) {
        problems.push_back("r is " + InQuotes(*value) + "; it must be the seconds since the epoch in decimal");
        return;
    }
    const int64_t difference = static_cast<int64_t>(seconds) - static_cast<int64_t>(now);
    if (difference > kMostClockDifference || difference < -kMostClockDifference)
        problems.push_back("r is " + std::to_string(difference < 0 ? -difference : difference) + " s " +
                           (difference < 0 ? "behind" : "ahead of") + " this machine's clock; at most " +
                           std::to_string(kMostClockDifference) + " s are allowed");
}

}  // namespace

ConfigRequest CheckConfigRequest(const Request& request, const Target& target, time_t now) {
    ConfigRequest checked;
    CheckTransport(request, checked.problems);
    CheckNames(target, {"com_params", "biz_params", "r"}, checked.problems);
    std::string text;
    if (ReadValue("com_params", target, text, checked.problems))
        checked.comParams = ReadComParams(text, checked.device, checked.problems);
    Json::Value bizParams;
    if (ReadValue("biz_params", target, text, checked.problems))
        bizParams = ReadCompactObject("biz_params", text, checked.problems);
    if (bizParams.isObject()) CheckBizParams(bizParams, checked.problems);
    CheckTime(target, now, checked.problems);
    return checked;
}

std::string ConfigAnswer(int64_t ruleId, const Json::Value& mergedConfig) {
    Json::Value answer(Json::objectValue);
    answer["ret"] = 0;
    answer["err"] = "";
    answer["biz_data"]["rule_id"] = static_cast<Json::Int64>(ruleId);
    answer["biz_data"]["merged_cfg"] = mergedConfig;
    return WriteCompact(answer);
}

std::string ConfigError(int64_t code, const std::string& message) {
    Json::Value answer(Json::objectValue);
    answer["ret"] = static_cast<Json::Int64>(code);
    answer["err"] = message;
    return WriteCompact(answer);
}

}  // namespace OrvaneDevServer
