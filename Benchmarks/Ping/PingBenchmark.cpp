// Ping: the mean that it reports, beside that of the system's own ping over the same path; and how long a reply lies in
// the kernel before the engine tells of it, beside a bare poll and recvmsg, when 5 times 255 come at once.
#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <time.h>
#include <unistd.h>

#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <functional>
#include <regex>
#include <thread>

#include "Support/NetworkPath.h"
#include "Support/Ratio.h"
#include "System/Application/MainRunLoop.h"
#include "System/NetworkChecker/ANetworkChecker.h"
#include "System/NetworkChecker/SimplePing.h"

namespace {

using namespace Quern;
using OrvaneTest::NetworkPath;

constexpr int kPings = 5;
constexpr int kPackets = 255;
constexpr int kRounds = 10;

int g_results = 0;
int g_replies = 0;
int g_mean = 0;

void OnPing(PingResult& result) {
    ++g_results;
    g_replies += result.number3;
    g_mean = result.number6;
}

// As many pings at once; returns when all have given their result.
void Ping(const char* host, int pings, unsigned char packets) {
    g_results = g_replies = 0;
    for (int i = 0; i < pings; ++i)
        INetworkChecker::GetInstance()->Ping(host, i, OnPing, 3, packets);
    while (g_results < pings) {
        pollfd loop = {MainRunLoop::Current().Descriptor(), POLLIN, 0};
        poll(&loop, 1, 100);
        MainRunLoop::Current().RunPending();
    }
}

double TheirMean(const NetworkPath& path) {
    const std::string output = path.Run(NetworkPath::kHere, "ping -q -c 20 -l 20 -i 0.01 10.9.3.2");
    std::smatch match;
    return std::regex_search(output, match, std::regex("= [0-9.]+/([0-9.]+)/")) ? std::stod(match[1]) : NAN;
}

void CompareMeans(NetworkPath& path) {
    path.delay = 20;
    std::vector<double> ours, theirs;
    for (int round = 0; round < kRounds; ++round) {
        Ping("10.9.3.2", 1, 20);
        ours.push_back(g_mean);
        theirs.push_back(TheirMean(path));
    }
    path.delay = 0;
    const double a = Orvane::Bench::Median(ours), b = Orvane::Bench::Median(theirs);
    printf("mean over 40 ms, 20 packets: ours %.1f ms, the system's ping %.2f ms, difference %.2f ms  (wanted <= 2)\n",
           a, b, std::fabs(a - b));
}

// Nanoseconds of the wall clock, which the kernel stamps packets with.
int64_t Now() {
    timespec time;
    clock_gettime(CLOCK_REALTIME, &time);
    return time.tv_sec * 1000000000LL + time.tv_nsec;
}

// By the number of the ping, which is the last byte of the address 127.0.0.N less one, and by sequence number.
using Times = std::array<std::array<int64_t, kPackets>, kPings>;

// Hears every reply that reaches the machine, with the kernel's stamp.
class Witness {
public:
    Witness() {
        const int on = 1, room = 64 << 20;
        setsockopt(_socket, SOL_SOCKET, SO_TIMESTAMPNS, &on, sizeof on);
        setsockopt(_socket, SOL_SOCKET, SO_RCVBUFFORCE, &room, sizeof room);
    }
    ~Witness() { close(_socket); }

    Times Take() {
        Times stamps{};
        for (;;) {
            uint8_t packet[256], control[128];
            iovec part = {packet, sizeof packet};
            msghdr header{};
            header.msg_iov = &part;
            header.msg_iovlen = 1;
            header.msg_control = control;
            header.msg_controllen = sizeof control;
            const ssize_t count = recvmsg(_socket, &header, MSG_DONTWAIT);
            if (count < 0) return stamps;
            const cmsghdr* const stamp = CMSG_FIRSTHDR(&header);
            if (count < 28 || packet[20] != 0 || !stamp || stamp->cmsg_type != SO_TIMESTAMPNS) continue;
            timespec time;
            memcpy(&time, CMSG_DATA(stamp), sizeof time);
            const size_t ping = packet[15] - 1u, number = packet[26] << 8 | packet[27];
            if (ping < kPings && number < kPackets) stamps[ping][number] = time.tv_sec * 1000000000LL + time.tv_nsec;
        }
    }

private:
    const int _socket = socket(AF_INET, SOCK_RAW | SOCK_CLOEXEC, IPPROTO_ICMP);
};

class Engine final : public SimplePingDelegate {
public:
    explicit Engine(std::array<int64_t, kPackets>& heard) : _heard(heard) {}
    void simplePing_didStartWithAddress(OrvaneCoreSimplePing& pinger, const SocketAddress&) override {
        const Data payload(56);
        for (int i = 0; i < kPackets; ++i)
            pinger.sendPingWithData(&payload);
    }
    void simplePing_didReceivePingResponsePacket_sequenceNumber(OrvaneCoreSimplePing& pinger, const Data&,
                                                                uint16_t number) override {
        _heard[number] = Now();
        if (++_count == kPackets) pinger.stop();
    }

private:
    std::array<int64_t, kPackets>& _heard;
    int _count = 0;
};

void RunEngine(int ping, std::array<int64_t, kPackets>& heard) {
    Engine engine(heard);
    const auto pinger = OrvaneCoreSimplePing::initWithHostName(("127.0.0." + std::to_string(ping + 1)).c_str());
    pinger->delegate = &engine;
    pinger->start();
    RunLoop::Current()->RunUntil(RunLoop::Clock::now() + std::chrono::seconds(3));
    pinger->stop();
}

void RunBare(int ping, std::array<int64_t, kPackets>& heard) {
    const int descriptor = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, IPPROTO_ICMP);
    const int room = 1 << 20;
    setsockopt(descriptor, SOL_SOCKET, SO_RCVBUF, &room, sizeof room);
    sockaddr_in to{};
    to.sin_family = AF_INET;
    to.sin_addr.s_addr = htonl(INADDR_LOOPBACK + static_cast<uint32_t>(ping));
    uint8_t packet[64] = {8};
    for (int i = 0; i < kPackets; ++i) {
        packet[7] = static_cast<uint8_t>(i);
        sendto(descriptor, packet, sizeof packet, 0, reinterpret_cast<const sockaddr*>(&to), sizeof to);
    }
    pollfd waited = {descriptor, POLLIN, 0};
    for (int count = 0; count < kPackets && poll(&waited, 1, 3000) > 0; ++count) {
        iovec part = {packet, sizeof packet};
        msghdr header{};
        header.msg_iov = &part;
        header.msg_iovlen = 1;
        if (recvmsg(descriptor, &header, 0) == sizeof packet) heard[packet[7]] = Now();
    }
    close(descriptor);
}

// The median of (told - stamped), in nanoseconds.
double Lag(const std::function<void(int, std::array<int64_t, kPackets>&)>& run) {
    Witness witness;
    Times heard{};
    std::vector<std::thread> threads;
    for (int ping = 0; ping < kPings; ++ping)
        threads.emplace_back([&, ping] { run(ping, heard[static_cast<size_t>(ping)]); });
    for (std::thread& thread : threads)
        thread.join();
    const Times stamps = witness.Take();
    std::vector<double> lags;
    for (size_t ping = 0; ping < kPings; ++ping) {
        for (size_t number = 0; number < kPackets; ++number) {
            if (heard[ping][number] && stamps[ping][number])
                lags.push_back(static_cast<double>(heard[ping][number] - stamps[ping][number]));
        }
    }
    if (lags.size() < kPings * kPackets) printf("%zu of %d replies heard\n", lags.size(), kPings * kPackets);
    return lags.empty() ? NAN : Orvane::Bench::Median(lags);
}

}  // namespace

int main() {
    if (!NetworkPath::Enter()) {
        printf("needs the right to make network namespaces (CAP_SYS_ADMIN)\n");
        return 0;
    }
    NetworkPath path;
    path.AllowPingSockets(true);
    CompareMeans(path);
    for (bool allowed : {true, false}) {
        path.AllowPingSockets(allowed);
        Ping("127.0.0.1", kPings, kPackets);
        printf("5 x 255 packets at once, %s sockets: %d of %d counted\n", allowed ? "ping" : "raw", g_replies,
               kPings * kPackets);
    }
    path.AllowPingSockets(true);
    std::vector<double> ours, bare, ratios;
    for (int round = -1; round < kRounds; ++round) {
        const double a = Lag(RunEngine), b = Lag(RunBare);
        if (round < 0) continue;
        ours.push_back(a);
        bare.push_back(b);
        ratios.push_back(a / b);
    }
    Orvane::Bench::PrintHead();
    Orvane::Bench::Print("event minus kernel stamp, 5 x 255 at once",
                         {Orvane::Bench::Median(ours), Orvane::Bench::Median(bare), Orvane::Bench::Median(ratios)},
                         "<= 3");
    return 0;
}
