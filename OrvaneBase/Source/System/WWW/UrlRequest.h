// What a transfer asks for: address, method, headers, body.
#ifndef ORVANE_SYSTEM_WWW_URL_REQUEST_H
#define ORVANE_SYSTEM_WWW_URL_REQUEST_H

#include <strings.h>

#include <string>
#include <vector>

namespace Quern {

// A plain value.
class UrlRequest {
public:
    struct Header {
        std::string name;
        std::string value;
    };

    UrlRequest() = default;
    explicit UrlRequest(std::string address) : url(std::move(address)) {}

    // Sets a header, in place of one whose name differs in case at most. What would break the message, or belongs to
    // the transport, is left out with one line on the console: a name that is no token, a value with CR, LF or NUL, and
    // Content-Length, Transfer-Encoding and Connection.
    void SetValueForHttpHeader(const std::string& name, const std::string& value);
    // The value; null if there is no such header. The case of the name does not matter.
    const std::string* FindHeader(const char* name) const {
        for (const Header& header : headers)
            if (strcasecmp(header.name.c_str(), name) == 0) return &header.value;
        return nullptr;
    }

    std::string url;
    std::string method = "GET";
    std::vector<Header> headers;
    std::string body;  // none if empty
};

}  // namespace Quern

#endif
