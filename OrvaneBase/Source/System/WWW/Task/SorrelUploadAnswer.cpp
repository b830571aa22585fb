#include "System/WWW/Task/SorrelUploadAnswer.h"

#include <json/json.h>

#include <exception>
#include <memory>
#include <stdexcept>

namespace {

// Far more than an answer needs. What the JSON library makes of a long one takes fifty times its room.
constexpr size_t kLongestAnswer = 64 << 10;

void Require(bool condition, const char* problem) {
    if (!condition) throw std::invalid_argument(problem);
}

Json::Value Parse(std::string_view text) {
    Json::CharReaderBuilder builder;
    Json::CharReaderBuilder::strictMode(&builder.settings_);
    builder["rejectDupKeys"] = false;
    Json::Value root;
    std::string problem;
    const std::unique_ptr<Json::CharReader> reader(builder.newCharReader());
    Require(reader->parse(text.data(), text.data() + text.size(), &root, &problem), "it is no JSON");
    Require(root.isObject(), "it is no object");
    return root;
}

}  // namespace

bool SorrelUploadAnswer::Read(std::string_view text, std::string& error) {
    try {
        Require(text.size() <= kLongestAnswer, "it is far too long");
        const Json::Value root = Parse(text);
        const Json::Value& code = root["ret"];
        Require(!root.isMember("ret") || code.isInt(), "\"ret\" is no 32-bit integer");
        ret = code.asInt();
        err = root["err"].isString() ? root["err"].asString() : "(null)";
        if (ret != 0) return true;
        const Json::Value& data = root["biz_data"];
        Require(data.isObject(), "\"biz_data\" is no object");
        Require(data["upload_url"].isString(), "\"upload_url\" is no text");
        Require(data["next_pos"].isInt64() && data["next_pos"].asInt64() >= 0, "\"next_pos\" is no position");
        uploadUrl = data["upload_url"].asString();
        nextPos = data["next_pos"].asInt64();
        return true;
    } catch (const std::exception& problem) {  // too many levels, a member of another type, no memory
        error = problem.what();
        return false;
    }
}
