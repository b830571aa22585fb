// How long after a cable is pulled out an observer hears of it, and what a question for the state costs beside the one
// question to the kernel that it cannot do without.
#include <linux/if.h>
#include <net/route.h>
#include <sys/ioctl.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cstring>
#include <thread>

#include "Support/NetworkNamespace.h"
#include "Support/Ratio.h"
#include "System/Application/MainRunLoop.h"
#include "System/Network/CNetwork.h"
#include "System/Network/Linux/Netlink.h"
#include "System/Network/Linux/RouteReader.h"

namespace {

using namespace Orvane::Bench;
using namespace Quern;

constexpr int kRounds = 11;

struct Told : CNetworkObserver {
    void OnNetworkStateChanged(ANetworkState) override {
        if (count++ == 0) first = Now();
    }
    Seconds first = 0;
    int count = 0;
};

// At once, without the time that a program takes to start.
void SetUp(const char* link, bool isUp) {
    const int socket = ::socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    ifreq request{};
    strncpy(request.ifr_name, link, IFNAMSIZ - 1);
    ioctl(socket, SIOCGIFFLAGS, &request);
    request.ifr_flags = static_cast<short>(isUp ? request.ifr_flags | IFF_UP : request.ifr_flags & ~IFF_UP);
    ioctl(socket, SIOCSIFFLAGS, &request);
    close(socket);
}

void Turn(Seconds until, const int* count = nullptr) {
    while (Now() < until && (!count || *count == 0)) {
        MainRunLoop::Current().RunPending();
        std::this_thread::sleep_for(std::chrono::microseconds(200));
    }
}

}  // namespace

int main() {
    if (!OrvaneTest::EnterOwnNetwork()) {
        printf("skipped: needs the right to make network namespaces\n");
        return 0;
    }
    Told told;
    INetwork* const network = gs_OrvaneNetwork();
    network->AddObserver(&told);
    if (!OrvaneTest::RunIp(OrvaneTest::Cable("eth0", 1) + OrvaneTest::DefaultRoute("eth0", 1, 9))) return 1;

    std::vector<double> milliseconds;
    int events = 0;
    for (int round = 0; round < kRounds; ++round) {
        SetUp("eth0far", true);
        Turn(Now() + 1.5);  // the kernel tells of at most one carrier a second
        told.count = 0;
        const Seconds begin = Now();
        SetUp("eth0far", false);
        Turn(begin + 5, &told.count);
        milliseconds.push_back((told.first - begin) * 1e3);
        Turn(Now() + 1);
        events += told.count;
    }
    printf("carrier lost to observer: median %.0f ms, longest %.0f ms   wanted <= 400 ms\n", Median(milliseconds),
           *std::max_element(milliseconds.begin(), milliseconds.end()));
    printf("events: %d for %d losses                                  wanted one each\n", events, kRounds);

    SetUp("eth0far", true);
    Turn(Now() + 1.5);
    PrintHead();
    const auto ask = [&] {
        for (int i = 0; i < 200; ++i)
            network->GetNetworkState();
    };
    const auto dump = [] {
        for (int i = 0; i < 200; ++i) {
            const NetlinkSocket socket = OpenNetlink(NETLINK_ROUTE);
            nl_cache* routes = nullptr;
            if (socket && rtnl_route_alloc_cache(socket.get(), AF_UNSPEC, 0, &routes) == 0) nl_cache_free(routes);
        }
    };
    Print("the state, beside one dump of the routes", Compare(20, 200, ask, dump), "");
    return 0;
}
