#include "System/WWW/Task/UrlResponseImpl.h"

namespace Quern {

UrlResponseImpl::UrlResponseImpl(const char* url, const char* version, int status, const char* message,
                                 const void* body, long long bodyLength)
    : _status(status) {
    if (url) _url = url;
    if (version) _version = version;
    if (message) _message = message;
    if (body && bodyLength > 0) _body.assign(static_cast<const char*>(body), static_cast<size_t>(bodyLength));
}

void UrlResponseImpl::SetHeader(const char* name, const char* value) {
    if (name && value) _headers.emplace(name, value);
}

const char* UrlResponseImpl::Header(const char* name) {
    const auto found = name ? _headers.find(name) : _headers.end();
    return found == _headers.end() ? nullptr : found->second.c_str();
}

}  // namespace Quern
