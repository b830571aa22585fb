#include "DevServer/Transport.h"

#include <algorithm>
#include <iterator>

namespace OrvaneDevServer {
namespace {

// The client sets no header of its own for these requests; these are the platform's.
constexpr std::string_view kTransportHeaders[] = {
    "Host", "User-Agent", "Accept", "Accept-Language", "Accept-Encoding", "Connection"};
constexpr std::string_view kBodyHeaders[] = {"Content-Length", "Content-Type", "Content-Encoding", "Transfer-Encoding",
                                             "Expect"};

template <size_t N>
bool IsOneOf(const std::string_view (&names)[N], const std::string& name) {
    return std::any_of(std::begin(names), std::end(names),
                       [&name](std::string_view known) { return EqualIgnoringCase(known, name); });
}

void CheckFirstLineAndHost(const Request& request, const std::string& method, Problems& problems) {
    if (request.method != method) problems.push_back("the method is " + request.method + "; it must be " + method);
    if (request.version != "HTTP/1.1")
        problems.push_back("the version is " + request.version + "; it must be HTTP/1.1");
    const auto hosts = std::count_if(request.headers.begin(), request.headers.end(),
                                     [](const Header& header) { return EqualIgnoringCase(header.first, "Host"); });
    if (hosts != 1) problems.push_back("there are " + std::to_string(hosts) + " Host headers; there must be one");
}

}  // namespace

void CheckTransport(const Request& request, Problems& problems) {
    CheckFirstLineAndHost(request, "GET", problems);
    for (const auto& [name, value] : request.headers) {
        if (IsOneOf(kBodyHeaders, name))
            problems.push_back("the header \"" + name + "\" tells of a body; the request has none");
        else if (!IsOneOf(kTransportHeaders, name))
            problems.push_back("the header \"" + name + "\" is none that the client or its transport sends");
    }
}

void CheckTransport(const Request& request, const std::string& method, const std::string& contentType,
                    Problems& problems) {
    CheckFirstLineAndHost(request, method, problems);
    if (contentType.empty() && !request.body.empty())
        problems.push_back("there is a body of " + std::to_string(request.body.size()) + " bytes; there must be none");
    for (const auto& [name, value] : request.headers) {
        const bool isType = EqualIgnoringCase(name, "Content-Type");
        if (isType && value != contentType)
            problems.push_back("Content-Type is \"" + value + "\"; " +
                               (contentType.empty() ? "there must be none" : "it must be \"" + contentType + "\""));
        else if (!isType && !EqualIgnoringCase(name, "Content-Length") && !IsOneOf(kTransportHeaders, name))
            problems.push_back("the header \"" + name + "\" is none that the client or its transport sends");
    }
    if (!contentType.empty() && !FindHeader(request, "Content-Type"))
        problems.push_back("there is no Content-Type; it must be \"" + contentType + "\"");
}

}  // namespace OrvaneDevServer
