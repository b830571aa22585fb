#include "SinkServer.h"

#include <sys/socket.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "Support/TcpService.h"

namespace Orvane::Bench {
namespace {

std::string Answer(const std::string& head, int port) {
    long long next = 0, part = 0;
    sscanf(head.c_str(), "%*s /%lld/%lld/", &next, &part);
    const std::string body =
        "{\"ret\":0,\"err\":\"\",\"biz_data\":{\"upload_url\":\"http://127.0.0.1:" + std::to_string(port) + "/" +
        std::to_string(next + part) + "/" + std::to_string(part) + "/\",\"next_pos\":" + std::to_string(next) + "}}";
    return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

void Serve(int connection, int port) {
    std::vector<char> piece(1 << 20);
    std::string head;
    for (;;) {
        size_t end;
        while ((end = head.find("\r\n\r\n")) == std::string::npos) {
            const ssize_t count = recv(connection, piece.data(), piece.size(), 0);
            if (count <= 0) return;
            head.append(piece.data(), static_cast<size_t>(count));
        }
        const size_t length = head.find("Content-Length: ");
        long long left = length < end ? atoll(head.c_str() + length + strlen("Content-Length: ")) : 0;
        left -= static_cast<long long>(head.size() - end - 4);
        while (left > 0) {
            const ssize_t count =
                recv(connection, piece.data(), static_cast<size_t>(std::min<long long>(left, 1 << 20)), 0);
            if (count <= 0) return;
            left -= count;
        }
        if (!OrvaneTest::SendAll(connection, Answer(head, port))) return;
        head.clear();
    }
}

}  // namespace

SinkServer::SinkServer(long long partSize) : _partSize(partSize), _process(Serve) {}

std::string SinkServer::Url() const {
    return "http://127.0.0.1:" + std::to_string(_process.Port()) + "/0/" + std::to_string(_partSize);
}

}  // namespace Orvane::Bench
