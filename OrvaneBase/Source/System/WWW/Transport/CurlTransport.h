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
    ~CurlTransport() override;

    void Start(UrlSession::TransferId transfer, std::shared_ptr<TransferHandler> handler) override;
    void Cancel(UrlSession::TransferId transfer) override;
    void Step() override;
    void Wake() override { curl_multi_wakeup(_multi); }

private:
    using Clock = CurlTransfer::Clock;

    struct Waiting {
        UrlSession::TransferId id;
        std::shared_ptr<TransferHandler> handler;
        Clock::time_point begin;
        bool needsLookup;
    };

    CurlTransport(CURLM* multi, const TransportOptions& options);

    void AdmitWaiting();
    bool HasRoom(bool needsLookup);
    size_t Lookups();
    void Admit(Waiting waiting);
    void TakeFinished();
    void EndIdle();
    int WaitTime() const;

    std::unique_ptr<CurlTransfer> Take(UrlSession::TransferId id);
    void Finish(std::unique_ptr<CurlTransfer> transfer, CURLcode result, int error);
    void End(UrlSession::TransferId id, const std::shared_ptr<TransferHandler>& handler,
             const TransferOutcome& outcome);

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
