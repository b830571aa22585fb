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

}  // namespace

void CheckTransport(const Request& request, Problems& problems) {
    if (request.method != "GET") problems.push_back("the method is " + request.method + "; it must be GET");
    if (request.version != "HTTP/1.1")
        problems.push_back("the version is " + request.version + "; it must be HTTP/1.1");
    const auto hosts = std::count_if(request.headers.begin(), request.headers.end(),
                                     [](const Header& header) { return EqualIgnoringCase(header.first, "Host"); });
    if (hosts != 1) problems.push_back("there are " + std::to_string(hosts) + " Host headers; there must be one");
    for (const auto& [name, value] : request.headers) {
        if (IsOneOf(kBodyHeaders, name))
            problems.push_back("the header \"" + name + "\" tells of a body; the request has none");
        else if (!IsOneOf(kTransportHeaders, name))
            problems.push_back("the header \"" + name + "\" is none that the client or its transport sends");
    }
}

}  // namespace OrvaneDevServer
