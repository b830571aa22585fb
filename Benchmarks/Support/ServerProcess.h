// A server of the measurements, in a process of its own, so that its work is not measured along.
#ifndef ORVANE_BENCHMARKS_SUPPORT_SERVER_PROCESS_H
#define ORVANE_BENCHMARKS_SUPPORT_SERVER_PROCESS_H

#include <sys/types.h>

#include <functional>

namespace Orvane::Bench {

// Made before any thread. Ends with the object, and with its maker.
class ServerProcess {
public:
    // `serve` is called there, on a thread of its own for each connection, with the port that the server has.
    explicit ServerProcess(std::function<void(int connection, int port)> serve);
    ~ServerProcess();
    ServerProcess(const ServerProcess&) = delete;
    ServerProcess& operator=(const ServerProcess&) = delete;

    int Port() const { return _port; }

private:
    pid_t _process;
    int _port = 0;
};

}  // namespace Orvane::Bench

#endif
