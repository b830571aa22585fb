// Hears that something about links, addresses or routes changes, on the main run loop.
#ifndef ORVANE_SYSTEM_NETWORK_LINUX_ROUTE_WATCH_H
#define ORVANE_SYSTEM_NETWORK_LINUX_ROUTE_WATCH_H

#include <chrono>
#include <functional>
#include <memory>

#include "System/Application/MainRunLoop.h"
#include "System/Network/Linux/Netlink.h"

namespace Quern {

// A link that goes up is six messages over 145 ms, a default route that is lost comes without one of its own, and a
// lost carrier changes the link's flags alone. So each message only opens a quiet period: when it ends, whoever listens
// reads everything anew.
class RouteWatch : public std::enable_shared_from_this<RouteWatch> {
public:
    static constexpr long long kQuiet = 200;    // milliseconds after the last message
    static constexpr long long kLongest = 500;  // milliseconds after the first one, however many follow

    // Hears what happens from now on. Null if the system has no sockets left. Any thread.
    static std::shared_ptr<RouteWatch> Open();
    explicit RouteWatch(NetlinkSocket socket) : _socket(std::move(socket)) {}

    // Has `settled` called on the main run loop at the end of each quiet period, until Stop; false from it means that
    // it could not read, and it is called again after another quiet period. Once. Any thread.
    void Start(std::function<bool()> settled);
    // On the main thread it is not called after this; on another, not once a call posted afterwards to the main run
    // loop has been performed.
    void Stop();

private:
    using Clock = std::chrono::steady_clock;

    void Drain();
    void Disturb();
    void Settle();

    const NetlinkSocket _socket;
    // Main thread from Start on.
    std::function<bool()> _settled;
    MainRunLoop::Id _watch = 0;
    MainRunLoop::Id _timer = 0;  // 0 while nothing is in flux
    Clock::time_point _firstMessage;
};

}  // namespace Quern

#endif
