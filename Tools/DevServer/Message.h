// A request as it came and an answer as it will go, free of any HTTP library.
#ifndef ORVANE_TOOLS_DEVSERVER_MESSAGE_H
#define ORVANE_TOOLS_DEVSERVER_MESSAGE_H

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace OrvaneDevServer {

// What the server serves devices with.
enum class Protocol { kConfig, kTraceIds, kUpload };

// What a request breaks, one sentence each, for the developer who reads it.
using Problems = std::vector<std::string>;

// The header's name as it came, and its value.
using Header = std::pair<std::string, std::string>;

// A request, whole: its body has come.
struct Request {
    std::string method;           // "GET", as it came
    std::string target;           // the path and the query to the byte, not decoded
    std::string version;          // "HTTP/1.1"
    std::vector<Header> headers;  // of one name also several
    std::string body;
    // Whether the sender has closed its connection. May be empty, which counts as "no". Any thread.
    std::function<bool()> senderHasLeft;
};

// The value of the first header of that name, in any case of letters; null if there is none.
const std::string* FindHeader(const Request& request, std::string_view name);
// Ignores the case of ASCII letters only, as header names do.
bool EqualIgnoringCase(std::string_view left, std::string_view right);

// An answer. The HTTP layer adds the headers of its length and its type.
struct Answer {
    int status = 200;
    std::string contentType = "application/json";
    std::vector<Header> headers;  // beyond those
    std::string body;
    // For an answer that is too big for the memory: so many "x" stand behind `body`, and `tail` behind them.
    uint64_t fillerLength = 0;
    std::string tail;
};

}  // namespace OrvaneDevServer

#endif
