// A network of the test's own, which ends with the process: links, addresses and routes that may be changed at will.
#ifndef ORVANE_TESTS_SUPPORT_NETWORK_NAMESPACE_H
#define ORVANE_TESTS_SUPPORT_NETWORK_NAMESPACE_H

#include <sched.h>
#include <sys/mount.h>

#include <cstdio>
#include <string>

namespace OrvaneTest {

// Runs lines of the ip program in the caller's network. False if one of them fails.
inline bool RunIp(const std::string& batch) {
    FILE* const ip = popen("ip -batch -", "w");
    if (!ip) return false;
    fputs(batch.c_str(), ip);
    return pclose(ip) == 0;
}

// Puts the calling thread, and with it all threads and processes that it starts afterwards, into a network and mounts
// of its own, in which loopback alone exists. False without the right to.
inline bool EnterOwnNetwork() {
    return unshare(CLONE_NEWNS | CLONE_NEWNET) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
           RunIp("link set lo up\n");
}

// A cable from a link of that name to one named "<link>far", up at both ends, with 10.<net>.0.2/24 on it; the far end,
// 10.<net>.0.1, is a gateway that does not answer. "link set <link>far down" pulls the cable out.
inline std::string Cable(const std::string& link, int net) {
    return "link add " + link + " type veth peer name " + link + "far\nlink set " + link + "far up\nlink set " + link +
           " up\naddress add 10." + std::to_string(net) + ".0.2/24 dev " + link + "\n";
}

inline std::string DefaultRoute(const std::string& link, int net, int metric) {
    return "route add default via 10." + std::to_string(net) + ".0.1 dev " + link + " metric " +
           std::to_string(metric) + "\n";
}

}  // namespace OrvaneTest

#endif
