#include "System/NetworkChecker/SimplePing.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <random>
#include <utility>

#include "Base/Assert.h"

namespace Quern {
namespace {

constexpr size_t kPayloadSize = 56;
constexpr size_t kLargestDatagram = 65535;
constexpr int kDatagramsAtOnce = 256;

uint16_t RandomIdentifier() {
    return static_cast<uint16_t>(std::random_device()());
}

PingPackets::Data DefaultPayload(uint16_t sequenceNumber) {
    char text[kPayloadSize + 8];
    const int length = snprintf(text, sizeof text, "%28zd bottles of beer on the wall",
                                static_cast<ssize_t>(99) - sequenceNumber % 100);
    return {text, text + length};
}

PingError PosixError(int code) {
    PingError error;
    error.code = code;
    return error;
}

}  // namespace

std::string PingError::Description() const {
    if (strcmp(domain, kDomainPosix) == 0) {
        char text[128] = "";
        return strerror_r(code, text, sizeof text);
    }
    return std::string(domain) + " " + std::to_string(code);
}

std::shared_ptr<OrvaneCoreSimplePing> OrvaneCoreSimplePing::initWithHostName(const char* hostName) {
    ORVANE_ASSERT_TEXT(hostName, "hostName != nil");
    return std::shared_ptr<OrvaneCoreSimplePing>(new OrvaneCoreSimplePing(hostName));
}

OrvaneCoreSimplePing::OrvaneCoreSimplePing(const char* name) : PingPackets(RandomIdentifier()), hostName(name) {}

OrvaneCoreSimplePing::~OrvaneCoreSimplePing() {
    stopHere();
    ORVANE_ASSERT_TEXT(!host, "self->_host == NULL");
    ORVANE_ASSERT_TEXT(!socket, "self->_socket == NULL");
}

void OrvaneCoreSimplePing::start() {
    ORVANE_ASSERT_TEXT(!host, "self.host == NULL");
    ORVANE_ASSERT_TEXT(hostAddress.empty(), "self.hostAddress == nil");
    _loop = RunLoop::Current();
    _thread = std::this_thread::get_id();
    _hostSource = _loop->AddPending();

    // The answer may come when loop and engine are gone.
    const auto done = [self = weak_from_this(),
                       loop = std::weak_ptr<RunLoop>(_loop)](const NameResolver::Answer& answer) {
        const std::shared_ptr<RunLoop> target = loop.lock();
        if (!target) return;
        target->Post([self, answer] {
            if (const auto pinger = self.lock()) pinger->HostResolveCallback(answer);
        });
    };
    NameResolver::Answer failure;
    host = NameResolver::Current().Start(hostName, done, failure);
    if (!host) didFailWithHostStreamError(failure);
}

void OrvaneCoreSimplePing::HostResolveCallback(const NameResolver::Answer& answer) {
    if (!host || _isStopping.load(std::memory_order_acquire)) return;  // stopped meanwhile
    if (answer.errorDomain != 0)
        didFailWithHostStreamError(answer);
    else
        hostResolutionDone(answer);
}

void OrvaneCoreSimplePing::hostResolutionDone(const NameResolver::Answer& answer) {
    for (const SocketAddress& address : answer.addresses) {
        if (address.size() < kSocketAddressSizeIPv4) continue;
        const int family = FamilyOf(address);
        if ((family == kFamilyIPv4 && addressStyle != kAddressStyleIPv6) ||
            (family == kFamilyIPv6 && addressStyle != kAddressStyleIPv4)) {
            hostAddress = address;
            break;
        }
    }
    stopHostResolution();
    if (!hostAddress.empty()) {
        startWithHostAddress();
    } else {
        PingError error;
        error.domain = PingError::kDomainNetwork;
        error.code = PingError::kCodeHostNotFound;
        didFailWithError(error);
    }
}

void OrvaneCoreSimplePing::didFailWithHostStreamError(const NameResolver::Answer& answer) {
    PingError error;
    error.domain = PingError::kDomainNetwork;
    error.code = PingError::kCodeUnknown;
    if (answer.errorDomain == NameResolver::kErrorDomainNetDB) error.getAddrInfoFailure = answer.errorCode;
    didFailWithError(error);
}

void OrvaneCoreSimplePing::didFailWithError(const PingError& error) {
    const auto keptAlive = shared_from_this();
    stopHere();
    if (delegate) delegate->simplePing_didFailWithError(*this, error);
}

void OrvaneCoreSimplePing::startWithHostAddress() {
    const int family = hostAddressFamily();
    if (family != kFamilyIPv4 && family != kFamilyIPv6) {
        didFailWithError(PosixError(EPROTONOSUPPORT));
        return;
    }
    socket = IcmpSockets::Current().Open(family);
    if (!socket) {
        didFailWithError(PosixError(errno));
        return;
    }
    _buffer.resize(kLargestDatagram);
    _socketSource = _loop->AddDescriptor(socket->Descriptor(), [this] { SocketReadCallback(); });
    if (delegate) delegate->simplePing_didStartWithAddress(*this, hostAddress);
}

void OrvaneCoreSimplePing::sendPingWithData(const Data* data) {
    const Data payload = data ? *data : DefaultPayload(nextSequenceNumber);
    ORVANE_ASSERT_TEXT(payload.size() == kPayloadSize, "[payload length] == 56");

    Data packet;
    switch (hostAddressFamily()) {
        case kFamilyIPv4:
            packet = pingPacketWithType_payload_requiresChecksum(kTypeEchoRequest, payload, true);
            break;
        case kFamilyIPv6:
            packet = pingPacketWithType_payload_requiresChecksum(kTypeEchoRequest6, payload, false);
            break;
        default:
            ORVANE_ASSERT_TEXT(false, "NO");
    }

    ssize_t sent = -1;
    int error = EBADF;
    if (socket) {
        sent = socket->SendTo(packet.data(), packet.size(), hostAddress);
        error = sent < 0 ? errno : 0;
    }
    if (sent > 0 && static_cast<size_t>(sent) == packet.size()) {
        if (delegate) delegate->simplePing_didSendPacket_sequenceNumber(*this, packet, nextSequenceNumber);
    } else if (delegate) {
        delegate->simplePing_didFailToSendPacket_sequenceNumber_error(*this, packet, nextSequenceNumber,
                                                                      PosixError(error != 0 ? error : ENOBUFS));
    }
    AdvanceSequenceNumber();
}

void OrvaneCoreSimplePing::SocketReadCallback() {
    const auto keptAlive = shared_from_this();
    // All that has come, but not for ever: others have to get their turn in a flood.
    for (int i = 0; i < kDatagramsAtOnce && socket && !_isStopping.load(std::memory_order_acquire); ++i) {
        if (!socket->IsReadable()) break;
        readData();
    }
}

void OrvaneCoreSimplePing::readData() {
    SocketAddress from;
    const ssize_t count = socket->ReceiveFrom(_buffer.data(), _buffer.size(), from);
    if (count <= 0) {
        didFailWithError(PosixError(count < 0 && errno != 0 ? errno : EPIPE));
        return;
    }
    Data packet(_buffer.begin(), _buffer.begin() + count);
    uint16_t sequenceNumber = 0;
    const bool isReply = validatePingResponsePacket_sequenceNumber(packet, sequenceNumber);
    if (!delegate) return;
    if (isReply)
        delegate->simplePing_didReceivePingResponsePacket_sequenceNumber(*this, packet, sequenceNumber);
    else
        delegate->simplePing_didReceiveUnexpectedPacket(*this, packet);
}

bool OrvaneCoreSimplePing::validatePingResponsePacket_sequenceNumber(Data& packet, uint16_t& sequenceNumber) const {
    switch (hostAddressFamily()) {
        case kFamilyIPv4:
            return validatePing4ResponsePacket_sequenceNumber(packet, sequenceNumber);
        case kFamilyIPv6:
            return validatePing6ResponsePacket_sequenceNumber(packet, sequenceNumber);
        default:
            ORVANE_ASSERT_TEXT(false, "NO");
    }
}

void OrvaneCoreSimplePing::stop() {
    if (!_loop || _thread == std::this_thread::get_id()) {
        stopHere();
        return;
    }
    // The socket belongs to the loop's thread. If its loop has ended, that thread has stopped the engine itself, and
    // what is posted waits for good: it must not hold the engine, which holds the loop.
    _isStopping.store(true, std::memory_order_release);
    _loop->Post([engine = weak_from_this()] {
        if (const auto self = engine.lock()) self->stopHere();
    });
}

void OrvaneCoreSimplePing::stopHere() {
    stopHostResolution();
    stopSocket();
    hostAddress.clear();
}

void OrvaneCoreSimplePing::stopHostResolution() {
    if (_hostSource != 0) _loop->Remove(std::exchange(_hostSource, 0));
    host.reset();
}

void OrvaneCoreSimplePing::stopSocket() {
    if (_socketSource != 0) _loop->Remove(std::exchange(_socketSource, 0));
    socket.reset();
}

}  // namespace Quern
