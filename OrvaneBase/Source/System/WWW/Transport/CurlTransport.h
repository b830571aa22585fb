// The transport on libcurl's multi interface: one thread, many transfers.
#ifndef ORVANE_SYSTEM_WWW_TRANSPORT_CURL_TRANSPORT_H
#define ORVANE_SYSTEM_WWW_TRANSPORT_CURL_TRANSPORT_H

#include <curl/curl.h>

#include <deque>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "System/WWW/Linux/Transport.h"
#include "System/WWW/Transport/CurlTransfer.h"

namespace Quern {

// Transfers beyond kMostTransfers wait for their turn, and so do those whose name would be looked up beyond
// kMostLookups: each lookup is a thread, which nothing can stop, so it counts until it must have ended even where its
// transfer has gone. A redirect to another name is looked up beyond the bound, and keeps others waiting in turn.
class CurlTransport final : public Transport {
public:
    static constexpr size_t kMostTransfers = 256;
    static constexpr size_t kMostLookups = 32;

    // Null if libcurl cannot work.
    static std::unique_ptr<CurlTransport> Make(const TransportOptions& options);
    // Gives up everything in flight, without a word to the handlers.
    ~CurlTransport() override;

    void Start(UrlSession::TransferId transfer, std::shared_ptr<TransferHandler> handler) override;
    void Cancel(UrlSession::TransferId transfer) override;
    void Step() override;
    void Wake() override { curl_multi_wakeup(_multi); }

private:
    using Clock = CurlTransfer::Clock;

    // A transfer that has not begun.
    struct Waiting {
        UrlSession::TransferId id;
        std::shared_ptr<TransferHandler> handler;
        Clock::time_point begin;  // when it was asked for: waiting counts as idleness
        bool needsLookup;         // its host is a name, not an address
    };

    // Owns `multi` from now on.
    CurlTransport(CURLM* multi, const TransportOptions& options);

    // Begins waiting transfers, as far as there is room.
    void AdmitWaiting();
    bool HasRoom(bool needsLookup);
    // How many lookups may still run, those without a transfer included.
    size_t Lookups();
    void Admit(Waiting waiting);
    void TakeFinished();
    // Ends those that were idle for too long, active and waiting ones.
    void EndIdle();
    // Milliseconds that Step may wait for the network.
    int WaitTime() const;

    // Takes a transfer out of the active ones; null for an unknown number.
    std::unique_ptr<CurlTransfer> Take(UrlSession::TransferId id);
    void Finish(std::unique_ptr<CurlTransfer> transfer, CURLcode result, int error);
    // Tells the handler, and starts again if it asks for that.
    void End(UrlSession::TransferId id, const std::shared_ptr<TransferHandler>& handler,
             const TransferOutcome& outcome);

    // libcurl's handles are used again, since making one costs more than resetting it.
    CURL* TakeHandle();
    void GiveBack(CURL* easy);

    CURLM* const _multi;
    CurlEnvironment _environment;
    const std::chrono::milliseconds _idle;
    std::unordered_map<UrlSession::TransferId, std::unique_ptr<CurlTransfer>> _active;
    std::deque<Waiting> _waiting;                                 // oldest first
    std::deque<Clock::time_point> _orphanedLookups;               // when each must have ended
    std::vector<CURL*> _handles;                                  // used before, and reset
    Clock::time_point _nextIdleCheck = Clock::time_point::max();  // nobody is idle too long before that
};

}  // namespace Quern

#endif
