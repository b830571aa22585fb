#include "System/WWW/UrlRequest.h"

#include <strings.h>

#include <algorithm>
#include <cstring>

#include "Base/XLog.h"

namespace Quern {
namespace {

// A token of RFC 9110, section 5.6.2.
bool IsToken(const std::string& text) {
    static const char kOther[] = "!#$%&'*+-.^_`|~";
    const auto isTokenCharacter = [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
               (c != '\0' && strchr(kOther, c));
    };
    return !text.empty() && std::all_of(text.begin(), text.end(), isTokenCharacter);
}

bool IsTransportsOwn(const std::string& name) {
    for (const char* own : {"Content-Length", "Transfer-Encoding", "Connection"})
        if (strcasecmp(name.c_str(), own) == 0) return true;
    return false;
}

}  // namespace

void UrlRequest::SetValueForHttpHeader(const std::string& name, const std::string& value) {
    if (!IsToken(name) || value.find_first_of(std::string_view("\r\n\0", 3)) != std::string::npos ||
        IsTransportsOwn(name)) {
        ORVANE_CONSOLE(kLogWarning, "HTTP header left out: %s", IsToken(name) ? name.c_str() : "its name is no token");
        return;
    }
    const auto known = std::find_if(headers.begin(), headers.end(), [&](const Header& header) {
        return strcasecmp(header.name.c_str(), name.c_str()) == 0;
    });
    if (known != headers.end())
        *known = {name, value};
    else
        headers.push_back({name, value});
}

}  // namespace Quern
