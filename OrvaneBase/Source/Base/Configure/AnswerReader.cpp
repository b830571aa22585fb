#include "Base/Configure/AnswerReader.h"

#include <json/json.h>

#include <algorithm>
#include <memory>
#include <stdexcept>
#include <string>

#include "Base/XLog.h"

namespace Orvane {
namespace {

using Quern::Value;

// Throws, as the JSON library does where a value is of another kind. The text goes to the log.
void Require(bool condition, const char* problem) {
    if (!condition) throw std::invalid_argument(problem);
}

bool Parse(const char* text, size_t length, Json::Value& root) {
    Json::CharReaderBuilder builder;
    builder["failIfExtra"] = false;
    builder["allowTrailingCommas"] = false;
    builder["collectComments"] = false;  // they may stand there, and nobody reads them
    std::string ignored;
    return std::unique_ptr<Json::CharReader>(builder.newCharReader())->parse(text, text + length, &root, &ignored);
}

Value ReadKeys(const Json::Value& module) {
    Value keys(Quern::ObjectValue);
    for (auto at = module.begin(); at != module.end(); ++at) {
        const std::string name = at.name();
        switch (at->type()) {
            case Json::stringValue:
                keys[name.c_str()] = Value(at->asCString());
                break;
            case Json::intValue:
                keys[name.c_str()] = Value(static_cast<long long>(at->asInt64()));
                break;
            case Json::uintValue:
                keys[name.c_str()] = Value(static_cast<unsigned long long>(at->asUInt64()));
                break;
            default:
                ORVANE_LOG_ERROR("valueType not support yet");
        }
    }
    return keys;
}

Value ReadModules(const Json::Value& mergedConfig) {
    Value modules;
    for (auto at = mergedConfig.begin(); at != mergedConfig.end(); ++at) {
        Require(at->isObject(), "a module of \"merged_cfg\" is no object");
        modules[at.name().c_str()] = ReadKeys(*at);
    }
    return modules;
}

int Read(const char* text, size_t length, Value& modules, int32_t& ruleID) {
    Json::Value root;
    if (!Parse(text, length, root)) {
        ORVANE_LOG_ERROR("parse json error");
        return -1;
    }
    if (!root.isObject()) {
        ORVANE_LOG_ERROR("json is not Object");
        return -2;
    }
    const Json::Value& answer = root;  // so that what is missing reads as null
    const int code = answer["ret"].asInt();
    const std::string message = answer["err"].asString();
    if (code != 0) {
        ORVANE_LOG_ERROR("Configue error code %d, msg %s", code, message.c_str());
        return -1;
    }
    const Json::Value& data = answer["biz_data"];
    Require(data.isObject(), "\"biz_data\" is no object");
    const int32_t id = data["rule_id"].asInt();
    const Json::Value& mergedConfig = data["merged_cfg"];
    Require(mergedConfig.isObject(), "\"merged_cfg\" is no object");
    modules = ReadModules(mergedConfig);
    ruleID = id;
    return 0;
}

}  // namespace

int AnswerReader::_ParseJsonObject(const char* text, size_t length, Value& modules, int32_t& ruleID) {
    if (!text || length == 0) {
        ORVANE_LOG_ERROR("jsonStr == NULL || len == 0");
        return -1;
    }
    ORVANE_LOG_INFO("ParseJsonObject : %.*s", static_cast<int>(std::min(length, Quern::kLogLineCapacity)), text);
    try {
        return Read(text, length, modules, ruleID);
    } catch (const std::exception& problem) {  // a member of another type or range, too many levels, no memory
        ORVANE_LOG_ERROR("json answer is refused: %s", problem.what());
        return -1;
    }
}

}  // namespace Orvane
