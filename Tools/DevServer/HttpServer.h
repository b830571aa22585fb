// The HTTP under DevServer, on the library cpp-httplib. DevServer itself knows nothing of that library.
#ifndef ORVANE_TOOLS_DEVSERVER_HTTP_SERVER_H
#define ORVANE_TOOLS_DEVSERVER_HTTP_SERVER_H

#include <httplib.h>

#include <atomic>
#include <functional>
#include <string>
#include <thread>

#include "DevServer/DevServer.h"

namespace OrvaneDevServer {

// Turns the messages of the HTTP library into ours and back. One connection carries one request: the bytes that a
// refused request leaves unread cannot be taken for the next one, and the end waits for no idle connection.
class HttpServer {
public:
    // `server` must outlive the object.
    explicit HttpServer(DevServer& server);
    ~HttpServer() { Stop(); }

    // Takes the port, any free one for 0. False, and why in `error`, if it cannot be had.
    bool Bind(const std::string& host, int port, std::string& error);
    int Port() const { return _port; }

    // Serves on threads of its own; returns when it does. `ended` is called, on one of them, if it ends by itself.
    void Start(std::function<void()> ended);
    // Ends the server: requests that wait go on, and are answered if their senders take it. Once or not at all.
    void Stop();

private:
    // On one of the library's threads.
    void Handle(const httplib::Request& request, httplib::Response& response);

    DevServer& _server;
    httplib::Server _http;
    int _port = 0;  // 0 before Bind
    std::atomic<bool> _isStopping{false}, _hasEnded{false};
    std::thread _thread;  // takes the connections
};

}  // namespace OrvaneDevServer

#endif
