// The ping engine of one host: resolves the name, owns the socket, sends requests and recognises replies.
#ifndef ORVANE_SYSTEM_NETWORK_CHECKER_SIMPLE_PING_H
#define ORVANE_SYSTEM_NETWORK_CHECKER_SIMPLE_PING_H

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <thread>

#include "System/NetworkChecker/IcmpSocket.h"
#include "System/NetworkChecker/NameResolver.h"
#include "System/NetworkChecker/PingPackets.h"
#include "System/NetworkChecker/RunLoop.h"
#include "System/NetworkChecker/SocketAddress.h"

namespace Quern {

class OrvaneCoreSimplePing;

// Why a ping cannot go on, or a packet was not sent.
struct PingError {
    static constexpr const char* kDomainPosix = "NSPOSIXErrorDomain";
    static constexpr const char* kDomainNetwork = "kCFErrorDomainCFNetwork";
    static constexpr int kCodeHostNotFound = 1;
    static constexpr int kCodeUnknown = 2;

    const char* domain = kDomainPosix;
    int code = 0;  // of kDomainPosix an errno
    // Of a name that was not resolved, getaddrinfo's code; else 0.
    int getAddrInfoFailure = 0;

    std::string Description() const;
};

// What the engine tells; each is optional. On the thread of the run loop on which it was started.
class SimplePingDelegate {
public:
    using Data = PingPackets::Data;

    virtual void simplePing_didStartWithAddress(OrvaneCoreSimplePing& pinger, const SocketAddress& address) {}
    // The engine has stopped.
    virtual void simplePing_didFailWithError(OrvaneCoreSimplePing& pinger, const PingError& error) {}
    virtual void simplePing_didSendPacket_sequenceNumber(OrvaneCoreSimplePing& pinger, const Data& packet,
                                                         uint16_t sequenceNumber) {}
    virtual void simplePing_didFailToSendPacket_sequenceNumber_error(OrvaneCoreSimplePing& pinger, const Data& packet,
                                                                     uint16_t sequenceNumber, const PingError& error) {}
    // The packet begins with its ICMP header.
    virtual void simplePing_didReceivePingResponsePacket_sequenceNumber(OrvaneCoreSimplePing& pinger,
                                                                        const Data& packet, uint16_t sequenceNumber) {}
    // The packet is as it came.
    virtual void simplePing_didReceiveUnexpectedPacket(OrvaneCoreSimplePing& pinger, const Data& packet) {}

protected:
    ~SimplePingDelegate() = default;
};

// Lives on the thread that calls start, on whose run loop its events come, and is held by a shared pointer. `stop` may
// come from any thread.
class OrvaneCoreSimplePing : public PingPackets, public std::enable_shared_from_this<OrvaneCoreSimplePing> {
public:
    enum AddressStyle { kAddressStyleAny = 0, kAddressStyleIPv4 = 1, kAddressStyleIPv6 = 2 };

    // REQUIRES: hostName is not null.
    static std::shared_ptr<OrvaneCoreSimplePing> initWithHostName(const char* hostName);
    ~OrvaneCoreSimplePing();

    // Begins to resolve the name; then comes didStart or didFail.
    // REQUIRES: it is not started.
    void start();
    // Afterwards no event comes. From another thread than its own it only asks for that, and one that has begun still
    // ends; the socket is closed by its own thread. May be called again.
    void stop();
    // Sends one request; it is told whether that went well. Without data it makes up some.
    // REQUIRES: it has told didStart; the data is 56 bytes.
    void sendPingWithData(const Data* data);

    int hostAddressFamily() const { return FamilyOf(hostAddress); }

    const std::string hostName;
    SimplePingDelegate* delegate = nullptr;  // not owned
    AddressStyle addressStyle = kAddressStyleAny;
    SocketAddress hostAddress;  // the chosen one; empty while there is none

private:
    explicit OrvaneCoreSimplePing(const char* name);

    void HostResolveCallback(const NameResolver::Answer& answer);
    void hostResolutionDone(const NameResolver::Answer& answer);
    void didFailWithHostStreamError(const NameResolver::Answer& answer);
    void didFailWithError(const PingError& error);
    void startWithHostAddress();
    void SocketReadCallback();
    void readData();
    bool validatePingResponsePacket_sequenceNumber(Data& packet, uint16_t& sequenceNumber) const;
    void stopHere();
    void stopHostResolution();
    void stopSocket();

    std::shared_ptr<RunLoop> _loop;  // that of start
    std::thread::id _thread;         // its thread
    NameResolver::Lookup host;       // while resolving
    RunLoop::Source _hostSource = 0;
    std::unique_ptr<IcmpSocket> socket;  // while running
    RunLoop::Source _socketSource = 0;
    Data _buffer;                          // one datagram
    std::atomic<bool> _isStopping{false};  // asked for by another thread
};

}  // namespace Quern

#endif
