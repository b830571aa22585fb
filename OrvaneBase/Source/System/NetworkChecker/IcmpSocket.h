// Sockets that send and receive ICMP messages.
//
// The engines read what the home platform's datagram sockets of protocol ICMP give them. An implementation delivers
// exactly that, whatever its system does:
//
// - An IPv4 packet comes whole, its IP header in front, without options. Of ICMPv6 the message alone comes.
// - Echo replies, and errors that quote an echo request, come with the identifier with which the request was handed to
//   SendTo, and with a checksum that fits. The request is found by its sequence number; what answers a request that
//   was not sent on this socket does not come at all.
// - Errors of routers come as packets from the router: 8 bytes of ICMP header, then the quoted request, with its IP
//   header (20 bytes, 40 with IPv6) in front.
#ifndef ORVANE_SYSTEM_NETWORK_CHECKER_ICMP_SOCKET_H
#define ORVANE_SYSTEM_NETWORK_CHECKER_ICMP_SOCKET_H

#include <sys/types.h>

#include <cstddef>
#include <memory>

#include "Base/Seam.h"
#include "System/NetworkChecker/SocketAddress.h"

namespace Quern {

// Belongs to one thread at a time. Closed by the destructor. Operations that fail leave the reason in errno.
class IcmpSocket {
public:
    virtual ~IcmpSocket() = default;

    // How long ReceiveFrom waits; without this, for ever.
    virtual bool SetReceiveTimeout(int seconds) = 0;
    // Of IP packets sent from then on: 1 to 255.
    virtual bool SetTimeToLive(int hops) = 0;

    // Sends one ICMP message, from its ICMP header on. Returns the bytes sent, or -1.
    virtual ssize_t SendTo(const void* packet, size_t length, const SocketAddress& to) = 0;
    // Waits for a packet and takes it, cut to the capacity. Returns its bytes and sets the sender, or -1: EAGAIN after
    // the time-out, any other error if the socket is of no more use. Never EINTR.
    virtual ssize_t ReceiveFrom(void* buffer, size_t capacity, SocketAddress& from) = 0;

    // For a loop that waits for many things: the descriptor is readable, or in an error state, when something has come.
    virtual int Descriptor() const = 0;
    // Takes up what has come. True if ReceiveFrom gives a packet, or an error, without waiting.
    virtual bool IsReadable() = 0;
};

class IcmpSockets : public Seam<IcmpSockets> {
public:
    // A socket of the family. Null, with the reason in errno, if there is none to be had: EACCES or EPERM where the
    // system does not allow the process any. Any thread.
    virtual std::unique_ptr<IcmpSocket> Open(int family) = 0;
};

template <>
std::shared_ptr<IcmpSockets> Seam<IcmpSockets>::MakeBuiltIn();

}  // namespace Quern

#endif
