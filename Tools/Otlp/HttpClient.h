// Posts the messages of one sender to one endpoint. The one implementation is on libcurl (CurlClient.cpp).
#ifndef ORVANE_TOOLS_OTLP_HTTP_CLIENT_H
#define ORVANE_TOOLS_OTLP_HTTP_CLIENT_H

#include <memory>
#include <string>

#include "Otlp/Environment.h"

namespace OrvaneOtlp {

// What came of a POST.
struct PostAnswer {
    int status = 0;             // 0: none came
    std::string problem;        // why not
    std::string body;           // its first 64 KiB
    long long retryAfter = -1;  // seconds of "Retry-After"; -1 if there was none
};

// One thread at a time, but for Abort.
class HttpClient {
public:
    virtual ~HttpClient() {}
    // Before the first Post, on its thread. False, and why in `problem`, if nothing can ever be sent.
    virtual bool Prepare(std::string& problem) = 0;
    // POST, `body` as JSON. Waits for the answer's end, at most as long as the endpoint's timeout says.
    virtual PostAnswer Post(const std::string& body) = 0;
    // Any thread. The Post that is under way ends at once, and so does every later one.
    virtual void Abort() = 0;
};

// On libcurl. Connections are kept, redirects not followed, certificates checked.
std::unique_ptr<HttpClient> MakeCurlClient(const Endpoint& endpoint);

}  // namespace OrvaneOtlp

#endif
