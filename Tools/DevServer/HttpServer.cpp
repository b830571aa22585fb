#include "DevServer/HttpServer.h"

#include <sys/socket.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <memory>

#include "DevServer/Connection.h"

namespace OrvaneDevServer {
namespace {

constexpr size_t kThreads = 32;  // more than may wait at a time
constexpr size_t kMostBodyBytes = 1 << 20;
constexpr size_t kMostPartBytes = 65 << 20;  // of an upload, with what is around it
constexpr char kMultipart[] = "multipart/";
constexpr time_t kTimeout = 5;  // seconds for a sender or receiver that stands still

// Whether this thread's request came as far as DevServer; what did not is noted when it is logged.
thread_local bool t_isHandled = false;

// The library's own choice would let a second server take the same port.
void SetSocketOptions(int socket) {
    const int on = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &on, sizeof on);
}

// The library has no use for the body afterwards, and a part has up to 64 MB: it is taken out of the library's request,
// which is handed over as a constant one.
Request Translate(const httplib::Request& from) {
    Request to;
    to.method = from.method;
    to.target = from.target;
    to.version = from.version;
    to.body = std::move(const_cast<std::string&>(from.body));
    for (const auto& [name, value] : from.headers) {
        // The library puts these among the headers.
        const bool isItsOwn =
            name == "REMOTE_ADDR" || name == "REMOTE_PORT" || name == "LOCAL_ADDR" || name == "LOCAL_PORT";
        const bool isDisguised = name == "Content-Type" && value.starts_with(' ');
        if (!isItsOwn) to.headers.emplace_back(name, isDisguised ? value.substr(1) : value);
    }
    const Connection connection{from.local_addr, from.remote_addr, from.local_port, from.remote_port};
    to.senderHasLeft = [connection] { return HasPeerLeft(connection); };
    return to;
}

// The library takes the body of a form apart, and the bytes as they came are lost, unless it does not know the type.
void HideMultipart(const httplib::Request& request) {
    auto& headers = const_cast<httplib::Headers&>(request.headers);
    const auto type = headers.find("Content-Type");
    if (type != headers.end() && type->second.starts_with(kMultipart)) type->second.insert(0, " ");
}

bool IsUpload(const httplib::Request& request) {
    return request.path == kPartPath || request.path == kOtherPartPath;
}

// Sends head, filler and tail piece by piece.
class BigBody {
public:
    explicit BigBody(Answer answer) : _answer(std::move(answer)), _filler(1 << 16, 'x') {}

    size_t Length() const { return _answer.body.size() + _answer.fillerLength + _answer.tail.size(); }

    bool Send(size_t offset, httplib::DataSink& sink) const {
        const size_t head = _answer.body.size(), fillerEnd = head + _answer.fillerLength;
        if (offset < head) return sink.write(_answer.body.data() + offset, head - offset);
        if (offset < fillerEnd) return sink.write(_filler.data(), std::min(_filler.size(), fillerEnd - offset));
        return sink.write(_answer.tail.data() + (offset - fillerEnd), Length() - offset);
    }

private:
    const Answer _answer;
    const std::string _filler;
};

void Translate(const Answer& from, httplib::Response& to) {
    to.status = from.status;
    for (const auto& [name, value] : from.headers)
        to.set_header(name, value);
    if (from.fillerLength == 0) {
        if (from.status != 204 && from.status != 304) to.set_content(from.body, from.contentType);
        return;
    }
    const auto body = std::make_shared<BigBody>(from);
    to.set_content_provider(body->Length(), from.contentType, [body](size_t offset, size_t, httplib::DataSink& sink) {
        return body->Send(offset, sink);
    });
}

}  // namespace

HttpServer::HttpServer(DevServer& server) : _server(server) {
    _http.new_task_queue = [] { return new httplib::ThreadPool(kThreads); };  // the library owns it
    _http.set_socket_options(SetSocketOptions);
    _http.set_keep_alive_max_count(1);
    _http.set_read_timeout(kTimeout);
    _http.set_write_timeout(kTimeout);
    _http.set_payload_max_length(kMostPartBytes);
    const auto handle = [this](const httplib::Request& request, httplib::Response& response) {
        Handle(request, response);
    };
    // Without this the library would wait for a body that no header tells of, until the sender is given up.
    _http.set_pre_routing_handler([handle](const httplib::Request& request, httplib::Response& response) {
        HideMultipart(request);
        if (request.method != "GET" && request.method != "HEAD" &&
            (request.has_header("Content-Length") || request.has_header("Transfer-Encoding")))
            return httplib::Server::HandlerResponse::Unhandled;
        handle(request, response);
        return httplib::Server::HandlerResponse::Handled;
    });
    constexpr char kAny[] = R"([\s\S]*)";
    _http.Post(kAny, handle).Put(kAny, handle).Patch(kAny, handle).Delete(kAny, handle);
    _http.set_logger([this](const httplib::Request& request, const httplib::Response& response) {
        if (!t_isHandled) _server.NoteRefused(request.method, request.target, response.status);
        t_isHandled = false;
    });
}

bool HttpServer::Bind(const std::string& host, int port, std::string& error) {
    errno = 0;
    if (port == 0)
        _port = std::max(_http.bind_to_any_port(host), 0);
    else
        _port = _http.bind_to_port(host, port) ? port : 0;
    if (_port > 0) return true;
    error = host + ", port " + std::to_string(port) + ": " + (errno == 0 ? "cannot be had" : strerror(errno));
    return false;
}

void HttpServer::Start(std::function<void()> ended) {
    _thread = std::thread([this, ended = std::move(ended)] {
        _http.listen_after_bind();
        _hasEnded = true;
        if (!_isStopping) ended();
    });
    // The library takes no order to stop until it runs.
    while (!_http.is_running() && !_hasEnded)
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
}

void HttpServer::Stop() {
    if (!_thread.joinable()) return;
    _isStopping = true;
    _server.Stop();
    _http.stop();
    _thread.join();
}

void HttpServer::Handle(const httplib::Request& request, httplib::Response& response) {
    if (request.body.size() > kMostBodyBytes && !IsUpload(request)) {
        response.status = 413;
        return;
    }
    t_isHandled = true;
    Translate(_server.Handle(Translate(request)), response);
}

}  // namespace OrvaneDevServer
