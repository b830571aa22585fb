#include "DevServer/RuleId.h"

#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

#include "DevServer/JsonText.h"
#include "Storage/File/FileReplacement.h"

namespace OrvaneDevServer {

RuleId::RuleId(std::string path) : _path(std::move(path)) {
    std::ostringstream text;
    text << std::ifstream(_path, std::ios::binary).rdbuf();
    Json::Value kept;
    std::string ignored;
    if (!ReadStrictly(text.str(), kept, ignored) || !kept.isObject()) return;
    const Json::Value& number = kept["rule_id"];
    if (!number.isInt() || number.asInt() < 1) return;
    _ruleId = number.asInt();
    _served = kept["served"];
}

int32_t RuleId::Of(const Json::Value& served, std::string& problem) {
    if (served == _served && _ruleId > 0) return _ruleId;
    // At the end of the numbers it stays there: one that turned negative would be lower to the client.
    if (_ruleId < INT32_MAX) ++_ruleId;
    _served = served;
    Json::Value kept(Json::objectValue);
    kept["rule_id"] = _ruleId;
    kept["served"] = served;
    const std::string text = WriteCompact(kept);
    Quern::FileReplacement file(_path);
    if (!file.Prepare(text) || !file.PutInPlace())
        problem = "the rule id cannot be kept, and falls back at the next start: " + _path + ": " + strerror(errno);
    return _ruleId;
}

}  // namespace OrvaneDevServer
