// Owners of libnl's objects: each frees what it holds as libnl wants it, on every way out of a function.
#ifndef ORVANE_SYSTEM_NETWORK_LINUX_NETLINK_H
#define ORVANE_SYSTEM_NETWORK_LINUX_NETLINK_H

#include <netlink/cache.h>
#include <netlink/netlink.h>
#include <netlink/route/link.h>
#include <netlink/route/route.h>

#include <memory>

namespace Quern {

// A deleter that calls that function. libnl counts the holders of some of its objects: there the function ("put") gives
// up one hold, and the last one frees.
template <auto Free>
struct FreeWith {
    template <typename T>
    void operator()(T* object) const {
        Free(object);
    }
};

using NetlinkSocket = std::unique_ptr<nl_sock, FreeWith<nl_socket_free>>;
using NetlinkCache = std::unique_ptr<nl_cache, FreeWith<nl_cache_free>>;
using NetlinkCallbacks = std::unique_ptr<nl_cb, FreeWith<nl_cb_put>>;
using NetlinkMessage = std::unique_ptr<nl_msg, FreeWith<nlmsg_free>>;
using NetlinkAddress = std::unique_ptr<nl_addr, FreeWith<nl_addr_put>>;
using NetlinkLink = std::unique_ptr<rtnl_link, FreeWith<rtnl_link_put>>;
using NetlinkRoute = std::unique_ptr<rtnl_route, FreeWith<rtnl_route_put>>;

// A socket of that netlink protocol, in the calling thread's network namespace; closed on exec. Null if the system has
// none left.
inline NetlinkSocket OpenNetlink(int protocol) {
    NetlinkSocket socket(nl_socket_alloc());
    if (!socket || nl_connect(socket.get(), protocol) < 0) return nullptr;
    return socket;
}

}  // namespace Quern

#endif
