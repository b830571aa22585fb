#include "System/WWW/Task/SorrelUploadProtocol.h"

#include <json/json.h>

#include <cstring>
#include <utility>

#include "Serializer/Codec/Sha1.h"

namespace SorrelUploadProtocol {
namespace {

#define BOUNDARY "----WebKitFormBoundaryftnnT7s3iF7wV5q6"
constexpr std::string_view kHead = "--" BOUNDARY "\r\nContent-Disposition: form-data; name=\"part_sha1\"\r\n\r\n";
constexpr std::string_view kFileHead =
    "\r\n--" BOUNDARY "\r\nContent-Disposition: form-data; name=\"myfile\"; filename=\"";
constexpr std::string_view kFileHeadEnd = "\"\r\nContent-Type: application/octet-stream\r\n\r\n";
constexpr std::string_view kTail = "\r\n--" BOUNDARY "--\r\n";
constexpr char kContentType[] = "multipart/form-data; boundary=" BOUNDARY;
#undef BOUNDARY

bool MayStandInQuery(unsigned char byte) {
    return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
           (byte != '\0' && strchr("!$&'()*+,-./:;=?@_~", byte));
}

// How many bytes the character at the text's start takes in UTF-8; 0 if there is none (RFC 3629).
size_t CharacterLength(std::string_view text) {
    const auto byte = [text](size_t at) { return at < text.size() ? static_cast<unsigned char>(text[at]) : 0u; };
    const unsigned first = byte(0), second = byte(1);
    if (first < 0x80) return 1;
    if (first < 0xC2 || first > 0xF4) return 0;
    const size_t length = first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    for (size_t i = 1; i < length; ++i)
        if ((byte(i) & 0xC0) != 0x80) return 0;
    const bool isOverlong = (first == 0xE0 && second < 0xA0) || (first == 0xF0 && second < 0x90);
    const bool isOutside = (first == 0xED && second >= 0xA0) || (first == 0xF4 && second >= 0x90);
    return isOverlong || isOutside ? 0 : length;
}

bool IsUtf8(std::string_view text) {
    while (!text.empty()) {
        const size_t length = CharacterLength(text);
        if (length == 0) return false;
        text.remove_prefix(length);
    }
    return true;
}

std::string QuotedJson(const std::string& text) {
    Json::StreamWriterBuilder builder;
    builder["emitUTF8"] = true;
    return Json::writeString(builder, text);
}

// As browsers write it: a name that ends its line or its quotes would make another message.
std::string InQuotes(const std::string& fileName) {
    std::string safe;
    for (const char c : fileName) {
        if (c == '"')
            safe += "%22";
        else if (c == '\r')
            safe += "%0D";
        else if (c == '\n')
            safe += "%0A";
        else
            safe += c;
    }
    return safe;
}

}  // namespace

std::string EncodeQuery(std::string_view text) {
    static const char kDigits[] = "0123456789ABCDEF";
    std::string encoded;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if (MayStandInQuery(byte))
            encoded += c;
        else
            (encoded += '%').append(1, kDigits[byte >> 4]).append(1, kDigits[byte & 0x0F]);
    }
    return encoded;
}

bool WriteBizParams(const std::string& uploadId, long long totalSize, const std::string& totalSha1, std::string& json,
                    std::string& error) {
    if (!IsUtf8(uploadId)) {
        error = "upload_id is no UTF-8 text";
        return false;
    }
    json = "{\"upload_id\":" + QuotedJson(uploadId) + ",\"total_size\":" + std::to_string(totalSize) +
           ",\"total_sha1\":" + QuotedJson(totalSha1) + "}";
    return true;
}

std::string PrepareUrl(const std::string& base, const std::string& comParams, const std::string& bizParams) {
    return base + "/upload/prepareFile?com_params=" + EncodeQuery(comParams) + "&biz_params=" + EncodeQuery(bizParams);
}

PartBody::PartBody(const std::string& fileName, size_t room) : _digestAt(kHead.size()) {
    const std::string name = InQuotes(fileName);
    _partAt = kHead.size() + Quern::Sha1::kHexLength + kFileHead.size() + name.size() + kFileHeadEnd.size();
    _body.reserve(_partAt + room + kTail.size());
    _body.append(kHead).append(Quern::Sha1::kHexLength, '0').append(kFileHead).append(name).append(kFileHeadEnd);
    _body.resize(_partAt + room);
}

std::string PartBody::Finish(size_t length, const std::string& digest) && {
    _body.resize(_partAt + length);
    _body += kTail;
    _body.replace(_digestAt, Quern::Sha1::kHexLength, digest);
    return std::move(_body);
}

Quern::UrlRequest PartBody::Request(const std::string& url, std::string body) {
    Quern::UrlRequest request(url);
    request.method = "POST";
    request.SetValueForHttpHeader("Accept", "*/*");
    request.SetValueForHttpHeader("Content-Type", kContentType);
    request.body = std::move(body);
    return request;
}

}  // namespace SorrelUploadProtocol
