// One ping run: hears the engine, times the packets, holds the deadline and makes the result text.
#ifndef ORVANE_SYSTEM_NETWORK_CHECKER_PING_DELEGATE_H
#define ORVANE_SYSTEM_NETWORK_CHECKER_PING_DELEGATE_H

#include <atomic>
#include <cstdint>
#include <map>
#include <memory>
#include <string>

#include "System/NetworkChecker/NetworkResults.h"
#include "System/NetworkChecker/RunLoop.h"
#include "System/NetworkChecker/SimplePing.h"
#include "System/Thread/Mutex.h"

namespace Quern {

class NetworkCheckerState;

// Threads: the engine's events come on the thread of its run loop; pingTimer has a thread of its own, which ends the
// run. Of the two whoever finishes first delivers the one result.
class PingDelegate final : public SimplePingDelegate, public std::enable_shared_from_this<PingDelegate> {
public:
    using Callback = void (*)(PingResult&);

    // `state` takes the result.
    explicit PingDelegate(std::shared_ptr<NetworkCheckerState> state);
    ~PingDelegate();

    // Runs the engine on the calling thread until the run is over, or timeOut + 1 seconds are. A name that is not
    // resolved by then is a failure.
    void Run();

    // Delivers the result of a failure, unless the run has delivered one already. Any thread.
    void Fail();

    // The thread of the deadline: sleeps in packageNumber steps for timeOut seconds, or until the end of the step in
    // which it is cancelled; then stops the engine and delivers the result.
    void pingTimer();

    void simplePing_didStartWithAddress(OrvaneCoreSimplePing& simplePing, const SocketAddress& address) override;
    void simplePing_didFailWithError(OrvaneCoreSimplePing& simplePing, const PingError& error) override;
    void simplePing_didSendPacket_sequenceNumber(OrvaneCoreSimplePing& simplePing, const Data& packet,
                                                 uint16_t sequenceNumber) override;
    void simplePing_didFailToSendPacket_sequenceNumber_error(OrvaneCoreSimplePing& simplePing, const Data& packet,
                                                             uint16_t sequenceNumber, const PingError& error) override;
    // A reply to a request that was answered already does not count.
    void simplePing_didReceivePingResponsePacket_sequenceNumber(OrvaneCoreSimplePing& simplePing, const Data& packet,
                                                                uint16_t sequenceNumber) override;

    // "1.2.3.4" from the address in eight hexadecimal digits.
    static std::string toIP(const std::string& digits);
    // The value of two of them; any but "0" to "9" and "a" to "f" counts as 0.
    static int hexStringToInt(const std::string& digits);

    // Set before Run.
    std::shared_ptr<OrvaneCoreSimplePing> pinger;
    // When each request that waits for its reply was sent, in milliseconds since the epoch. Of the run loop's thread.
    std::unique_ptr<std::map<uint16_t, uint64_t>> pingTimeRecorderDict;
    std::string returnMessage;
    Callback pingCallback = nullptr;
    uint8_t timeOut = 0;        // seconds
    uint8_t packageNumber = 0;  // how many requests
    std::string ip;             // the host as it was given; from the start on with its address in brackets

private:
    // Of the replies so far, in milliseconds.
    struct Statistics {
        uint8_t getPackageNumber = 0;
        uint64_t totalPingTime = 0;
        uint64_t maxPingTime = 0;
        uint64_t minPingTime = UINT64_MAX;
    };

    // True for the first caller alone.
    bool BeginToFinish();
    void Deliver(const std::string& text);

    const std::shared_ptr<NetworkCheckerState> _state;
    bool _isTimerStarted = false;  // of the run loop's thread
    std::atomic<bool> _isTimerCancelled{false};
    std::atomic<bool> _isFinished{false};
    CMutex _statisticsMutex;  // a leaf
    Statistics _statistics ORVANE_GUARDED_BY(_statisticsMutex);
};

}  // namespace Quern

#endif
