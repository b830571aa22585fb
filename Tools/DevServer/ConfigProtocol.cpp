#include "DevServer/ConfigProtocol.h"

#include <algorithm>

#include "DevServer/JsonText.h"
#include "DevServer/Transport.h"

namespace OrvaneDevServer {
namespace {

constexpr const char* kTexts[] = {"bid", "cid", "oid", "did", "mtype", "mfrs", "os", "os_ver", "app_ver", "gid"};
constexpr char kSdkList[] = "sdk_list";

std::string InQuotes(const std::string& text) {
    return "\"" + text + "\"";
}

// Reports a text that the compact writer would have written otherwise.
void CheckCompact(const std::string& name, const std::string& text, const Json::Value& value, Problems& problems) {
    const std::string compact = WriteCompact(value);
    if (text == compact) return;
    if (!text.ends_with('\n')) {
        problems.push_back(name + " lacks the newline (\"%0A\") with which the compact writer ends its text");
        if (text + '\n' == compact) return;
    }
    const size_t at = static_cast<size_t>(
        std::mismatch(text.begin(), text.end(), compact.begin(), compact.end()).first - text.begin());
    problems.push_back(name +
                       " is not the compact writer's text (members in byte order of their names, no blanks, \"\\u\" "
                       "for what is not ASCII, one newline at the end): at position " +
                       std::to_string(at) + " that has " + Json::valueToQuotedString(compact.substr(at, 30).c_str()));
}

// The object that a value of the query holds; null if it holds none.
Json::Value ReadObject(const std::string& name, const Target& target, Problems& problems) {
    const std::string* value = FindValue(target, name);
    if (!value) return {};  // told with the names
    const std::string text = DecodeValue(name, *value, problems);
    Json::Value object;
    std::string error;
    if (!ReadStrictly(text, object, error)) {
        problems.push_back(name + " is no JSON: " + error);
        return {};
    }
    if (!object.isObject()) {
        problems.push_back(name + " is " + KindOf(object) + "; it must be an object");
        return {};
    }
    CheckCompact(name, text, object, problems);
    return object;
}

void CheckPlugins(const Json::Value& plugins, Problems& problems) {
    if (!plugins.isObject()) {
        problems.push_back(std::string("\"sdk_list\" in com_params is ") + KindOf(plugins) + "; it must be an object");
        return;
    }
    for (const std::string& plugin : plugins.getMemberNames()) {
        const Json::Value& entry = plugins[plugin];
        if (!entry.isObject() || entry.size() != 1 || !entry["ver"].isString())
            problems.push_back(InQuotes(plugin) + " in \"sdk_list\" must be an object with the one string \"ver\"");
    }
}

void CheckComParams(const Json::Value& params, Problems& problems) {
    for (const char* name : kTexts) {
        if (!params.isMember(name))
            problems.push_back(std::string("com_params lacks \"") + name + "\"");
        else if (!params[name].isString())
            problems.push_back(InQuotes(name) + " in com_params is " + KindOf(params[name]) + "; it must be a string");
    }
    if (params.isMember("os") && params["os"].isString() && params["os"].asString() != "iOS")
        problems.push_back("\"os\" in com_params is " + InQuotes(params["os"].asString()) + "; it must be \"iOS\"");
    if (params.isMember(kSdkList))
        CheckPlugins(params[kSdkList], problems);
    else
        problems.push_back("com_params lacks \"sdk_list\"");
    for (const std::string& name : params.getMemberNames())
        if (name != kSdkList && std::find(std::begin(kTexts), std::end(kTexts), name) == std::end(kTexts))
            problems.push_back("com_params has " + InQuotes(name) + ", which is none of its members");
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
    checked.comParams = ReadObject("com_params", target, checked.problems);
    if (checked.comParams.isObject()) {
        CheckComParams(checked.comParams, checked.problems);
        const Json::Value& device = checked.comParams["did"];
        if (device.isString()) checked.device = device.asString();
    }
    const Json::Value bizParams = ReadObject("biz_params", target, checked.problems);
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
