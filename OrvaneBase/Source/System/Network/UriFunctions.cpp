// Reading an address as a user writes it, and its form in a network that speaks IPv6 alone (NAT64).
#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <string>

#include "Base/Container/AString.h"
#include "Orvane/OrvaneCore.h"

using Quern::AString;

namespace {

bool HasTwoColons(const char* text) {
    return std::count(text, text + strlen(text), ':') >= 2;
}

unsigned short PortOf(const char* digits) {
    return static_cast<unsigned short>(strtol(digits, nullptr, 10));
}

AString Text(const std::string& text) {
    return AString(text.data(), static_cast<int>(text.size()));
}

// "[host]:port". The port must be there.
bool ParseBracketed(const std::string& rest, AString& host, unsigned short& port) {
    const size_t end = rest.find(']');
    if (end == std::string::npos) return false;
    host = Text(rest.substr(1, end - 1));
    host.append("", 1);  // the terminator is part of the text
    if (rest[end + 1] != ':') return false;
    port = PortOf(rest.c_str() + end + 2);
    return true;
}

}  // namespace

bool IsNumericIPv6Notation(const char* text) {
    return text && (*text == '[' || HasTwoColons(text));
}

bool IsNumericIPv4Notation(const char* text) {
    return text && !HasTwoColons(text) && strspn(text, "1234567890.:") == strlen(text);
}

bool ParseURI(const char* text, AString& scheme, AString& host, unsigned short& port) {
    if (!text) return false;
    std::string rest = text;  // a copy: the text may lie in what is written
    const size_t mark = rest.find("://");
    if (mark != std::string::npos) {
        scheme = Text(rest.substr(0, mark));
        rest.erase(0, mark + strlen("://"));
    }
    if (rest[0] == '[') return ParseBracketed(rest, host, port);
    const size_t colon = IsNumericIPv6Notation(rest.c_str()) ? std::string::npos : rest.find(':');
    host = Text(rest.substr(0, colon));
    port = colon == std::string::npos ? 0 : PortOf(rest.c_str() + colon + 1);
    return true;
}

bool ConvertIpV4To6(const char* text, AString& out) {
    AString scheme, host;
    unsigned short port = 0;
    if (!ParseURI(text, scheme, host, port)) return false;
    if (!IsNumericIPv4Notation(host.c_str())) {
        out = Text(text);
        return true;
    }
    AString address;
    if (!scheme.empty()) address.append(scheme).append("://");
    if (port != 0) address.append("[");
    address.append("64::ff9b:").append(host);
    if (port != 0) address.append("]:").append(std::to_string(port).c_str());
    out = address;
    return true;
}
