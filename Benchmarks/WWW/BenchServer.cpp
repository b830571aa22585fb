#include "BenchServer.h"

#include <sys/socket.h>

#include <algorithm>
#include <cstdlib>

#include "Support/TcpService.h"

namespace Orvane::Bench {
namespace {

void Serve(int connection, int) {
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

BenchServer::BenchServer() : _process(Serve) {}

}  // namespace Orvane::Bench
