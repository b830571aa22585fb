#include "Support/NetworkPath.h"
#include "Support/Test.h"

#include <arpa/inet.h>
#include <linux/if_tun.h>
#include <net/if.h>
#include <poll.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/socket.h>

#include <stdexcept>

namespace OrvaneTest {
namespace {

void Require(bool condition, const std::string& what) {
    if (!condition) throw std::runtime_error(what + ": " + strerror(errno));
}

// The function runs with the calling thread's network exchanged for another.
template <typename Function>
void In(int networkNamespace, Function function) {
    std::thread([&] {
        Require(setns(networkNamespace, CLONE_NEWNET) == 0, "setns");
        function();
    }).join();
}

std::string PathOf(int descriptor) {
    return "/proc/" + std::to_string(getpid()) + "/fd/" + std::to_string(descriptor);
}

// For commands: an address on a link (link, network, host), and a way to a network (network, and whose). Both families
// at both ends, usable at once.
const std::string kFunctions = R"(set -e
at() { ip address add 10.9.$2.$3/24 dev $1; ip address add fd09:$2::$3/64 dev $1 nodad; ip link set $1 up; }
via() { ip route add 10.9.$1.0/24 via 10.9.$2.$3; ip route add fd09:$1::/64 via fd09:$2::$3; }
)";

}  // namespace

bool NetworkPath::Enter() {
    return unshare(CLONE_NEWNS | CLONE_NEWNET) == 0 && mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

NetworkPath::NetworkPath() {
    _namespaces[kHere] = open("/proc/thread-self/ns/net", O_RDONLY | O_CLOEXEC);
    for (int place = kRouter1; place < kPlaces; ++place) {
        std::thread([&] {
            Require(unshare(CLONE_NEWNET) == 0, "unshare");
            _namespaces[place] = open("/proc/thread-self/ns/net", O_RDONLY | O_CLOEXEC);
        }).join();
    }
    // Addresses are usable at once: nobody asks first whether another has them.
    for (int place = kHere; place < kPlaces; ++place)
        Run(static_cast<Place>(place),
            "cd /proc/sys/net/ipv6/conf; for i in */accept_dad; do echo 0 > $i; done; ip link set lo up");
    _ends[0] = OpenTun(kRouter2, "relay");
    _ends[1] = OpenTun(kTarget, "relay");
    for (Place place : {kRouter2, kTarget})
        Run(place, "ip link set relay txqueuelen 5000");
    Run(kHere, "ip link add far type veth peer name near netns " + PathOf(_namespaces[kRouter1]));
    Run(kRouter1, "ip link add far type veth peer name near netns " + PathOf(_namespaces[kRouter2]));
    const std::string router = kFunctions +
                               "cd /proc/sys/net; echo 1 > ipv4/ip_forward; echo 1 > ipv6/conf/all/forwarding; "
                               "echo 0 > ipv4/icmp_ratelimit; echo 0 > ipv6/icmp/ratelimit; ";
    Run(kRouter1, router + "at near 1 1; at far 2 1; via 3 2 2");
    Run(kRouter2, router + "at near 2 2; at relay 3 1; via 1 2 1");
    Run(kTarget, kFunctions + "at relay 3 2; via 1 3 1; via 2 3 1");
    Run(kHere, kFunctions + "at far 1 2; via 2 1 1; via 3 1 1");
    _relay = std::thread([this] { Relay(); });
    // A link takes a moment to find its neighbours.
    Run(kHere, "ping -4 -c 1 -w 10 10.9.3.2 && ping -6 -c 1 -w 10 fd09:3::2");
}

NetworkPath::~NetworkPath() {
    _isEnding = true;
    _relay.join();
    for (int descriptor : _ends)
        close(descriptor);
    for (int descriptor : _namespaces)
        close(descriptor);
}

std::string NetworkPath::Run(Place place, const std::string& command) const {
    std::string output;
    int status = -1;
    In(_namespaces[place], [&] {
        FILE* const pipe = popen(("exec 2>&1; " + command).c_str(), "r");
        Require(pipe, "popen");
        char line[512];
        while (fgets(line, sizeof line, pipe))
            output += line;
        status = pclose(pipe);
    });
    if (status != 0) throw std::runtime_error(command + ": " + output);
    return output;
}

void NetworkPath::AllowPingSockets(bool allow) const {
    In(_namespaces[kHere],
       [&] { std::ofstream("/proc/sys/net/ipv4/ping_group_range") << (allow ? "0 2147483647" : "1 0"); });
}

void MuteNameServer() {
    Require(system("ip link set lo up") == 0, "ip");
    const int server = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address{AF_INET, htons(53), {htonl(INADDR_LOOPBACK)}, {}};
    Require(bind(server, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0, "bind");
    const std::string file = CacheFolder() + "/resolv.conf";
    WriteFile(file, "nameserver 127.0.0.1\n");
    Require(mount(file.c_str(), "/etc/resolv.conf", nullptr, MS_BIND, nullptr) == 0, "mount");
}

int NetworkPath::OpenTun(Place place, const char* name) const {
    int descriptor = -1;
    In(_namespaces[place], [&] {
        descriptor = open("/dev/net/tun", O_RDWR | O_NONBLOCK | O_CLOEXEC);
        ifreq request{};
        request.ifr_flags = IFF_TUN | IFF_NO_PI;
        strncpy(request.ifr_name, name, IFNAMSIZ - 1);
        Require(ioctl(descriptor, TUNSETIFF, &request) == 0, "TUNSETIFF");
    });
    return descriptor;
}

void NetworkPath::Forward(int from, int to) {
    char packet[2048];
    ssize_t count;
    while ((count = read(_ends[from], packet, sizeof packet)) > 0) {
        const unsigned every = dropEvery;
        if (to == 1 && every > 0 && _towardsTarget++ % every == 0) continue;
        const auto due = Clock::now() + std::chrono::milliseconds(delay);
        for (int copies = isDoubled ? 2 : 1; copies > 0; --copies)
            _waiting.emplace(due, std::make_pair(to, std::vector<char>(packet, packet + count)));
    }
}

void NetworkPath::SendDue() {
    while (!_waiting.empty() && _waiting.begin()->first <= Clock::now()) {
        const auto& [to, packet] = _waiting.begin()->second;
        if (write(_ends[to], packet.data(), packet.size()) < 0 && errno == EAGAIN) return;
        _waiting.erase(_waiting.begin());
    }
}

void NetworkPath::Relay() {
    while (!_isEnding) {
        int64_t patience = 50;
        if (!_waiting.empty()) {
            const auto left = _waiting.begin()->first - Clock::now();
            patience = std::max<int64_t>(0, std::chrono::ceil<std::chrono::milliseconds>(left).count());
        }
        pollfd ends[] = {{_ends[0], POLLIN, 0}, {_ends[1], POLLIN, 0}};
        poll(ends, 2, static_cast<int>(std::min<int64_t>(patience, 50)));
        Forward(0, 1);
        Forward(1, 0);
        SendDue();
    }
}

}  // namespace OrvaneTest
