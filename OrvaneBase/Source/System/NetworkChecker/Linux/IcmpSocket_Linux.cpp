#include "System/NetworkChecker/IcmpSocket.h"

#include <linux/errqueue.h>
#include <linux/filter.h>
#include <linux/icmp.h>
#include <netinet/icmp6.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <iterator>

#include "System/NetworkChecker/Linux/IcmpRepair.h"

namespace Quern {
namespace {

constexpr size_t kLargestPacket = 65535;
// For 255 replies at once, each of which takes the kernel a few hundred bytes more than it holds.
constexpr int kReceiveBuffer = 1 << 20;
constexpr int kPassedOver = 256;

bool SetOption(int socket, int level, int name, int value) {
    return setsockopt(socket, level, name, &value, sizeof value) == 0;
}

SocketAddress FromSystem(const sockaddr_storage& address) {
    if (address.ss_family == AF_INET) {
        return MakeSocketAddress(kFamilyIPv4, &reinterpret_cast<const sockaddr_in&>(address).sin_addr, 0);
    }
    if (address.ss_family == AF_INET6) {
        return MakeSocketAddress(kFamilyIPv6, &reinterpret_cast<const sockaddr_in6&>(address).sin6_addr, 0);
    }
    return {};
}

// Without the port, which means nothing to ICMP and which raw IPv6 sockets refuse. The length, 0 for no address.
socklen_t ToSystem(const SocketAddress& address, sockaddr_storage& out) {
    memset(&out, 0, sizeof out);
    if (FamilyOf(address) == kFamilyIPv4) {
        auto& ip = reinterpret_cast<sockaddr_in&>(out);
        ip.sin_family = AF_INET;
        memcpy(&ip.sin_addr, address.data() + 4, 4);
        return sizeof ip;
    }
    if (FamilyOf(address) == kFamilyIPv6 && address.size() >= kSocketAddressSizeIPv6) {
        auto& ip = reinterpret_cast<sockaddr_in6&>(out);
        ip.sin6_family = AF_INET6;
        memcpy(&ip.sin6_addr, address.data() + 8, 16);
        return sizeof ip;
    }
    return 0;
}

// A message of the kernel with all that comes beside it.
struct Received {
    sockaddr_storage name{};
    alignas(cmsghdr) uint8_t control[512];
    iovec part{};
    msghdr header{};

    Received(void* buffer, size_t capacity) {
        part = {buffer, capacity};
        header.msg_name = &name;
        header.msg_namelen = sizeof name;
        header.msg_iov = &part;
        header.msg_iovlen = 1;
        header.msg_control = control;
        header.msg_controllen = sizeof control;
    }

    // The data of a control message of that level and type, or null.
    const uint8_t* Find(int level, int type) {
        for (cmsghdr* entry = CMSG_FIRSTHDR(&header); entry; entry = CMSG_NXTHDR(&header, entry)) {
            if (entry->cmsg_level == level && entry->cmsg_type == type) return CMSG_DATA(entry);
        }
        return nullptr;
    }
};

ssize_t Receive(int socket, Received& received, int flags) {
    ssize_t count;
    do {
        count = recvmsg(socket, &received.header, flags | MSG_DONTWAIT);
    } while (count < 0 && errno == EINTR);
    return count;
}

// What both kinds share: the socket, the waiting, and a packet that has been taken up and not yet handed out.
class LinuxIcmpSocket : public IcmpSocket {
public:
    LinuxIcmpSocket(int socket, int family) : _socket(socket), _family(family), _scratch(kLargestPacket) {
        SetOption(_socket, SOL_SOCKET, SO_RCVBUF, kReceiveBuffer);
    }
    ~LinuxIcmpSocket() override { close(_socket); }

    bool SetReceiveTimeout(int seconds) override {
        _timeoutSeconds = seconds;
        return true;
    }

    bool SetTimeToLive(int hops) override {
        return _family == kFamilyIPv6 ? SetOption(_socket, IPPROTO_IPV6, IPV6_UNICAST_HOPS, hops)
                                      : SetOption(_socket, IPPROTO_IP, IP_TTL, hops);
    }

    ssize_t SendTo(const void* packet, size_t length, const SocketAddress& to) override {
        sockaddr_storage address;
        const socklen_t addressLength = ToSystem(to, address);
        if (addressLength == 0) {
            errno = EAFNOSUPPORT;
            return -1;
        }
        // Before it is sent: on loopback the answer is there before the call returns.
        _sent.Remember({static_cast<const uint8_t*>(packet), length}, to);
        OnRemembered();
        // A router's message that waits makes one call fail that has nothing to do with it.
        ssize_t count = -1;
        for (int attempt = 0; attempt < 2 && count < 0; ++attempt) {
            do {
                count = sendto(_socket, packet, length, 0, reinterpret_cast<const sockaddr*>(&address), addressLength);
            } while (count < 0 && errno == EINTR);
        }
        return count;
    }

    ssize_t ReceiveFrom(void* buffer, size_t capacity, SocketAddress& from) override {
        using Clock = std::chrono::steady_clock;
        const auto deadline = Clock::now() + std::chrono::seconds(_timeoutSeconds);
        while (!IsReadable()) {
            int64_t left = -1;
            if (_timeoutSeconds > 0) {
                left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now()).count();
                if (left <= 0) {
                    errno = EAGAIN;
                    return -1;
                }
            }
            pollfd waited = {_socket, POLLIN, 0};
            poll(&waited, 1, static_cast<int>(left));
        }
        if (_error != 0) {
            errno = _error;
            return -1;
        }
        const size_t count = std::min(capacity, _packet.size());
        memcpy(buffer, _packet.data(), count);
        from = _from;
        _packet.clear();
        return static_cast<ssize_t>(count);
    }

    int Descriptor() const override { return _socket; }

    bool IsReadable() override {
        // What is for others is passed over, but not for ever: the caller has a deadline.
        for (int i = 0; i < kPassedOver && _packet.empty() && _error == 0; ++i) {
            if (!TakeUp()) return false;
        }
        return !_packet.empty() || _error != 0;
    }

protected:
    // Takes one thing that the kernel holds: fills _packet, or _error, or neither if it is not for us. False if there
    // is nothing.
    virtual bool TakeUp() = 0;
    // A request has been entered in _sent and is about to be sent.
    virtual void OnRemembered() {}

    // The kernel's word for a failed receive: false if there is nothing, else _error is set.
    bool TakeUpFailure() {
        if (errno == EAGAIN || errno == EWOULDBLOCK) return false;
        _error = errno;
        return true;
    }

    const int _socket;
    const int _family;
    SentRequests _sent;
    std::vector<uint8_t> _scratch;
    Packet _packet;  // taken up and not yet handed out
    SocketAddress _from;
    int _error = 0;  // the socket is of no more use

private:
    int _timeoutSeconds = 0;
};

// Needs no right but that of net.ipv4.ping_group_range.
class PingSocket final : public LinuxIcmpSocket {
public:
    PingSocket(int socket, int family) : LinuxIcmpSocket(socket, family) {
        if (family == kFamilyIPv6) {
            SetOption(socket, IPPROTO_IPV6, IPV6_RECVERR, 1);
            SetOption(socket, IPPROTO_IPV6, IPV6_RECVHOPLIMIT, 1);
        } else {
            SetOption(socket, IPPROTO_IP, IP_RECVERR, 1);
            SetOption(socket, IPPROTO_IP, IP_RECVTTL, 1);
            SetOption(socket, IPPROTO_IP, IP_PKTINFO, 1);
        }
    }

private:
    bool TakeUp() override {
        // Replies first. An error that waits fails one call, and then lies on its queue.
        for (int attempt = 0; attempt < 2; ++attempt) {
            if (TakeUpReply()) return true;
            if (TakeUpError()) return true;
            if (_failure == 0) return false;
        }
        errno = _failure;
        return TakeUpFailure();
    }

    bool TakeUpReply() {
        Received received(_scratch.data(), _scratch.size());
        const ssize_t count = Receive(_socket, received, 0);
        _failure = count < 0 && errno != EAGAIN && errno != EWOULDBLOCK ? errno : 0;
        if (count < 0) return false;
        const Route route = RouteOf(received, FromSystem(received.name));
        _packet = RestoreReply(_sent, _family, {_scratch.data(), static_cast<size_t>(count)}, route);
        _from = route.from;
        return true;
    }

    bool TakeUpError() {
        Received received(_scratch.data(), _scratch.size());
        const ssize_t count = Receive(_socket, received, MSG_ERRQUEUE);
        if (count < 0) return false;
        const bool isIPv6 = _family == kFamilyIPv6;
        const uint8_t* const data =
            isIPv6 ? received.Find(IPPROTO_IPV6, IPV6_RECVERR) : received.Find(IPPROTO_IP, IP_RECVERR);
        if (!data) return true;
        sock_extended_err error;
        memcpy(&error, data, sizeof error);
        // Others are the kernel's own remarks on what was sent.
        if (error.ee_origin != (isIPv6 ? SO_EE_ORIGIN_ICMP6 : SO_EE_ORIGIN_ICMP)) return true;
        sockaddr_storage router{};
        memcpy(&router, data + sizeof error, isIPv6 ? sizeof(sockaddr_in6) : sizeof(sockaddr_in));
        const Route route = RouteOf(received, FromSystem(router));
        _packet = RestoreError(_sent, _family, {_scratch.data(), static_cast<size_t>(count)},
                               {error.ee_type, error.ee_code, error.ee_info}, route, FromSystem(received.name));
        _from = route.from;
        return true;
    }

    static Route RouteOf(Received& received, const SocketAddress& from) {
        Route route;
        route.from = from;
        const uint8_t* hops = received.Find(IPPROTO_IP, IP_TTL);
        if (!hops) hops = received.Find(IPPROTO_IPV6, IPV6_HOPLIMIT);
        if (hops) {
            int value;
            memcpy(&value, hops, sizeof value);
            route.timeToLive = static_cast<uint8_t>(value);
        }
        if (const uint8_t* const data = received.Find(IPPROTO_IP, IP_PKTINFO)) {
            in_pktinfo info;
            memcpy(&info, data, sizeof info);
            route.to = MakeSocketAddress(kFamilyIPv4, &info.ipi_addr, 0);
        }
        return route;
    }

    int _failure = 0;  // of the last look for a reply
};

// The fallback, which needs CAP_NET_RAW. Every ICMP message that reaches the machine comes, and the packets as they
// were on the wire, identifiers included.
class RawSocket final : public LinuxIcmpSocket {
public:
    RawSocket(int socket, int family) : LinuxIcmpSocket(socket, family) {
        // Requests come too, those that the machine sends to itself among them.
        if (family == kFamilyIPv6) {
            icmp6_filter filter;
            ICMP6_FILTER_SETBLOCKALL(&filter);
            for (int type :
                 {ICMP6_ECHO_REPLY, ICMP6_DST_UNREACH, ICMP6_PACKET_TOO_BIG, ICMP6_TIME_EXCEEDED, ICMP6_PARAM_PROB})
                ICMP6_FILTER_SETPASS(type, &filter);
            setsockopt(socket, IPPROTO_ICMPV6, ICMP6_FILTER, &filter, sizeof filter);
        } else {
            icmp_filter filter{~(1u << ICMP_ECHOREPLY | 1u << ICMP_DEST_UNREACH | 1u << ICMP_SOURCE_QUENCH |
                                 1u << ICMP_REDIRECT | 1u << ICMP_TIME_EXCEEDED | 1u << ICMP_PARAMETERPROB)};
            setsockopt(socket, SOL_RAW, ICMP_FILTER, &filter, sizeof filter);
        }
    }

private:
    // As long as one identifier was sent, the kernel sorts out what is for others: of many pings at a time, each would
    // have its buffer filled by the replies to all.
    void OnRemembered() override {
        const int identifier = _sent.OnlyIdentifier();
        if (identifier == _filtered) return;
        if (identifier >= 0)
            AttachFilter(static_cast<uint16_t>(identifier));
        else
            SetOption(_socket, SOL_SOCKET, SO_DETACH_FILTER, 0);
        _filtered = identifier;
    }

    void AttachFilter(uint16_t identifier) {
        const bool isIPv6 = _family == kFamilyIPv6;
        const uint32_t reply = isIPv6 ? uint32_t{ICMP6_ECHO_REPLY} : uint32_t{ICMP_ECHOREPLY};
        const uint32_t quoted = 8 + (isIPv6 ? 40 : 20) + 4;
        sock_filter program[] = {
            // The index register at the ICMP header: behind the IP header, which IPv6 sockets do not show.
            isIPv6 ? sock_filter BPF_STMT(BPF_LDX | BPF_IMM, 0) : sock_filter BPF_STMT(BPF_LDX | BPF_B | BPF_MSH, 0),
            BPF_STMT(BPF_LD | BPF_B | BPF_IND, 0),
            BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, reply, 0, 2),
            BPF_STMT(BPF_LD | BPF_H | BPF_IND, 4),
            BPF_STMT(BPF_JMP | BPF_JA, 1),
            BPF_STMT(BPF_LD | BPF_H | BPF_IND, quoted),
            BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, identifier, 0, 1),
            BPF_STMT(BPF_RET | BPF_K, UINT32_MAX),
            BPF_STMT(BPF_RET | BPF_K, 0),
        };
        const sock_fprog filter = {std::size(program), program};
        setsockopt(_socket, SOL_SOCKET, SO_ATTACH_FILTER, &filter, sizeof filter);
    }

    bool TakeUp() override {
        Received received(_scratch.data(), _scratch.size());
        const ssize_t count = Receive(_socket, received, 0);
        if (count < 0) return TakeUpFailure();
        const Bytes packet(_scratch.data(), static_cast<size_t>(count));
        if (!IsForUs(_sent, _family, packet)) return true;
        _packet.assign(packet.begin(), packet.end());
        _from = FromSystem(received.name);
        return true;
    }

    int _filtered = -1;  // the identifier that the kernel lets pass; all with -1
};

class LinuxIcmpSockets final : public IcmpSockets {
public:
    std::unique_ptr<IcmpSocket> Open(int family) override {
        const bool isIPv6 = family == kFamilyIPv6;
        const int domain = isIPv6 ? AF_INET6 : AF_INET;
        const int protocol = isIPv6 ? static_cast<int>(IPPROTO_ICMPV6) : static_cast<int>(IPPROTO_ICMP);
        const int ping = socket(domain, SOCK_DGRAM | SOCK_CLOEXEC, protocol);
        if (ping >= 0) return std::make_unique<PingSocket>(ping, family);
        const int refused = errno;
        const int raw = socket(domain, SOCK_RAW | SOCK_CLOEXEC, protocol);
        if (raw >= 0) return std::make_unique<RawSocket>(raw, family);
        // Of two refusals the first tells more, unless it only says that the kernel has no ping sockets.
        if (refused != EPROTONOSUPPORT && refused != ESOCKTNOSUPPORT) errno = refused;
        return nullptr;
    }
};

}  // namespace

template <>
std::shared_ptr<IcmpSockets> Seam<IcmpSockets>::MakeBuiltIn() {
    return std::make_shared<LinuxIcmpSockets>();
}

}  // namespace Quern
