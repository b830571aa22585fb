#include "Support/HttpServer.h"

#include <sys/socket.h>

#include <cstdlib>
#include <sstream>

namespace OrvaneTest {

std::string HttpRequest::Header(const std::string& name) const {
    const std::string mark = "\r\n" + name + ": ";
    const size_t at = head.find(mark);
    if (at == std::string::npos) return "";
    const size_t begin = at + mark.size();
    return head.substr(begin, head.find("\r\n", begin) - begin);
}

HttpServer::HttpServer(Handler handler) : _handler(std::move(handler)) {
    _service = std::make_unique<TcpService>([this](int connection) { Serve(connection); });
}

std::string HttpServer::Url(const std::string& target) const {
    return "http://127.0.0.1:" + std::to_string(Port()) + target;
}

std::vector<HttpRequest> HttpServer::Requests() const {
    const std::lock_guard guard(_mutex);
    return _requests;
}

void HttpServer::Serve(int connection) {
    std::string bytes;
    const auto readMore = [&] {
        char buffer[65536];
        const ssize_t count = recv(connection, buffer, sizeof buffer, 0);
        if (count > 0) bytes.append(buffer, static_cast<size_t>(count));
        return count > 0;
    };
    for (;;) {
        size_t end;
        while ((end = bytes.find("\r\n\r\n")) == std::string::npos)
            if (!readMore()) return;
        HttpRequest request;
        request.head = bytes.substr(0, end + 2);
        std::istringstream(request.head) >> request.method >> request.target;
        const size_t length = strtoul(request.Header("Content-Length").c_str(), nullptr, 10);
        bytes.erase(0, end + 4);
        while (bytes.size() < length)
            if (!readMore()) return;
        request.body = bytes.substr(0, length);
        bytes.erase(0, length);
        {
            const std::lock_guard guard(_mutex);
            _requests.push_back(request);
        }
        const std::string answer = _handler(request);
        if (answer.empty() || !SendAll(connection, answer)) return;
    }
}

std::string HttpAnswer(const std::string& status, const std::string& body, const std::string& headers) {
    return "HTTP/1.1 " + status + "\r\n" + headers + "Content-Length: " + std::to_string(body.size()) + "\r\n\r\n" +
           body;
}

std::string ServedFile::Answer(const HttpRequest& request) const {
    const std::string validator = "ETag: " + entityTag + "\r\n" + headers;
    const std::string range = request.Header("Range");
    if (range.empty() || request.Header("If-Range") != entityTag) return HttpAnswer("200 OK", content, validator);
    const size_t first = strtoul(range.c_str() + sizeof "bytes=" - 1, nullptr, 10);
    const std::string total = std::to_string(content.size());
    if (first >= content.size()) return HttpAnswer("416 No", "", "Content-Range: bytes */" + total + "\r\n");
    return HttpAnswer("206 Part", content.substr(first),
                      validator + "Content-Range: bytes " + std::to_string(first) + "-" +
                          std::to_string(content.size() - 1) + "/" + total + "\r\n");
}

}  // namespace OrvaneTest
