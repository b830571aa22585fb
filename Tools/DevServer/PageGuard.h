// Keeps web pages out. The server listens on loopback, where every browser on the same desk reaches it: without this,
// any page that a developer has open could order faults.
#ifndef ORVANE_TOOLS_DEVSERVER_PAGE_GUARD_H
#define ORVANE_TOOLS_DEVSERVER_PAGE_GUARD_H

#include <string>

#include "DevServer/Message.h"

namespace OrvaneDevServer {

// "localhost", 127.0.0.0/8 or "[::1]", with or without a port.
bool IsLoopbackHost(const std::string& host);

// Why a request must not be listened to at all; empty if it may. A browser names the page's origin with whatever a page
// sends, or says that the page is of another site; only a page of this server passes. What is no browser sends neither.
std::string PageRefusal(const Request& request);

// Why a request to the control paths is refused; empty if it is not. Beyond the above it needs one loopback Host: a
// name that an attacker's name server points at this machine makes the origin equal the host.
std::string ControlRefusal(const Request& request);

}  // namespace OrvaneDevServer

#endif
