#include "System/NetworkChecker/Traceroute.h"

#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

#include "Base/ConsoleSink.h"
#include "Base/XLog.h"
#include "System/NetworkChecker/TracerouteCommon.h"
#include "System/Thread/Time.h"

namespace Quern {
namespace {

constexpr int kPort = 2002;
constexpr int kReceiveTimeout = 3;  // seconds
constexpr int kProbes = 3;
constexpr size_t kRecordsOfUnknownHost = 30;

uint16_t IdentifierForRound(long ttl) {
    return static_cast<uint16_t>(CTime::GetTimeTick() / 1000 % 30000 + ttl);
}

}  // namespace

std::shared_ptr<Traceroute> Traceroute::startTracerouteWithHost_totalTTL_stepCallback_finish(const std::string& host,
                                                                                             long maxTtl,
                                                                                             StepCallback stepCallback,
                                                                                             FinishCallback finish) {
    return startTracerouteWithHost_totalTTL_queue_stepCallback_finish(host, maxTtl, nullptr, std::move(stepCallback),
                                                                      std::move(finish));
}

std::shared_ptr<Traceroute> Traceroute::startTracerouteWithHost_totalTTL_queue_stepCallback_finish(
    const std::string& host, long maxTtl, WorkerPool* queue, StepCallback stepCallback, FinishCallback finish) {
    auto traceroute = std::make_shared<Traceroute>(host, maxTtl, std::move(stepCallback), std::move(finish));
    if (queue)
        queue->Push([traceroute] { traceroute->run(); });
    else
        traceroute->run();
    return traceroute;
}

Traceroute::Traceroute(std::string host, long ttl, StepCallback step, FinishCallback finish)
    : hostname(std::move(host)), maxTtl(ttl), stepCallback(std::move(step)), finishCallback(std::move(finish)) {}

void Traceroute::run() {
    const std::vector<std::string> addresses = TracerouteCommon::resolveHost(hostname);
    if (addresses.empty()) {
        Finish(std::vector<TracerouteRecord>(kRecordsOfUnknownHost), false);
        return;
    }
    ipAddress = addresses.front();
    _isIPv6 = ipAddress.find(':') != std::string::npos;
    const SocketAddress addr = TracerouteCommon::makeSockaddrWithAddress_port_isIPv6(ipAddress, kPort, _isIPv6);
    if (addr.empty()) return;
    std::unique_ptr<IcmpSocket> socket = IcmpSockets::Current().Open(_isIPv6 ? kFamilyIPv6 : kFamilyIPv4);
    if (!socket) {
        ORVANE_LOG_ERROR("创建socket失败");
        return;
    }
    if (!socket->SetReceiveTimeout(kReceiveTimeout)) {
        ORVANE_LOG_ERROR("setsockopt失败");
        return;
    }
    bool isReached = false;
    long ttl = 1;
    do {
        if (!socket->SetTimeToLive(static_cast<int>(ttl))) ORVANE_LOG_ERROR("setsockopt失败");
        isReached = sendAndRecv_addr_ttl(*socket, addr, ttl);
        ++ttl;
    } while (!isReached && ttl <= maxTtl);
    socket.reset();
    Finish(results, isReached);
}

bool Traceroute::sendAndRecv_addr_ttl(IcmpSocket& socket, const SocketAddress& addr, long ttl) {
    const std::vector<uint8_t> packet = TracerouteCommon::makeICMPPacketWithID_sequence_isICMPv6(
        IdentifierForRound(ttl), static_cast<uint16_t>(ttl), _isIPv6);
    TracerouteRecord record;
    record.ttl = ttl;
    bool isReached = false;
    for (int probe = 0; probe < kProbes; ++probe)
        record.recvDurations.push_back(Probe(socket, addr, packet, record, isReached));
    results.push_back(record);
    if (stepCallback) stepCallback(record);
    return isReached;
}

std::optional<double> Traceroute::Probe(IcmpSocket& socket, const SocketAddress& addr,
                                        const std::vector<uint8_t>& packet, TracerouteRecord& record, bool& isReached) {
    const auto start = std::chrono::steady_clock::now();
    if (socket.SendTo(packet.data(), packet.size(), addr) < 0) {
        PlatformLog("TraceRoute send failed caused by: %s", strerror(errno));
        return std::nullopt;
    }
    for (;;) {
        uint8_t buffer[kTracerouteBufferSize] = {};
        SocketAddress from;
        const ssize_t count = socket.ReceiveFrom(buffer, sizeof buffer, from);
        if (count < 0) return std::nullopt;
        const double duration = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
        const std::string sender =
            _isIPv6 ? TracerouteCommon::formatIPv6Address(from) : TracerouteCommon::formatIPv4Address(from);
        const auto length = static_cast<size_t>(count);
        const bool isOfTarget = sender == ipAddress && IsEchoReplyTo(packet, buffer, length, _isIPv6);
        if (!isOfTarget && !IsTimeoutOf(packet, buffer, length, _isIPv6)) continue;  // the wait begins anew
        record.ip = sender;
        isReached = isReached || isOfTarget;
        return duration;
    }
}

void Traceroute::Finish(const std::vector<TracerouteRecord>& records, bool succeed) const {
    if (finishCallback) finishCallback(records, succeed);
}

}  // namespace Quern
