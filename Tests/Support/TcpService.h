// A server on a free port of 127.0.0.1: one thread a connection.
#ifndef ORVANE_TESTS_SUPPORT_TCP_SERVICE_H
#define ORVANE_TESTS_SUPPORT_TCP_SERVICE_H

#include <atomic>
#include <functional>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

namespace OrvaneTest {

class TcpService {
public:
    // `serve` is called on a thread of its own for each connection, which is closed when it returns.
    explicit TcpService(std::function<void(int connection)> serve);
    // Shuts the connections down, the threads' reads and writes with them, and waits for the threads.
    ~TcpService();

    int Port() const { return _port; }
    // How many connections have come so far.
    int Connections() const { return _connections; }

private:
    void Accept();

    const std::function<void(int)> _serve;
    int _listener;
    int _port;
    std::atomic<int> _connections{0};
    std::mutex _mutex;
    std::set<int> _open;
    bool _isEnding = false;
    std::vector<std::thread> _threads;
    std::thread _accepting;
};

// A connection to a port of 127.0.0.1; -1 if it was refused.
int ConnectTo(int port);
// False if the other side is gone.
bool SendAll(int connection, const std::string& bytes);

}  // namespace OrvaneTest

#endif
