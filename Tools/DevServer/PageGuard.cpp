#include "DevServer/PageGuard.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <algorithm>

namespace OrvaneDevServer {
namespace {

// The host without its port; empty if what stands behind it is no port.
std::string WithoutPort(const std::string& host) {
    const size_t bracket = host.rfind(']');
    const size_t colon = host.find(':', bracket == std::string::npos ? 0 : bracket);
    if (colon == std::string::npos) return host;
    const bool isPort = colon + 1 < host.size() && std::all_of(host.begin() + static_cast<long>(colon) + 1, host.end(),
                                                               [](char byte) { return byte >= '0' && byte <= '9'; });
    return isPort ? host.substr(0, colon) : "";
}

}  // namespace

bool IsLoopbackHost(const std::string& host) {
    const std::string name = WithoutPort(host);
    in_addr address{};
    if (inet_pton(AF_INET, name.c_str(), &address) == 1) return ntohl(address.s_addr) >> 24 == 127;
    return EqualIgnoringCase(name, "localhost") || name == "[::1]";
}

std::string PageRefusal(const Request& request) {
    const std::string* host = FindHeader(request, "Host");
    for (const auto& [name, value] : request.headers) {
        if (EqualIgnoringCase(name, "Origin") && (!host || !EqualIgnoringCase(value, "http://" + *host)))
            return "it comes from a web page of another origin, \"" + value + "\"";
        if (EqualIgnoringCase(name, "Sec-Fetch-Site") && value != "same-origin" && value != "none")
            return "it comes from a web page of another site";
    }
    return "";
}

std::string ControlRefusal(const Request& request) {
    std::string host;
    for (const auto& [name, value] : request.headers) {
        if (!EqualIgnoringCase(name, "Host")) continue;
        if (!host.empty()) return "it has two Host headers";
        host = value;
    }
    if (!IsLoopbackHost(host)) return "its Host, \"" + host + "\", is no loopback address";
    return PageRefusal(request);
}

}  // namespace OrvaneDevServer
