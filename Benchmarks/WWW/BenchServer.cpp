#include "BenchServer.h"

#include <signal.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "Support/TcpService.h"

namespace Orvane::Bench {
namespace {

void Serve(int connection) {
    const std::string piece(1 << 18, 'x');
    char request[8192];
    for (;;) {
        size_t length = 0;
        do {
            const ssize_t count = recv(connection, request + length, sizeof request - 1 - length, 0);
            if (count <= 0) return;
            length += static_cast<size_t>(count);
            request[length] = '\0';
        } while (!std::string_view(request, length).ends_with("\r\n\r\n"));
        const std::string_view line(request);
        long long left = atoll(request + line.find('/') + 1);
        std::string head = "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(left) + "\r\n\r\n";
        const size_t first = static_cast<size_t>(std::min<long long>(left, 4096));
        if (!OrvaneTest::SendAll(connection, head + piece.substr(0, first))) return;
        for (left -= static_cast<long long>(first); left > 0; left -= static_cast<long long>(piece.size()))
            if (!OrvaneTest::SendAll(connection, left < static_cast<long long>(piece.size())
                                                     ? piece.substr(0, static_cast<size_t>(left))
                                                     : piece))
                return;
    }
}

}  // namespace

BenchServer::BenchServer() {
    int out[2];
    if (pipe(out) != 0) abort();
    if ((_process = fork()) == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        const OrvaneTest::TcpService service(Serve);
        const int port = service.Port();
        if (write(out[1], &port, sizeof port) != sizeof port) abort();
        for (;;)
            pause();
    }
    if (read(out[0], &_port, sizeof _port) != sizeof _port) abort();
    close(out[0]);
    close(out[1]);
}

BenchServer::~BenchServer() {
    kill(_process, SIGKILL);
    waitpid(_process, nullptr, 0);
}

}  // namespace Orvane::Bench
