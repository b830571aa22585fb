#include "System/WWW/UrlReference.h"

#include <arpa/inet.h>
#include <strings.h>

#include <algorithm>
#include <cstring>
#include <string>

namespace Quern {
namespace {

bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}
bool IsAlpha(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}
bool IsHex(char c) {
    return IsDigit(c) || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}
bool IsUnreservedOrDelimiter(char c) {
    return IsAlpha(c) || IsDigit(c) || (c != '\0' && strchr("-._~!$&'()*+,;=", c));
}

// Unreserved characters, sub-delimiters, percent-encoded bytes, and what `others` holds.
bool ConsistsOf(std::string_view text, const char* others) {
    for (size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (c == '%') {
            if (text.size() - i < 3 || !IsHex(text[i + 1]) || !IsHex(text[i + 2])) return false;
            i += 2;
        } else if (!IsUnreservedOrDelimiter(c) && !(c != '\0' && strchr(others, c))) {
            return false;
        }
    }
    return true;
}

bool IsScheme(std::string_view text) {
    return !text.empty() && IsAlpha(text[0]) && std::all_of(text.begin(), text.end(), [](char c) {
        return IsAlpha(c) || IsDigit(c) || c == '+' || c == '-' || c == '.';
    });
}

// What stands between the brackets: an IPv6 address, or "v", a hexadecimal number, "." and an address of that version.
bool IsIpLiteral(std::string_view text) {
    if (!text.empty() && (text[0] == 'v' || text[0] == 'V')) {
        const size_t dot = text.find('.');
        if (dot == std::string_view::npos || dot < 2 || dot + 1 == text.size()) return false;
        const std::string_view version = text.substr(1, dot - 1);
        return std::all_of(version.begin(), version.end(), IsHex) && text.find('%') == std::string_view::npos &&
               ConsistsOf(text.substr(dot + 1), ":");
    }
    in6_addr address;
    return inet_pton(AF_INET6, std::string(text).c_str(), &address) == 1 && text.find('\0') == std::string_view::npos;
}

// [ userinfo "@" ] host [ ":" port ]
bool ParseAuthority(std::string_view text, std::string_view& host) {
    const size_t at = text.find('@');
    if (at != std::string_view::npos) {
        if (!ConsistsOf(text.substr(0, at), ":")) return false;
        text.remove_prefix(at + 1);
    }
    size_t end;
    if (!text.empty() && text[0] == '[') {
        end = text.find(']');
        if (end == std::string_view::npos || !IsIpLiteral(text.substr(1, end - 1))) return false;
        ++end;
        if (end < text.size() && text[end] != ':') return false;
    } else {
        end = std::min(text.find(':'), text.size());
        if (!ConsistsOf(text.substr(0, end), "")) return false;
    }
    host = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return std::all_of(text.begin(), text.end(), IsDigit);
}

bool IsSame(std::string_view text, const char* word) {
    return text.size() == strlen(word) && strncasecmp(text.data(), word, text.size()) == 0;
}

}  // namespace

bool UrlReference::IsHttps() const {
    return IsSame(scheme, "https") && !host.empty();
}

bool UrlReference::IsHttp() const {
    return IsHttps() || (IsSame(scheme, "http") && !host.empty());
}

bool ParseUrlReference(std::string_view text, UrlReference* out) {
    UrlReference parts;
    const size_t fragment = text.find('#');
    if (fragment != std::string_view::npos) {
        if (!ConsistsOf(text.substr(fragment + 1), ":@/?")) return false;
        text = text.substr(0, fragment);
    }
    const size_t query = text.find('?');
    if (query != std::string_view::npos) {
        if (!ConsistsOf(text.substr(query + 1), ":@/?")) return false;
        text = text.substr(0, query);
    }
    // A colon in front of the first slash ends a scheme; the first segment of a relative path holds none.
    const size_t colon = text.find_first_of(":/");
    if (colon != std::string_view::npos && text[colon] == ':') {
        parts.scheme = text.substr(0, colon);
        if (!IsScheme(parts.scheme)) return false;
        text.remove_prefix(colon + 1);
    }
    if (text.substr(0, 2) == "//") {
        text.remove_prefix(2);
        const std::string_view authority = text.substr(0, text.find('/'));
        if (!ParseAuthority(authority, parts.host)) return false;
        text.remove_prefix(authority.size());
    }
    if (!ConsistsOf(text, ":@/")) return false;
    if (out) *out = parts;
    return true;
}

}  // namespace Quern
