// A server of HTTP/1.1 whose answers are a test's own.
#ifndef ORVANE_TESTS_SUPPORT_HTTP_SERVER_H
#define ORVANE_TESTS_SUPPORT_HTTP_SERVER_H

#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "Support/TcpService.h"

namespace OrvaneTest {

struct HttpRequest {
    std::string method;
    std::string target;
    std::string head;  // request line and headers, as they came
    std::string body;

    // The first value of a header as it is written here; "" if there is none.
    std::string Header(const std::string& name) const;
};

// Keeps connections.
class HttpServer {
public:
    // Gives the answer's bytes, from the status line on; an empty one closes the connection. Any thread.
    using Handler = std::function<std::string(const HttpRequest& request)>;

    explicit HttpServer(Handler handler);

    int Port() const { return _service->Port(); }
    std::string Url(const std::string& target = "/") const;
    int Connections() const { return _service->Connections(); }
    // All that have come, in order.
    std::vector<HttpRequest> Requests() const;

private:
    void Serve(int connection);

    const Handler _handler;
    mutable std::mutex _mutex;
    std::vector<HttpRequest> _requests;
    std::unique_ptr<TcpService> _service;
};

// An answer with the body's length; `headers` are whole lines.
std::string HttpAnswer(const std::string& status, const std::string& body, const std::string& headers = "");

// A file on the server, which has a validator and is sent in parts if so asked: what a request for it is answered.
struct ServedFile {
    std::string content;
    std::string entityTag;     // with its quotes
    std::string headers = {};  // whole lines

    std::string Answer(const HttpRequest& request) const;
};

}  // namespace OrvaneTest

#endif
