#include "Support/TcpService.h"

#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

namespace OrvaneTest {
namespace {

sockaddr_in Loopback(int port) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    return address;
}

}  // namespace

TcpService::TcpService(std::function<void(int)> serve)
    : _serve(std::move(serve)), _listener(socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address = Loopback(0);
    socklen_t length = sizeof address;
    bind(_listener, reinterpret_cast<sockaddr*>(&address), length);
    listen(_listener, 512);
    getsockname(_listener, reinterpret_cast<sockaddr*>(&address), &length);
    _port = ntohs(address.sin_port);
    _accepting = std::thread([this] { Accept(); });
}

TcpService::~TcpService() {
    {
        const std::lock_guard guard(_mutex);
        _isEnding = true;
        for (const int connection : _open)
            shutdown(connection, SHUT_RDWR);
    }
    shutdown(_listener, SHUT_RDWR);
    _accepting.join();
    close(_listener);
    for (std::thread& thread : _threads)
        thread.join();
}

void TcpService::Accept() {
    for (int connection; (connection = accept4(_listener, nullptr, nullptr, SOCK_CLOEXEC)) >= 0;) {
        const std::lock_guard guard(_mutex);
        if (_isEnding) {
            close(connection);
            return;
        }
        ++_connections;
        _open.insert(connection);
        _threads.emplace_back([this, connection] {
            _serve(connection);
            const std::lock_guard closing(_mutex);
            _open.erase(connection);
            close(connection);
        });
    }
}

int ConnectTo(int port) {
    const int connection = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address = Loopback(port);
    if (connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return connection;
    close(connection);
    return -1;
}

bool SendAll(int connection, const std::string& bytes) {
    for (size_t sent = 0; sent < bytes.size();) {
        const ssize_t count = send(connection, bytes.data() + sent, bytes.size() - sent, MSG_NOSIGNAL);
        if (count <= 0) return false;
        sent += static_cast<size_t>(count);
    }
    return true;
}

}  // namespace OrvaneTest
