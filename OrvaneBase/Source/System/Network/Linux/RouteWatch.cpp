#include "System/Network/Linux/RouteWatch.h"

#include <linux/rtnetlink.h>
#include <netlink/msg.h>

#include <algorithm>
#include <utility>

namespace Quern {
namespace {

bool IsRelevant(int type) {
    switch (type) {
        case RTM_NEWLINK:
        case RTM_DELLINK:
        case RTM_NEWADDR:
        case RTM_DELADDR:
        case RTM_NEWROUTE:
        case RTM_DELROUTE:
            return true;
        default:
            return false;
    }
}

}  // namespace

std::shared_ptr<RouteWatch> RouteWatch::Open() {
    NetlinkSocket socket = OpenNetlink(NETLINK_ROUTE);
    if (!socket) return nullptr;
    nl_socket_disable_seq_check(socket.get());  // messages come unasked
    const int joined = nl_socket_add_memberships(socket.get(), RTNLGRP_LINK, RTNLGRP_IPV4_IFADDR, RTNLGRP_IPV4_ROUTE,
                                                 RTNLGRP_IPV6_IFADDR, RTNLGRP_IPV6_ROUTE, 0);
    if (joined < 0 || nl_socket_set_nonblocking(socket.get()) < 0) return nullptr;
    return std::make_shared<RouteWatch>(std::move(socket));
}

void RouteWatch::Start(std::function<bool()> settled) {
    MainRunLoop& loop = MainRunLoop::Current();
    // The watch and its timers hold this object until Stop.
    const auto begin = [self = shared_from_this(), settled = std::move(settled)] {
        self->_settled = settled;
        self->_watch = MainRunLoop::Current().Watch(nl_socket_get_fd(self->_socket.get()), MainRunLoop::kReadable,
                                                    [self](int) { self->Drain(); });
    };
    if (loop.IsMainThread())
        begin();
    else
        loop.Post(begin);
}

void RouteWatch::Stop() {
    MainRunLoop& loop = MainRunLoop::Current();
    const auto end = [self = shared_from_this()] {
        self->_settled = nullptr;
        MainRunLoop::Current().CancelTimer(std::exchange(self->_timer, 0));
        MainRunLoop::Current().Unwatch(std::exchange(self->_watch, 0));
    };
    if (loop.IsMainThread())
        end();
    else
        loop.Post(end);
}

// Takes all that waits in the socket.
void RouteWatch::Drain() {
    bool isRelevant = false;
    const auto onMessage = [](nl_msg* message, void* into) -> int {
        if (IsRelevant(nlmsg_hdr(message)->nlmsg_type)) *static_cast<bool*>(into) = true;
        return NL_OK;
    };
    nl_socket_modify_cb(_socket.get(), NL_CB_VALID, NL_CB_CUSTOM, onMessage, &isRelevant);
    int result = 0;
    while ((result = nl_recvmsgs_default(_socket.get())) >= 0) {
    }
    // More came than the socket holds: anything may have changed.
    if (result != -NLE_AGAIN) isRelevant = true;
    if (isRelevant) Disturb();
}

void RouteWatch::Disturb() {
    const Clock::time_point now = Clock::now();
    if (_timer == 0) _firstMessage = now;
    const auto passed = std::chrono::duration_cast<std::chrono::milliseconds>(now - _firstMessage).count();
    MainRunLoop& loop = MainRunLoop::Current();
    loop.CancelTimer(_timer);
    _timer = loop.StartTimer(std::min(kQuiet, kLongest - static_cast<long long>(passed)),
                             [self = shared_from_this()] { self->Settle(); });
}

void RouteWatch::Settle() {
    _timer = 0;
    const std::function<bool()> settled = _settled;
    if (settled && !settled()) Disturb();
}

}  // namespace Quern
