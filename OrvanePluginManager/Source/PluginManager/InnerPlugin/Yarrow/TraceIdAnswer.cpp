#include "PluginManager/InnerPlugin/Yarrow/TraceIdAnswer.h"

#include <json/reader.h>

#include <exception>

#include "PluginManager/InnerPlugin/Yarrow/TraceIdStore.h"

namespace Orvane::Plugin {
namespace {

using Fault = TraceIdAnswer::Fault;

bool Parse(const char* data, int length, Json::Value& root) {
    try {
        return Json::Reader().parse(data, data + length, root, false);
    } catch (const std::exception&) {  // nested too deep
        return false;
    }
}

// The JSON library throws where it cannot convert a value, so it is asked first whether it can.
bool Read(const Json::Value& value, int& out) {
    if (!value.isConvertibleTo(Json::intValue)) return false;
    out = value.asInt();
    return true;
}

bool Read(const Json::Value& value, std::string& out) {
    if (!value.isConvertibleTo(Json::stringValue)) return false;
    out = value.asString();
    return true;
}

// The length of a text, which is not copied for that. A value of another kind counts as 0: turned into a text it is
// short.
size_t TextLength(const Json::Value& value) {
    const char *begin = nullptr, *end = nullptr;
    return value.getString(&begin, &end) ? static_cast<size_t>(end - begin) : 0;
}

Fault ReadIds(const Json::Value& result, TraceIdAnswer& answer) {
    if (!result.isObject() || !result.isMember("count") || !result.isMember("traceids")) return Fault::kNoIds;
    if (!Read(result["count"], answer.count)) return Fault::kNoIds;
    if (answer.count < 1) return Fault::kCountBelowOne;
    const Json::Value& ids = result["traceids"];
    answer.size = ids.isArray() ? static_cast<int>(ids.size()) : 0;
    if (answer.size != answer.count) return Fault::kCount;
    size_t encoded = sizeof(int32_t);
    for (const Json::Value& id : ids) {
        encoded += sizeof(int32_t) + TextLength(id);
        if (encoded > kLargestTraceIdStore) return Fault::kTooLarge;
        if (!Read(id, answer.traceIds.emplace_back())) return Fault::kNoIds;
    }
    return Fault::kNone;
}

Fault ReadRoot(const Json::Value& root, TraceIdAnswer& answer) {
    if (!root.isObject()) return Fault::kNotObject;
    for (const char* member : {"retcode", "retmsg", "result"}) {
        if (!root.isMember(member)) return Fault::kNoEnvelope;
    }
    if (!Read(root["retcode"], answer.retcode) || !Read(root["retmsg"], answer.retmsg)) return Fault::kNoEnvelope;
    return answer.retcode == 0 ? ReadIds(root["result"], answer) : Fault::kRetcode;
}

}  // namespace

TraceIdAnswer ReadTraceIdAnswer(const char* data, int length) {
    TraceIdAnswer answer;
    Json::Value root;
    if (Parse(data, length, root)) answer.fault = ReadRoot(root, answer);
    return answer;
}

}  // namespace Orvane::Plugin
