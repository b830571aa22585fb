// What every request of the library has in common, whatever its protocol.
#ifndef ORVANE_TOOLS_DEVSERVER_TRANSPORT_H
#define ORVANE_TOOLS_DEVSERVER_TRANSPORT_H

#include "DevServer/Message.h"

namespace OrvaneDevServer {

// Reports a method other than GET, a version other than HTTP/1.1, a body, a missing or doubled Host, and headers that
// neither the client nor its transport sends.
void CheckTransport(const Request& request, Problems& problems);

// The same for another method, whose request tells how long its body is. `contentType` is what its Content-Type must
// be; empty for a request that has none, and no body.
void CheckTransport(const Request& request, const std::string& method, const std::string& contentType,
                    Problems& problems);

}  // namespace OrvaneDevServer

#endif
