#include "System/NetworkChecker/PingDelegate.h"

#include <chrono>
#include <cstdio>
#include <system_error>
#include <thread>
#include <utility>

#include "Base/XLog.h"
#include "System/NetworkChecker/ANetworkChecker.h"
#include "System/NetworkChecker/NetworkCheckerState.h"
#include "System/NetworkChecker/ResultText.h"
#include "System/Thread/ThreadName.h"
#include "System/Thread/Time.h"

namespace Quern {
namespace {

constexpr size_t kPayloadSize = 56;

uint64_t Milliseconds() {
    return static_cast<uint64_t>(CTime::GetTimeTick()) / 1000;
}

int HexDigit(char digit) {
    if (digit >= '0' && digit <= '9') return digit - '0';
    if (digit >= 'a' && digit <= 'f') return digit - 'a' + 10;
    return 0;
}

// The address of an IPv4 socket address, as eight hexadecimal digits.
std::string AddressDigits(const SocketAddress& address) {
    char digits[9] = "";
    if (address.size() >= kSocketAddressSizeIPv4)
        snprintf(digits, sizeof digits, "%02x%02x%02x%02x", address[4], address[5], address[6], address[7]);
    return digits;
}

}  // namespace

PingDelegate::PingDelegate(std::shared_ptr<NetworkCheckerState> state) : _state(std::move(state)) {}

PingDelegate::~PingDelegate() = default;

void PingDelegate::Run() {
    const auto keptAlive = shared_from_this();
    const auto deadline = RunLoop::Clock::now() + std::chrono::seconds(timeOut + 1);
    pinger->start();
    RunLoop::Current()->RunUntil(deadline);
    pinger->stop();
    // With a timer the result comes from there. Without one, and without a failure, the name was not resolved in time.
    if (!_isTimerStarted) Fail();
}

void PingDelegate::simplePing_didStartWithAddress(OrvaneCoreSimplePing& simplePing, const SocketAddress& address) {
    if (address.empty()) return;
    ip.append("(").append(toIP(AddressDigits(address))).append(")");
    try {
        std::thread([self = shared_from_this()] { self->pingTimer(); }).detach();
    } catch (const std::system_error&) {
        simplePing.stop();  // nothing else would end the run
        return;
    }
    _isTimerStarted = true;
    const Data payload(kPayloadSize);
    for (int i = 0; i < packageNumber; ++i)
        simplePing.sendPingWithData(&payload);
}

std::string PingDelegate::toIP(const std::string& digits) {
    std::string text;
    for (size_t at = 0; at + 2 <= digits.size(); at += 2) {
        if (at > 0) text += ".";
        text += std::to_string(hexStringToInt(digits.substr(at, 2)));
    }
    return text;
}

int PingDelegate::hexStringToInt(const std::string& digits) {
    return digits.size() < 2 ? 0 : HexDigit(digits[0]) * 16 + HexDigit(digits[1]);
}

void PingDelegate::simplePing_didSendPacket_sequenceNumber(OrvaneCoreSimplePing&, const Data&,
                                                           uint16_t sequenceNumber) {
    if (!pingTimeRecorderDict) {
        ORVANE_LOG_ERROR("pingTimeRecorderDict is null");
        return;
    }
    (*pingTimeRecorderDict)[sequenceNumber] = Milliseconds();
}

void PingDelegate::simplePing_didFailToSendPacket_sequenceNumber_error(OrvaneCoreSimplePing&, const Data&, uint16_t,
                                                                       const PingError& error) {
    ORVANE_LOG_ERROR("ping(%s): didFailToSendPacket: %s", ip.c_str(), error.Description().c_str());
}

void PingDelegate::simplePing_didReceivePingResponsePacket_sequenceNumber(OrvaneCoreSimplePing&, const Data&,
                                                                          uint16_t sequenceNumber) {
    if (!pingTimeRecorderDict) return;
    const auto entry = pingTimeRecorderDict->find(sequenceNumber);
    if (entry == pingTimeRecorderDict->end()) return;
    const uint64_t now = Milliseconds();
    const uint64_t time = now > entry->second ? now - entry->second : 0;  // the clock may have been set back
    pingTimeRecorderDict->erase(entry);

    const CCritical guard(&_statisticsMutex);
    Statistics& statistics = _statistics;
    if (time < statistics.minPingTime) statistics.minPingTime = time;
    if (time > statistics.maxPingTime) statistics.maxPingTime = time;
    statistics.totalPingTime += time;
    if (++statistics.getPackageNumber == packageNumber) _isTimerCancelled.store(true, std::memory_order_relaxed);
}

void PingDelegate::pingTimer() {
    set_thread_name("pingTimer");
    const auto keptAlive = shared_from_this();
    const std::chrono::duration<double> step(static_cast<double>(timeOut) / packageNumber);
    for (int i = 0; i < packageNumber && !_isTimerCancelled.load(std::memory_order_relaxed); ++i)
        std::this_thread::sleep_for(step);
    if (!pinger) {
        ORVANE_LOG_ERROR("null pinger");
        return;
    }
    pinger->stop();
    if (!pingCallback) {
        ORVANE_LOG_ERROR("null pingCallback");
        return;
    }
    if (packageNumber == 0 || timeOut == 0 || !BeginToFinish()) return;

    Statistics result;
    {
        const CCritical guard(&_statisticsMutex);
        result = _statistics;
    }
    const bool isSilent = result.getPackageNumber == 0;
    uint64_t average = 0;
    if (isSilent) {
        result.totalPingTime = timeOut * 1000ull;
        result.minPingTime = result.maxPingTime = 0;
    } else {
        average = result.totalPingTime / result.getPackageNumber;
    }
    Deliver(PingText(returnMessage, ip, packageNumber, result.getPackageNumber, result.totalPingTime,
                     result.minPingTime, average, result.maxPingTime, isSilent ? 1 : 0));
}

void PingDelegate::simplePing_didFailWithError(OrvaneCoreSimplePing&, const PingError&) {
    Fail();
}

void PingDelegate::Fail() {
    if (!pingCallback || !BeginToFinish()) return;
    _isTimerCancelled.store(true, std::memory_order_relaxed);
    Deliver(PingText(returnMessage, ip, 0, 0, 0, 0, 0, 0, 1));
}

bool PingDelegate::BeginToFinish() {
    return !_isFinished.exchange(true, std::memory_order_relaxed);
}

void PingDelegate::Deliver(const std::string& text) {
    returnMessage = text;
    _state->Notify(&ANetworkChecker::NotifyPingFinish, HeapText(text), pingCallback);
    _state->SafeDelete(this);
}

}  // namespace Quern
