// What Linux hands up on ICMP sockets, turned into what the engines sent for and read (IcmpSocket.h).
//
// A ping socket gives an ICMP message without its IP header, under an identifier that the kernel chose, and errors of
// routers on a queue of their own, as the quoted ICMP message alone. A raw socket gives everything that reaches the
// machine, whoever it is meant for. All of it may come from a stranger.
#ifndef ORVANE_SYSTEM_NETWORK_CHECKER_LINUX_ICMP_REPAIR_H
#define ORVANE_SYSTEM_NETWORK_CHECKER_LINUX_ICMP_REPAIR_H

#include <cstddef>
#include <cstdint>
#include <span>
#include <unordered_map>
#include <vector>

#include "System/NetworkChecker/SocketAddress.h"

namespace Quern {

using Bytes = std::span<const uint8_t>;
using Packet = std::vector<uint8_t>;

// The echo requests of one socket: which identifier went out under which sequence number, and where to.
class SentRequests {
public:
    // Anything that is too short for an echo request is ignored.
    void Remember(Bytes message, const SocketAddress& to);
    // The identifier, as its two bytes lie in the packet. Null if no such sequence number was sent. `echo` points at
    // the 8 bytes of an echo header.
    const uint16_t* IdentifierFor(const uint8_t* echo) const;
    // Whether an echo header has the sequence number and the identifier of a request.
    bool IsSent(const uint8_t* echo) const;
    // The identifier of every request so far, as a number; -1 if there were several, or none.
    int OnlyIdentifier() const { return _onlyIdentifier; }
    // Whether these are the bytes of the address that the last request went to.
    bool IsDestination(Bytes address) const;

private:
    std::unordered_map<uint16_t, uint16_t> _identifiers;  // by sequence number, both as they lie in the packet
    SocketAddress _destination;
    int _onlyIdentifier = -1;
};

// Where a packet came from, went to, and how many hops it had left.
struct Route {
    SocketAddress from;
    SocketAddress to;  // may be empty, and is then all zero in the header
    uint8_t timeToLive = 64;
};

// What an ICMP error says beside the quote.
struct IcmpError {
    uint8_t type = 0;
    uint8_t code = 0;
    uint32_t rest = 0;  // the second word of its header, in the order of this machine
};

// The packet of an echo reply, from the message that a ping socket gave. Empty if it answers nothing that was sent.
Packet RestoreReply(const SentRequests& sent, int family, Bytes message, const Route& route);
// The packet of a router's error, from the quoted message of the error queue. `destination` is where the quoted request
// was sent. Empty if nothing that was sent is quoted.
Packet RestoreError(const SentRequests& sent, int family, Bytes quote, const IcmpError& error, const Route& route,
                    const SocketAddress& destination);
// Whether a raw socket's packet, which needs no repair, answers or quotes what was sent.
bool IsForUs(const SentRequests& sent, int family, Bytes packet);

}  // namespace Quern

#endif
