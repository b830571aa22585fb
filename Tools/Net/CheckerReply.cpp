#include "Net/CheckerReply.h"

#include <cerrno>
#include <cstring>

namespace OrvaneNet {

std::string WhyNoIcmp(const std::string& command) {
    // On this system the two protocols hang on the same rights: one is asked for both.
    const int error = gs_OrvaneCheckIcmp(false);
    if (error == 0) return {};
    if (error == EACCES || error == EPERM) return command + " needs net.ipv4.ping_group_range or CAP_NET_RAW";
    return command + " gets no ICMP socket: " + strerror(error);
}

}  // namespace OrvaneNet
