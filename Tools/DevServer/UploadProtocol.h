// The upload protocol: what a client must send, and the answers' shape.
//
//     PUT /upload/prepareFile?com_params=..&biz_params=..
//
// "com_params" is the configuration protocol's. "biz_params" is {"upload_id":"..","total_size":N,"total_sha1":".."} in
// this order, without blanks or a newline. In both, what may stand in a query stands there as it is ("&" and "=" too);
// the rest is "%" and two upper-case digits.
//
//     POST upload_url, as multipart/form-data with a fixed boundary: "part_sha1", then the file "myfile"
//
// Both are answered {"ret":0,"err":"","biz_data":{"upload_url":"..","next_pos":N}}. Where a part begins the client
// does not say, so this server's addresses do.
#ifndef ORVANE_TOOLS_DEVSERVER_UPLOAD_PROTOCOL_H
#define ORVANE_TOOLS_DEVSERVER_UPLOAD_PROTOCOL_H

#include <json/json.h>

#include <cstdint>
#include <string>
#include <string_view>

#include "DevServer/Message.h"
#include "DevServer/Query.h"

namespace OrvaneDevServer {

constexpr char kPreparePath[] = "/upload/prepareFile";
constexpr char kPartPath[] = "/upload/part";
constexpr char kOtherPartPath[] = "/upload/other-part";  // the same, where a new address is ordered

// What an announcement says.
struct PrepareRequest {
    Problems problems;
    Json::Value comParams;    // null if they cannot be read
    std::string device;       // "did"; empty if it cannot be read
    bool isReadable = false;  // the members below
    std::string uploadId;
    int64_t totalSize = 0;  // bytes; never negative
    std::string totalSha1;  // "" for a file that is not there
};

// What a part says, and where it belongs.
struct PartRequest {
    Problems problems;
    bool isReadable = false;  // the members below
    std::string upload;       // as PartUrl was given it
    int64_t position = 0;     // in the file, as PartUrl was given it
    std::string sha1;         // "part_sha1", as it came
    std::string fileName;     // as it came; nobody opens it
    std::string_view part;    // in the request
    bool isIntact = false;    // `sha1` is that of the part, or both are empty: the file is gone from the device
};

// Reads the request and reports what it breaks. Any thread.
PrepareRequest CheckPrepareRequest(const Request& request);
PartRequest CheckPartRequest(const Request& request, const Target& target);

// The address for the part that begins at that position: "http://HOST:PORT" and the path, with "upload" and "pos".
std::string PartUrl(const std::string& server, const char* path, const std::string& upload, int64_t position);
// {"ret":0,"err":"","biz_data":{"upload_url":"..","next_pos":N}}
std::string UploadAnswer(const std::string& uploadUrl, int64_t nextPos);
// {"ret":..,"err":".."}
std::string UploadError(int64_t code, const std::string& message);

}  // namespace OrvaneDevServer

#endif
