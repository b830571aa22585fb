// The answer that plugins hand to each other: a copy of everything, so that it outlives whatever it was made of.
#ifndef ORVANE_SYSTEM_WWW_TASK_URL_RESPONSE_IMPL_H
#define ORVANE_SYSTEM_WWW_TASK_URL_RESPONSE_IMPL_H

#include <map>
#include <string>

#include "Orvane/UrlResponse.h"

namespace Quern {

// Filled by whoever makes it, on one thread, and from then on only read (Orvane/UrlResponse.h).
class UrlResponseImpl final : public UrlResponse {
public:
    // Without an address, a status or a body.
    UrlResponseImpl() = default;
    // A null text leaves that part as it is by default; a null body or a length below 1 is no body.
    UrlResponseImpl(const char* url, const char* version, int status, const char* message, const void* body,
                    long long bodyLength);

    // Adds a header. Nulls are ignored. Contrary to the tasks' SetHttpHeader, a known name keeps its first value.
    void SetHeader(const char* name, const char* value);

    const char* Header(const char* name) override;
    const char* Url() override { return _url.c_str(); }
    const char* Version() override { return _version.c_str(); }
    int Status() override { return _status; }
    const char* Message() override { return _message.c_str(); }
    const char* Body() override { return _body.empty() ? nullptr : _body.data(); }
    long long BodyLength() override { return static_cast<long long>(_body.size()); }

private:
    std::string _url;
    std::string _version = "HTTP/1.1";
    int _status = 0;
    std::string _message;
    std::string _body;
    std::map<std::string, std::string> _headers;  // by the name as it was given: the case of letters counts
};

}  // namespace Quern

#endif
