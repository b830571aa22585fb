#include "System/Network/Linux/RouteReader.h"

#include <arpa/inet.h>
#include <linux/if.h>
#include <linux/if_arp.h>
#include <linux/rtnetlink.h>
#include <netlink/msg.h>
#include <netlink/route/addr.h>

#include <optional>
#include <utility>
#include <vector>

#include "System/Network/Linux/Netlink.h"
#include "System/Network/ReachabilitySource.h"
#include "System/Network/WifiSource.h"

namespace Quern {
namespace {

// Addresses of the internet that nobody has (RFC 5737, RFC 3849), to ask the kernel from where it would send to one.
constexpr char kSomewhereIPv4[] = "198.51.100.1";
constexpr char kSomewhereIPv6[] = "2001:db8::1";

constexpr int kListAttempts = 10;

NetlinkLink FindLink(nl_sock* socket, int index) {
    rtnl_link* link = nullptr;
    if (rtnl_link_get_kernel(socket, index, nullptr, &link) < 0) return nullptr;
    return NetlinkLink(link);
}

bool IsUsable(rtnl_link* link) {
    constexpr unsigned kUsable = IFF_UP | IFF_LOWER_UP;
    return (rtnl_link_get_flags(link) & kUsable) == kUsable;
}

// By what drivers of modems have in common: the link's kind, its hardware type, or the names that they are given.
bool IsCellular(rtnl_link* link) {
    const char* const kindText = rtnl_link_get_type(link);
    const char* const nameText = rtnl_link_get_name(link);
    const std::string kind = kindText ? kindText : "", name = nameText ? nameText : "";
    const unsigned type = rtnl_link_get_arptype(link);
    return kind == "wwan" || kind == "rmnet" || type == ARPHRD_PPP || type == ARPHRD_RAWIP || name.starts_with("ww") ||
           name.starts_with("rmnet") || name.starts_with("ppp");
}

std::string NameOf(rtnl_link* link) {
    const char* const name = rtnl_link_get_name(link);
    return name ? name : "";
}

std::string TextOf(const nl_addr* address) {
    if (!address) return {};
    char text[INET6_ADDRSTRLEN] = "";
    inet_ntop(nl_addr_get_family(address), nl_addr_get_binary_addr(address), text, sizeof text);
    return text;
}

std::string GatewayOf(rtnl_nexthop* hop) {
    const nl_addr* const gateway = rtnl_route_nh_get_gateway(hop);
    return TextOf(gateway ? gateway : rtnl_route_nh_get_via(hop));  // "via": of the other family
}

NetlinkAddress ParseAddress(const char* text) {
    nl_addr* address = nullptr;
    if (nl_addr_parse(text, AF_UNSPEC, &address) < 0) return nullptr;
    return NetlinkAddress(address);
}

// The route in the message, or null: one that another program set up may be of a kind that is not understood here.
NetlinkRoute ParseRoute(nl_msg* message) {
    rtnl_route* route = nullptr;
    if (rtnl_route_parse(nlmsg_hdr(message), &route) < 0) return nullptr;
    return NetlinkRoute(route);
}

// What the kernel would do with a packet to the address; over that interface alone if it is not 0. Null, with
// `answered` set, if it would drop it. A failure on the way to the kernel or back is no answer.
NetlinkRoute LookUp(nl_sock* socket, const nl_addr* address, int interface, bool& answered) {
    answered = false;
    rtmsg head{};
    head.rtm_family = static_cast<unsigned char>(nl_addr_get_family(address));
    head.rtm_dst_len = static_cast<unsigned char>(8 * nl_addr_get_len(address));
    const NetlinkMessage request(nlmsg_alloc_simple(RTM_GETROUTE, 0));
    if (!request || nlmsg_append(request.get(), &head, sizeof head, NLMSG_ALIGNTO) < 0 ||
        nla_put_addr(request.get(), RTA_DST, const_cast<nl_addr*>(address)) < 0 ||
        (interface != 0 && nla_put_u32(request.get(), RTA_OIF, static_cast<uint32_t>(interface)) < 0))
        return nullptr;

    struct Answer {
        bool hasCome = false;
        NetlinkRoute route;
    } answer;
    const auto take = [](nl_msg* message, void* into) -> int {
        *static_cast<Answer*>(into) = {true, ParseRoute(message)};
        return NL_OK;
    };
    const auto refuse = [](sockaddr_nl*, nlmsgerr*, void* into) -> int {
        static_cast<Answer*>(into)->hasCome = true;
        return NL_STOP;
    };
    const NetlinkCallbacks callbacks(nl_cb_alloc(NL_CB_DEFAULT));
    if (!callbacks) return nullptr;
    nl_cb_set(callbacks.get(), NL_CB_VALID, NL_CB_CUSTOM, take, &answer);
    nl_cb_err(callbacks.get(), NL_CB_CUSTOM, refuse, &answer);
    nl_socket_disable_auto_ack(socket);  // the route or an error is the answer
    if (nl_send_auto(socket, request.get()) < 0) return nullptr;
    nl_recvmsgs(socket, callbacks.get());
    answered = answer.hasCome;
    return std::move(answer.route);
}

// A way out that is being weighed.
struct Candidate {
    uint32_t metric;
    int family;
    int interface;
    std::string name, gateway, source;
    bool isCellular;
};

bool IsDefault(nl_msg* message) {
    const nlmsghdr* const header = nlmsg_hdr(message);
    if (header->nlmsg_type != RTM_NEWROUTE || !nlmsg_valid_hdr(header, sizeof(rtmsg))) return false;
    const auto* const route = static_cast<const rtmsg*>(nlmsg_data(header));
    return (route->rtm_family == AF_INET || route->rtm_family == AF_INET6) && route->rtm_dst_len == 0 &&
           route->rtm_type == RTN_UNICAST && route->rtm_table == RT_TABLE_MAIN;
}

// Lists the default routes of both families. Only they are taken apart, of what may be very many routes, some of kinds
// that are not understood here.
bool ListDefaultRoutes(nl_sock* socket, std::vector<NetlinkRoute>& routes) {
    const auto take = [](nl_msg* message, void* into) -> int {
        if (!IsDefault(message)) return NL_OK;
        if (NetlinkRoute route = ParseRoute(message))
            static_cast<std::vector<NetlinkRoute>*>(into)->push_back(std::move(route));
        return NL_OK;
    };
    const NetlinkCallbacks callbacks(nl_cb_alloc(NL_CB_DEFAULT));
    if (!callbacks) return false;
    nl_cb_set(callbacks.get(), NL_CB_VALID, NL_CB_CUSTOM, take, &routes);
    int result = -NLE_DUMP_INTR;  // the routes changed while they were listed
    for (int attempt = 0; result == -NLE_DUMP_INTR && attempt < kListAttempts; ++attempt) {
        routes.clear();
        rtmsg all{};
        all.rtm_family = AF_UNSPEC;
        if (nl_send_simple(socket, RTM_GETROUTE, NLM_F_DUMP, &all, sizeof all) < 0) return false;
        result = nl_recvmsgs(socket, callbacks.get());
    }
    return result >= 0;
}

// The lower metric; IPv4 goes first where they are the same, and otherwise what the kernel names first.
bool IsBetter(uint32_t metric, int family, const std::optional<Candidate>& best) {
    if (!best || metric != best->metric) return !best || metric < best->metric;
    return family == AF_INET && best->family == AF_INET6;
}

void Weigh(nl_sock* socket, rtnl_route* route, std::optional<Candidate>& best) {
    const uint32_t metric = rtnl_route_get_priority(route);
    const int family = rtnl_route_get_family(route);
    for (int i = 0; i < rtnl_route_get_nnexthops(route); ++i) {
        rtnl_nexthop* const hop = rtnl_route_nexthop_n(route, i);
        const int interface = rtnl_route_nh_get_ifindex(hop);
        const bool isDown = rtnl_route_nh_get_flags(hop) & (RTNH_F_DEAD | RTNH_F_LINKDOWN);
        if (isDown || !IsBetter(metric, family, best)) continue;
        const NetlinkLink link = FindLink(socket, interface);
        if (!link || !IsUsable(link.get())) continue;
        best = {metric,
                family,
                interface,
                NameOf(link.get()),
                GatewayOf(hop),
                TextOf(rtnl_route_get_pref_src(route)),
                IsCellular(link.get())};
    }
}

// Leaves the source empty if the kernel has none.
bool FindSource(nl_sock* socket, int family, int interface, std::string& source) {
    const NetlinkAddress somewhere = ParseAddress(family == AF_INET ? kSomewhereIPv4 : kSomewhereIPv6);
    bool answered = false;
    const NetlinkRoute route = somewhere ? LookUp(socket, somewhere.get(), interface, answered) : nullptr;
    if (route) source = TextOf(rtnl_route_get_pref_src(route.get()));
    return answered;
}

uint32_t FlagsOfLink(bool isCellular) {
    return kSCNetworkReachabilityFlagsReachable | (isCellular ? uint32_t{kSCNetworkReachabilityFlagsIsWWAN} : 0u);
}

}  // namespace

bool ReadDefaultWay(Way& way) {
    const NetlinkSocket socket = OpenNetlink(NETLINK_ROUTE);
    std::vector<NetlinkRoute> routes;
    if (!socket || !ListDefaultRoutes(socket.get(), routes)) return false;
    std::optional<Candidate> best;
    for (const NetlinkRoute& route : routes)
        Weigh(socket.get(), route.get(), best);
    if (!best) {
        way = {};
        return true;
    }
    if (best->source.empty() && !FindSource(socket.get(), best->family, best->interface, best->source)) return false;
    way = {FlagsOfLink(best->isCellular), best->name, best->gateway, best->source};
    return true;
}

bool ReadWayTo(const char* text, Way& way) {
    const NetlinkSocket socket = OpenNetlink(NETLINK_ROUTE);
    const NetlinkAddress address = ParseAddress(text);
    if (!socket || !address) return false;
    bool answered = false;
    const NetlinkRoute route = LookUp(socket.get(), address.get(), 0, answered);
    if (!answered) return false;
    way = {};
    if (!route || rtnl_route_get_nnexthops(route.get()) == 0) return true;
    rtnl_nexthop* const hop = rtnl_route_nexthop_n(route.get(), 0);
    const NetlinkLink link = FindLink(socket.get(), rtnl_route_nh_get_ifindex(hop));
    const int type = rtnl_route_get_type(route.get());
    if (!link || !IsUsable(link.get()) || (type != RTN_UNICAST && type != RTN_LOCAL)) return true;
    way = {FlagsOfLink(IsCellular(link.get())), NameOf(link.get()), GatewayOf(hop),
           TextOf(rtnl_route_get_pref_src(route.get()))};
    if (type == RTN_LOCAL) way.flags |= kSCNetworkReachabilityFlagsIsLocalAddress;
    if (way.gateway.empty()) way.flags |= kSCNetworkReachabilityFlagsIsDirect;
    return true;
}

bool ReadWifiWay(Way& way) {
    const NetlinkSocket socket = OpenNetlink(NETLINK_ROUTE);
    nl_cache* list = nullptr;
    if (!socket || rtnl_addr_alloc_cache(socket.get(), &list) < 0) return false;
    const NetlinkCache addresses(list);
    way = {};
    for (const std::string& name : WifiSource::Current().CNCopySupportedInterfaces()) {
        rtnl_link* found = nullptr;
        if (rtnl_link_get_kernel(socket.get(), 0, name.c_str(), &found) < 0) continue;
        const NetlinkLink link(found);
        if (!IsUsable(found)) continue;
        for (nl_object* object = nl_cache_get_first(list); object; object = nl_cache_get_next(object)) {
            auto* const address = reinterpret_cast<rtnl_addr*>(object);
            if (rtnl_addr_get_family(address) != AF_INET ||
                rtnl_addr_get_ifindex(address) != rtnl_link_get_ifindex(found))
                continue;
            way = {kSCNetworkReachabilityFlagsReachable | kSCNetworkReachabilityFlagsIsDirect, name, "",
                   TextOf(rtnl_addr_get_local(address))};
            return true;
        }
    }
    return true;
}

bool IsNumericAddress(const char* text) {
    in6_addr ignored;
    return inet_pton(AF_INET, text, &ignored) == 1 || inet_pton(AF_INET6, text, &ignored) == 1;
}

}  // namespace Quern
