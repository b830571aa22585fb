#include "System/Network/ReachabilitySource.h"

#include <arpa/inet.h>
#include <netdb.h>

#include <string>
#include <utility>

#include "System/Network/Linux/RouteReader.h"
#include "System/Network/Linux/RouteWatch.h"

namespace Quern {
namespace {

// One target, read by a function of its own.
class RouteReachability final : public SCNetworkReachability, public std::enable_shared_from_this<RouteReachability> {
public:
    using Read = std::function<bool(Way& way)>;

    // `watched` reads what stands for the target in the watch, which must not wait.
    RouteReachability(Read read, Read watched) : _read(std::move(read)), _watched(std::move(watched)) {}
    ~RouteReachability() override { UnscheduleFromRunLoop(); }

    bool GetFlags(uint32_t& flags) override {
        Way way;
        if (!_read(way)) return false;
        flags = way.flags;
        return true;
    }

    void SetCallback(Callback callback) override { _callback = std::move(callback); }

    // What changes between the opening of the watch and the first reading is in both, and so told once at most.
    bool ScheduleWithRunLoop() override {
        if (_watch) return true;
        _watch = RouteWatch::Open();
        if (!_watch) return false;
        _watched(_last);
        _watch->Start([weak = weak_from_this()] {
            const auto self = weak.lock();
            return !self || self->OnSettled();
        });
        return true;
    }

    void UnscheduleFromRunLoop() override {
        if (const auto watch = std::exchange(_watch, nullptr)) watch->Stop();
    }

private:
    // False if the system did not answer, which tells neither a loss nor a change.
    bool OnSettled() {
        Way way;
        if (!_watched(way)) return false;
        if (way == _last) return true;
        _last = std::move(way);
        if (const Callback callback = _callback) callback(_last.flags);
        return true;
    }

    const Read _read, _watched;
    Callback _callback;
    std::shared_ptr<RouteWatch> _watch;
    Way _last;  // what the watch compares with; main thread once scheduled
};

// The first of the name's addresses that can be reached.
bool ReadWayToHost(const std::string& name, Way& way) {
    addrinfo hints{};
    hints.ai_socktype = SOCK_STREAM;
    addrinfo* list = nullptr;
    way = {};
    if (getaddrinfo(name.c_str(), nullptr, &hints, &list) != 0) return true;
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> addresses(list, freeaddrinfo);
    for (const addrinfo* entry = list; entry && way.flags == 0; entry = entry->ai_next) {
        char text[NI_MAXHOST];
        if (getnameinfo(entry->ai_addr, entry->ai_addrlen, text, sizeof text, nullptr, 0, NI_NUMERICHOST) == 0)
            ReadWayTo(text, way);
    }
    return true;
}

class RoutingSocketSource final : public ReachabilitySource {
public:
    std::shared_ptr<SCNetworkReachability> CreateWithAddress(const IPv4Address& address) override {
        if (address == IPv4Address{0, 0, 0, 0}) return Make(ReadDefaultWay);
        if (address == IPv4Address{169, 254, 0, 0}) return Make(ReadWifiWay);
        char text[INET_ADDRSTRLEN];
        inet_ntop(AF_INET, address.data(), text, sizeof text);
        return CreateWithName(text);
    }

    std::shared_ptr<SCNetworkReachability> CreateWithName(const char* name) override {
        if (!name || !*name) return nullptr;
        const std::string host = name;
        if (IsNumericAddress(name)) return Make([host](Way& way) { return ReadWayTo(host.c_str(), way); });
        // A host of that name is somewhere behind the way out, and resolving it is not for the main thread.
        return Make([host](Way& way) { return ReadWayToHost(host, way); }, ReadDefaultWay);
    }

private:
    static std::shared_ptr<SCNetworkReachability> Make(const RouteReachability::Read& read) { return Make(read, read); }
    static std::shared_ptr<SCNetworkReachability> Make(RouteReachability::Read read, RouteReachability::Read watched) {
        return std::make_shared<RouteReachability>(std::move(read), std::move(watched));
    }
};

}  // namespace

template <>
std::shared_ptr<ReachabilitySource> Seam<ReachabilitySource>::MakeBuiltIn() {
    return std::make_shared<RoutingSocketSource>();
}

}  // namespace Quern
