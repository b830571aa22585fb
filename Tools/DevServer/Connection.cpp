#include "DevServer/Connection.h"

#include <arpa/inet.h>
#include <netinet/in.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <sstream>

namespace OrvaneDevServer {
namespace {

constexpr char kEstablished[] = "01";

// An address and a port as the table has them: words of the machine's byte order in hexadecimal. Empty for what is no
// address.
std::string TableForm(const std::string& address, int port) {
    uint32_t words[4];
    size_t count = 0;
    if (inet_pton(AF_INET, address.c_str(), words) == 1)
        count = 1;
    else if (inet_pton(AF_INET6, address.c_str(), words) == 1)
        count = 4;
    else
        return "";
    std::string text;
    char part[16];
    for (size_t i = 0; i < count; ++i) {
        snprintf(part, sizeof part, "%08X", words[i]);
        text += part;
    }
    snprintf(part, sizeof part, ":%04X", static_cast<unsigned>(port) & 0xFFFF);
    return text + part;
}

}  // namespace

bool HasPeerLeft(const Connection& connection) {
    const bool isIpv6 = connection.remoteAddress.find(':') != std::string::npos;
    std::ifstream table(isIpv6 ? "/proc/self/net/tcp6" : "/proc/self/net/tcp");
    if (!table) return false;
    const std::string local = TableForm(connection.localAddress, connection.localPort);
    const std::string remote = TableForm(connection.remoteAddress, connection.remotePort);
    std::string line;
    while (std::getline(table, line)) {
        std::istringstream words(line);
        std::string number, from, to, state;
        words >> number >> from >> to >> state;
        if (from == local && to == remote) return state != kEstablished;
    }
    return true;
}

}  // namespace OrvaneDevServer
