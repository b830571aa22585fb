// Tells whether the other end of a connection is still there, so that no answer is kept waiting for a client that left.
#ifndef ORVANE_TOOLS_DEVSERVER_CONNECTION_H
#define ORVANE_TOOLS_DEVSERVER_CONNECTION_H

#include <string>

namespace OrvaneDevServer {

// The two ends of a TCP connection.
struct Connection {
    std::string localAddress, remoteAddress;  // numeric
    int localPort = 0, remotePort = 0;
};

// Asks the kernel's table of connections: the HTTP library has no way to tell while a request is being answered. Where
// the table cannot be read the other end counts as there. Any thread.
bool HasPeerLeft(const Connection& connection);

}  // namespace OrvaneDevServer

#endif
