#include "DevServer/ClientVerdict.h"

#include <exception>
#include <vector>

#include "DevServer/JsonText.h"
#include "DevServer/TraceIds.h"

namespace OrvaneDevServer {
namespace {

constexpr char kKeepsFile[] = "will keep the old file: ";
constexpr char kKeepsStock[] = "will keep its stock: ";

std::string Counted(size_t count, const std::string& noun) {
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

// A redirect that the transport follows. Null if the answer is none.
const std::string* Redirect(const Answer& answer) {
    if (answer.status < 300 || answer.status > 399 || answer.status == 304) return nullptr;
    for (const auto& [name, value] : answer.headers)
        if (name == "Location") return &value;
    return nullptr;
}

// Integers as the client reads them: what does not fit 32 bits, a text, an array and an object are refused, what is
// missing counts as 0.
int32_t ReadInt(const Json::Value& object, const char* name, std::string& refusal) {
    const Json::Value& value = object[name];
    if (value.isConvertibleTo(Json::intValue)) return value.asInt();
    if (refusal.empty()) refusal = std::string("\"") + name + "\" is " + KindOf(value) + " that is no 32-bit integer";
    return 0;
}

void ReadText(const Json::Value& object, const char* name, std::string& text, std::string& refusal) {
    if (object[name].isConvertibleTo(Json::stringValue))
        text = object[name].asString();
    else if (refusal.empty())
        refusal = std::string("\"") + name + "\" is " + KindOf(object[name]);
}

// What stands in an answer that the client takes.
struct Taken {
    int32_t ruleId = 0;
    size_t modules = 0, keys = 0;
    std::vector<std::string> dropped;  // "Module.key, a boolean"
};

void TakeModules(const Json::Value& merged, Taken& taken, std::string& refusal) {
    for (const std::string& module : merged.getMemberNames()) {
        if (!merged[module].isObject()) {
            refusal = "the module \"" + module + "\" is " + KindOf(merged[module]);
            return;
        }
        ++taken.modules;
        for (const std::string& key : merged[module].getMemberNames()) {
            const Json::Value& value = merged[module][key];
            const bool isKept = value.isString() || value.type() == Json::intValue || value.type() == Json::uintValue;
            if (isKept)
                ++taken.keys;
            else
                taken.dropped.push_back(module + "." + key + ", " + KindOf(value));
        }
    }
}

// Why there is no object in the text; empty if there is.
std::string ReadObject(const std::string& text, Json::Value& object) {
    if (text.empty()) return "the answer is empty";
    if (!ReadAsTheClient(text, object)) return "the answer is no JSON";
    return object.isObject() ? "" : std::string("the answer is ") + KindOf(object) + ", not an object";
}

// Why the client refuses the text; empty if it takes it.
std::string ReadConfig(const std::string& text, Taken& taken, Json::Value* modules) {
    Json::Value answer;
    if (std::string why = ReadObject(text, answer); !why.empty()) return why;
    std::string refusal, message;
    const int32_t code = ReadInt(answer, "ret", refusal);
    ReadText(answer, "err", message, refusal);
    if (!refusal.empty()) return refusal;
    if (code != 0) return "the server's error " + std::to_string(code) + ", \"" + message + "\"";
    const Json::Value& data = answer["biz_data"];
    if (!data.isObject()) return std::string("\"biz_data\" is ") + (data.isNull() ? "missing" : KindOf(data));
    taken.ruleId = ReadInt(data, "rule_id", refusal);
    const Json::Value& merged = data["merged_cfg"];
    if (refusal.empty() && !merged.isObject())
        refusal = std::string("\"merged_cfg\" is ") + (merged.isNull() ? "missing or null" : KindOf(merged));
    if (refusal.empty()) TakeModules(merged, taken, refusal);
    if (refusal.empty() && modules) *modules = merged;
    return refusal;
}

std::string Describe(const Taken& taken, int32_t highestRuleId) {
    std::string text = taken.modules == 0 ? "will remove all remote keys: \"merged_cfg\" is empty"
                                          : "will replace the file: " + Counted(taken.modules, "module") + ", " +
                                                Counted(taken.keys, "key");
    for (const std::string& dropped : taken.dropped)
        text += "; drops " + dropped;
    if (taken.ruleId > highestRuleId) return text + "; takes rule id " + std::to_string(taken.ruleId);
    return text + "; rule id " + std::to_string(taken.ruleId) + " is not above " + std::to_string(highestRuleId) +
           ", which stays";
}

std::string WithStatus(const Answer& answer, const std::string& verdict) {
    if (answer.status == 200) return verdict;
    return verdict + " (the status " + std::to_string(answer.status) + " is not looked at)";
}

constexpr size_t kLargestStock = 4 << 20;  // the ids, with 4 bytes for each and for their count; and the whole answer

// Why the client refuses the text; empty if it takes it. `odd` is the first of the ids that no server issues.
std::string ReadStock(const std::string& text, size_t& count, std::string& odd) {
    Json::Value answer;
    if (std::string why = ReadObject(text, answer); !why.empty()) return why;
    for (const char* name : {"retcode", "retmsg", "result"})
        if (!answer.isMember(name)) return std::string("\"") + name + "\" is missing";
    std::string refusal, message;
    const int32_t code = ReadInt(answer, "retcode", refusal);
    ReadText(answer, "retmsg", message, refusal);
    if (!refusal.empty()) return refusal;
    if (code != 0) return "the server's error " + std::to_string(code) + ", \"" + message + "\"";
    const Json::Value& result = answer["result"];
    if (!result.isObject()) return std::string("\"result\" is ") + KindOf(result);
    if (!result.isMember("count") || !result.isMember("traceids")) return "\"count\" or \"traceids\" is missing";
    const int32_t stated = ReadInt(result, "count", refusal);
    if (!refusal.empty()) return refusal;
    if (stated < 1) return "\"count\" is " + std::to_string(stated);
    const Json::Value& ids = result["traceids"];
    if (!ids.isArray()) return std::string("\"traceids\" is ") + KindOf(ids);
    if (ids.size() != static_cast<Json::ArrayIndex>(stated))
        return "\"count\" is " + std::to_string(stated) + ", and there are " + Counted(ids.size(), "id");
    size_t stored = 4;
    for (const Json::Value& id : ids) {
        if (!id.isConvertibleTo(Json::stringValue)) return std::string("one of the ids is ") + KindOf(id);
        stored += 4 + (id.isString() ? id.asString().size() : 0);
        if (stored > kLargestStock) return "the ids are more than the 4 MiB that a stock holds";
        if (odd.empty() && !IsIssuedTraceId(id.asString())) odd = std::string("\"").append(id.asString()).append("\"");
    }
    count = ids.size();
    return "";
}

constexpr size_t kLargestUploadAnswer = 64 << 10;  // the client does not parse a larger one

size_t SizeOf(const Answer& answer) {
    return answer.body.size() + answer.fillerLength + answer.tail.size();
}

std::string TextOf(const Answer& answer) {
    return answer.body + answer.tail;  // the filler is the middle of a string
}

}  // namespace

std::string ConfigVerdict(const Answer& answer, int32_t& highestRuleId, Json::Value* modules) {
    if (const std::string* address = Redirect(answer)) return "will ask " + *address + " instead";
    Taken taken;
    std::string refusal;
    try {
        refusal = ReadConfig(TextOf(answer), taken, modules);
    } catch (const std::exception& problem) {
        refusal = problem.what();
    }
    if (!refusal.empty()) return WithStatus(answer, kKeepsFile + refusal);
    const std::string verdict = Describe(taken, highestRuleId);
    if (taken.ruleId > highestRuleId) highestRuleId = taken.ruleId;
    return WithStatus(answer, verdict);
}

std::string TraceIdVerdict(const Answer& answer) {
    if (const std::string* address = Redirect(answer)) return "will ask " + *address + " instead";
    size_t count = 0;
    std::string refusal, odd;
    if (SizeOf(answer) > kLargestStock)
        return WithStatus(answer, kKeepsStock + std::string("the answer is longer than 4 MiB"));
    try {
        refusal = ReadStock(TextOf(answer), count, odd);
    } catch (const std::exception& problem) {
        refusal = problem.what();
    }
    if (!refusal.empty()) return WithStatus(answer, kKeepsStock + refusal);
    if (!odd.empty()) odd = "; it takes " + odd + " too, which is no id that a server issues";
    return WithStatus(answer, "will add " + Counted(count, "id") + " to its stock" + odd);
}

UploadOutcome UploadVerdict(const Answer& answer, bool isPrepare) {
    if (const std::string* address = Redirect(answer)) return {false, "will ask " + *address + " instead"};
    const std::string ends = isPrepare ? "is done, result 2: " : "will try once more, or end with result 3: ";
    if (answer.status != 200) return {false, ends + "the status is " + std::to_string(answer.status)};
    if (SizeOf(answer) > kLargestUploadAnswer) return {false, ends + "the answer is longer than 64 KiB"};
    Json::Value read;
    if (answer.body.empty()) return {false, ends + "the answer is empty"};
    if (!ReadAsTheClientsUpload(TextOf(answer), read)) return {false, ends + "the answer is no JSON"};
    const Json::Value& root = read;  // so that what is missing stays so
    if (!root.isObject()) return {false, ends + "the answer is " + KindOf(root) + ", not an object"};
    const Json::Value &ret = root["ret"], &data = root["biz_data"];
    if (root.isMember("ret") && !ret.isInt()) return {false, ends + "\"ret\" is no 32-bit integer"};
    const int code = ret.asInt();
    if (code > 0 && isPrepare) return {false, "is done, result 1: the server's error " + std::to_string(code)};
    if (code != 0) return {false, ends + "the server's error " + std::to_string(code)};
    if (!data.isObject() || !data["upload_url"].isString() || !data["next_pos"].isInt64() ||
        data["next_pos"].asInt64() < 0)
        return {false, ends + "\"upload_url\" or \"next_pos\" is missing, or is none"};
    return {true, "will go on from " + std::to_string(data["next_pos"].asInt64()) +
                      (isPrepare ? "" : ", or is done if that is the end")};
}

}  // namespace OrvaneDevServer
