#include "DevServer/UploadProtocol.h"

#include <cstring>

#include "DevServer/ComParams.h"
#include "DevServer/ConfigProtocol.h"
#include "DevServer/JsonText.h"
#include "DevServer/Sha1Text.h"
#include "DevServer/Transport.h"

namespace OrvaneDevServer {
namespace {

constexpr char kBoundary[] = "----WebKitFormBoundaryftnnT7s3iF7wV5q6";

bool MayStand(unsigned char byte) {
    return isalnum(byte) || (byte != '\0' && strchr("!$&'()*+,-./:;=?@_~", byte));
}

int HexValue(char digit) {
    const char* const digits = "0123456789ABCDEF";
    const char* const found = digit == '\0' ? nullptr : strchr(digits, digit);
    return found ? static_cast<int>(found - digits) : -1;
}

// Each kind of departure is reported once, by the position in the value.
std::string DecodeQueryValue(const std::string& name, std::string_view value, Problems& problems) {
    std::string text;
    bool isTold = false;
    const auto report = [&](size_t at, const char* what) {
        if (!isTold) problems.push_back(name + " is wrongly encoded at position " + std::to_string(at) + ": " + what);
        isTold = true;
    };
    for (size_t at = 0; at < value.size(); ++at) {
        const auto byte = static_cast<unsigned char>(value[at]);
        if (byte != '%') {
            if (!MayStand(byte)) report(at, "this byte is sent as \"%\" and two digits");
            text += value[at];
            continue;
        }
        const int high = at + 2 < value.size() ? HexValue(value[at + 1]) : -1;
        const int low = at + 2 < value.size() ? HexValue(value[at + 2]) : -1;
        if (high < 0 || low < 0) {
            report(at, "a \"%\" has no two upper-case hexadecimal digits behind it");
            text += '%';
            continue;
        }
        const auto decoded = static_cast<unsigned char>(high * 16 + low);
        if (MayStand(decoded)) report(at, "this byte is sent as it is");
        text += static_cast<char>(decoded);
        at += 2;
    }
    return text;
}

// Cuts the text in front of `end` off. False if it does not begin with `begin`, or there is no `end`.
bool Take(std::string_view& text, std::string_view begin, std::string_view end, std::string_view& piece) {
    if (!text.starts_with(begin)) return false;
    const size_t at = text.find(end, begin.size());
    if (at == std::string_view::npos) return false;
    piece = text.substr(begin.size(), at - begin.size());
    text.remove_prefix(at);
    return true;
}

bool IsSha1(const std::string& text) {
    return text.size() == 40 && text.find_first_not_of("0123456789abcdef") == std::string::npos;
}

void ReadBizParams(const std::string& text, PrepareRequest& checked) {
    Json::Value params;
    std::string error;
    if (!ReadStrictly(text, params, error) || !params.isObject()) {
        checked.problems.push_back("biz_params is no JSON object" + (error.empty() ? "" : ": " + error));
        return;
    }
    const Json::Value &id = params["upload_id"], &size = params["total_size"], &sha1 = params["total_sha1"];
    if (!id.isString() || !size.isInt64() || size.asInt64() < 0 || !sha1.isString()) {
        checked.problems.push_back(
            "biz_params must hold the string \"upload_id\", the integer \"total_size\" and the string \"total_sha1\"");
        return;
    }
    checked.isReadable = true;
    checked.uploadId = id.asString();
    checked.totalSize = size.asInt64();
    checked.totalSha1 = sha1.asString();
    const std::string end =
        "\",\"total_size\":" + std::to_string(checked.totalSize) + ",\"total_sha1\":\"" + checked.totalSha1 + "\"}";
    if (!text.starts_with("{\"upload_id\":\"") || !text.ends_with(end) || params.size() != 3)
        checked.problems.push_back("biz_params must end in " + end +
                                   ", behind \"upload_id\" alone, without blanks or a newline");
    const bool isMissing = checked.totalSize == 0 && checked.totalSha1.empty();
    if (!IsSha1(checked.totalSha1) && !isMissing)
        checked.problems.push_back("\"total_sha1\" is \"" + checked.totalSha1 +
                                   "\"; it must be 40 lower-case hexadecimal digits");
}

bool ReadBody(const Request& request, PartRequest& checked) {
    const std::string line = "\r\n", dashes = std::string("--") + kBoundary;
    std::string_view rest = request.body, sha1, name;
    if (!Take(rest, dashes + line + "Content-Disposition: form-data; name=\"part_sha1\"\r\n\r\n", line, sha1)) {
        checked.problems.push_back("the body does not begin with the field \"part_sha1\"");
        return false;
    }
    if (!Take(rest, line + dashes + line + "Content-Disposition: form-data; name=\"myfile\"; filename=\"", "\"",
              name)) {
        checked.problems.push_back("behind \"part_sha1\" there is no file \"myfile\"");
        return false;
    }
    const std::string_view behindName = "\"\r\nContent-Type: application/octet-stream\r\n\r\n";
    if (!rest.starts_with(behindName)) {
        checked.problems.push_back("the file \"myfile\" is not application/octet-stream, or has other headers");
        return false;
    }
    rest.remove_prefix(behindName.size());
    const std::string end = line + dashes + "--" + line;
    if (!rest.ends_with(end)) {
        checked.problems.push_back("the body does not end with the boundary, two dashes and a line end");
        return false;
    }
    checked.part = rest.substr(0, rest.size() - end.size());
    checked.sha1 = sha1;
    checked.fileName = name;
    return true;
}

}  // namespace

PrepareRequest CheckPrepareRequest(const Request& request) {
    PrepareRequest checked;
    CheckTransport(request, "PUT", "", checked.problems);
    // "&" may stand in the values, so the parameters are found by their names, the second one from behind.
    const std::string begin = std::string(kPreparePath) + "?com_params=", between = "&biz_params=";
    const size_t second = request.target.rfind(between);
    if (!request.target.starts_with(begin) || second == std::string::npos || second < begin.size()) {
        checked.problems.push_back("the query must be com_params=..&biz_params=..");
        return checked;
    }
    const std::string_view target = request.target;
    checked.comParams = ReadComParams(
        DecodeQueryValue("com_params", target.substr(begin.size(), second - begin.size()), checked.problems),
        checked.device, checked.problems);
    ReadBizParams(DecodeQueryValue("biz_params", target.substr(second + between.size()), checked.problems), checked);
    return checked;
}

PartRequest CheckPartRequest(const Request& request, const Target& target) {
    PartRequest checked;
    CheckTransport(request, "POST", std::string("multipart/form-data; boundary=") + kBoundary, checked.problems);
    const std::string* const accept = FindHeader(request, "Accept");
    if (!accept || *accept != "*/*") checked.problems.push_back("Accept must be \"*/*\"");
    const std::string *const upload = FindValue(target, "upload"), *const position = FindValue(target, "pos");
    uint64_t number = 0;
    if (!upload || !position || !ReadDecimal(*position, number) || number > INT64_MAX) {
        checked.problems.push_back("the address is none that this server gave");
        return checked;
    }
    checked.upload = *upload;
    checked.position = static_cast<int64_t>(number);
    if (!ReadBody(request, checked)) return checked;
    checked.isReadable = true;
    const std::string sha1 = Sha1Text(checked.part);
    checked.isIntact = checked.sha1 == sha1 || (checked.sha1.empty() && checked.part.empty());
    if (!checked.isIntact)
        checked.problems.push_back("\"part_sha1\" is \"" + checked.sha1 + "\"; that of the part is " + sha1);
    return checked;
}

std::string PartUrl(const std::string& server, const char* path, const std::string& upload, int64_t position) {
    return server + path + "?upload=" + upload + "&pos=" + std::to_string(position);
}

std::string UploadAnswer(const std::string& uploadUrl, int64_t nextPos) {
    Json::Value answer(Json::objectValue);
    answer["ret"] = 0;
    answer["err"] = "";
    answer["biz_data"]["upload_url"] = uploadUrl;
    answer["biz_data"]["next_pos"] = static_cast<Json::Int64>(nextPos);
    return WriteCompact(answer);
}

std::string UploadError(int64_t code, const std::string& message) {
    return ConfigError(code, message);  // the same shape
}

}  // namespace OrvaneDevServer
