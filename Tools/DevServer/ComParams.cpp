#include "DevServer/ComParams.h"

#include <algorithm>
#include <iterator>

#include "DevServer/JsonText.h"

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

}  // namespace

Json::Value ReadCompactObject(const std::string& name, const std::string& text, Problems& problems) {
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

Json::Value ReadComParams(const std::string& text, std::string& device, Problems& problems) {
    const Json::Value params = ReadCompactObject("com_params", text, problems);
    if (!params.isObject()) return params;
    CheckComParams(params, problems);
    if (params["did"].isString()) device = params["did"].asString();
    return params;
}

}  // namespace OrvaneDevServer
