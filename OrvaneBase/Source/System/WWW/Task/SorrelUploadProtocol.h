// What an upload sends, to the byte. Docs/DevServer.md has both requests.
#ifndef ORVANE_SYSTEM_WWW_TASK_SORREL_UPLOAD_PROTOCOL_H
#define ORVANE_SYSTEM_WWW_TASK_SORREL_UPLOAD_PROTOCOL_H

#include <cstddef>
#include <string>
#include <string_view>

#include "System/WWW/UrlRequest.h"

// Pure functions; any thread.
namespace SorrelUploadProtocol {

// Encodes with "%" and two upper-case digits what may not stand in the query of an address: everything but ASCII
// letters, digits and "!$&'()*+,-./:;=?@_~". So "&" and "=" stay: who reads the query finds its parameters by name.
std::string EncodeQuery(std::string_view text);

// {"upload_id":..,"total_size":..,"total_sha1":..} in this order, without blanks or a newline; UTF-8 as it stands.
// False, and why in `error`, if the id is no UTF-8 text.
bool WriteBizParams(const std::string& uploadId, long long totalSize, const std::string& totalSha1, std::string& json,
                    std::string& error);

// "BASE/upload/prepareFile?com_params=..&biz_params=.."
std::string PrepareUrl(const std::string& base, const std::string& comParams, const std::string& bizParams);

// The multipart body around one part: "part_sha1", then the file. The part is written into the body, so that it is in
// memory once.
class PartBody {
public:
    // `room`: how long the part can be. Throws std::bad_alloc.
    PartBody(const std::string& fileName, size_t room);

    // Where the part's bytes go, `room` of them.
    char* Part() { return _body.data() + _partAt; }
    // Gives the body whose part is `length` bytes long (40 or 0 characters of digest).
    std::string Finish(size_t length, const std::string& digest) &&;

    // The request that carries it.
    static Quern::UrlRequest Request(const std::string& url, std::string body);

private:
    std::string _body;
    size_t _digestAt;
    size_t _partAt;
};

}  // namespace SorrelUploadProtocol

#endif
