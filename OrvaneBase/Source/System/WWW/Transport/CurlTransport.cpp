#include "System/WWW/Transport/CurlTransport.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "System/WWW/UrlReference.h"

namespace Quern {
namespace {

constexpr long kMostKeptConnections = 64;
constexpr size_t kMostKeptHandles = 64;
constexpr std::chrono::seconds kLongestLookup{30};

std::string Variable(const char* name) {
    const char* const value = getenv(name);
    return value ? value : "";
}

// What the environment says, and what no proxy can reach for us.
std::string NoProxy() {
    const std::string lower = Variable("no_proxy");
    const std::string own = lower.empty() ? Variable("NO_PROXY") : lower;
    if (own == "*") return own;
    return (own.empty() ? "" : own + ",") + "localhost,127.0.0.0/8,::1";
}

// Whether the host of an address is a name that libcurl asks the resolver for.
bool NeedsLookup(const std::string& url) {
    UrlReference parts;
    if (!ParseUrlReference(url, &parts)) return false;
    const std::string_view host = parts.host;
    constexpr std::string_view kLocal = "localhost";
    const bool isAddress = host.find_first_not_of("0123456789.") == std::string_view::npos || host[0] == '[';
    return !isAddress && host != kLocal;
}

}  // namespace

std::unique_ptr<CurlTransport> CurlTransport::Make(const TransportOptions& options) {
    if (curl_global_init(CURL_GLOBAL_DEFAULT) != CURLE_OK) return nullptr;
    CURLM* const multi = curl_multi_init();
    return multi ? std::unique_ptr<CurlTransport>(new CurlTransport(multi, options)) : nullptr;
}

CurlTransport::CurlTransport(CURLM* multi, const TransportOptions& options)
    : _multi(multi), _environment{options, NoProxy(), Variable("SSL_CERT_DIR")}, _idle(options.idleMilliseconds) {
    if (options.certificateFile.empty()) _environment.options.certificateFile = Variable("SSL_CERT_FILE");
    curl_multi_setopt(_multi, CURLMOPT_MAXCONNECTS, kMostKeptConnections);
}

CurlTransport::~CurlTransport() {
    for (auto& [id, transfer] : _active) {
        curl_multi_remove_handle(_multi, transfer->Easy());
        curl_easy_cleanup(transfer->Easy());
    }
    for (CURL* const easy : _handles)
        curl_easy_cleanup(easy);
    curl_multi_cleanup(_multi);
}

void CurlTransport::Start(UrlSession::TransferId transfer, std::shared_ptr<TransferHandler> handler) {
    const bool needsLookup = NeedsLookup(handler->Request().url);
    const Clock::time_point now = Clock::now();
    _nextIdleCheck = std::min(_nextIdleCheck, now + _idle);
    Waiting waiting{transfer, std::move(handler), now, needsLookup};
    if (HasRoom(needsLookup))
        Admit(std::move(waiting));
    else
        _waiting.push_back(std::move(waiting));
}

size_t CurlTransport::Lookups() {
    while (!_orphanedLookups.empty() && _orphanedLookups.front() <= Clock::now())
        _orphanedLookups.pop_front();
    const auto isLookingUp = [](const auto& entry) { return entry.second->IsLookingUp(); };
    return _orphanedLookups.size() + static_cast<size_t>(std::count_if(_active.begin(), _active.end(), isLookingUp));
}

bool CurlTransport::HasRoom(bool needsLookup) {
    return _active.size() < kMostTransfers && (!needsLookup || Lookups() < kMostLookups);
}

// In order, but past those whose name cannot be looked up yet.
void CurlTransport::AdmitWaiting() {
    for (auto waiting = _waiting.begin(); waiting != _waiting.end() && _active.size() < kMostTransfers;) {
        if (!HasRoom(waiting->needsLookup)) {
            ++waiting;
            continue;
        }
        Waiting next = std::move(*waiting);
        waiting = _waiting.erase(waiting);
        Admit(std::move(next));
    }
}

void CurlTransport::Admit(Waiting waiting) {
    CURL* const easy = TakeHandle();
    if (!easy) {
        TransferOutcome outcome;
        outcome.error = kUrlUnknown;
        outcome.errorText = "out of memory";
        End(waiting.id, waiting.handler, outcome);
        return;
    }
    auto transfer = std::make_unique<CurlTransfer>(easy, waiting.id, std::move(waiting.handler), waiting.begin,
                                                   waiting.needsLookup, _environment);
    curl_multi_add_handle(_multi, easy);
    _active.emplace(waiting.id, std::move(transfer));
}

void CurlTransport::Cancel(UrlSession::TransferId id) {
    if (auto transfer = Take(id)) {
        Finish(std::move(transfer), CURLE_OK, kUrlCancelled);
        return;
    }
    const auto waiting = std::find_if(_waiting.begin(), _waiting.end(), [id](const Waiting& w) { return w.id == id; });
    if (waiting == _waiting.end()) return;
    const std::shared_ptr<TransferHandler> handler = std::move(waiting->handler);
    _waiting.erase(waiting);
    TransferOutcome outcome;
    outcome.error = kUrlCancelled;
    outcome.errorText = std::to_string(kUrlCancelled);
    End(id, handler, outcome);
}

void CurlTransport::Step() {
    int running;
    curl_multi_perform(_multi, &running);
    TakeFinished();
    EndIdle();
    AdmitWaiting();
    curl_multi_poll(_multi, nullptr, 0, WaitTime(), nullptr);
}

void CurlTransport::TakeFinished() {
    int left;
    while (const CURLMsg* const message = curl_multi_info_read(_multi, &left)) {
        if (message->msg != CURLMSG_DONE) continue;
        const CURLcode result = message->data.result;  // the message is gone with the handle
        Finish(Take(CurlTransfer::Of(message->easy_handle)->Id()), result, kUrlNoError);
    }
}

void CurlTransport::EndIdle() {
    const Clock::time_point now = Clock::now();
    if (now < _nextIdleCheck) return;
    _nextIdleCheck = Clock::time_point::max();
    const auto isOver = [&](Clock::time_point lastActivity) {
        const bool over = lastActivity + _idle <= now;
        if (!over) _nextIdleCheck = std::min(_nextIdleCheck, lastActivity + _idle);
        return over;
    };
    std::vector<UrlSession::TransferId> over;
    for (const auto& [id, transfer] : _active)
        if (isOver(transfer->LastActivity())) over.push_back(id);
    for (const UrlSession::TransferId id : over)
        Finish(Take(id), CURLE_OPERATION_TIMEDOUT, kUrlTimedOut);

    std::vector<Waiting> overWaiting;
    std::erase_if(_waiting, [&](Waiting& waiting) {
        if (!isOver(waiting.begin)) return false;
        overWaiting.push_back(std::move(waiting));
        return true;
    });
    for (const Waiting& waiting : overWaiting) {
        TransferOutcome outcome;
        outcome.error = kUrlTimedOut;
        outcome.errorText = std::to_string(kUrlTimedOut) + " waited too long for its turn";
        End(waiting.id, waiting.handler, outcome);
    }
}

int CurlTransport::WaitTime() const {
    constexpr std::chrono::milliseconds kLongest{60000};
    const Clock::time_point now = Clock::now();
    Clock::time_point due = std::min(now + kLongest, _nextIdleCheck);
    // libcurl's timer for one address among several may go off a moment before it takes the time to be over, and is
    // then not set again.
    constexpr std::chrono::milliseconds kConnectCheck{100};
    const auto isConnecting = [](const auto& entry) { return entry.second->IsConnecting(); };
    if (std::any_of(_active.begin(), _active.end(), isConnecting)) due = std::min(due, now + kConnectCheck);
    if (!_waiting.empty() && !_orphanedLookups.empty()) due = std::min(due, _orphanedLookups.front());
    return static_cast<int>(std::max(std::chrono::ceil<std::chrono::milliseconds>(due - now).count(), 0L));
}

std::unique_ptr<CurlTransfer> CurlTransport::Take(UrlSession::TransferId id) {
    auto node = _active.extract(id);
    return node.empty() ? nullptr : std::move(node.mapped());
}

void CurlTransport::Finish(std::unique_ptr<CurlTransfer> transfer, CURLcode result, int error) {
    const TransferOutcome outcome = transfer->Outcome(result, error);
    // With any other result the lookup has come to its own end.
    const bool isGivenUp = error != kUrlNoError || result == CURLE_OPERATION_TIMEDOUT;
    if (isGivenUp && transfer->IsLookingUp()) _orphanedLookups.push_back(Clock::now() + kLongestLookup);
    CURL* const easy = transfer->Easy();
    curl_multi_remove_handle(_multi, easy);
    const UrlSession::TransferId id = transfer->Id();
    const std::shared_ptr<TransferHandler> handler = transfer->Handler();
    GiveBack(easy);
    transfer.reset();
    End(id, handler, outcome);
}

void CurlTransport::End(UrlSession::TransferId id, const std::shared_ptr<TransferHandler>& handler,
                        const TransferOutcome& outcome) {
    if (handler->OnFinished(outcome)) Start(id, handler);
}

CURL* CurlTransport::TakeHandle() {
    if (_handles.empty()) return curl_easy_init();
    CURL* const easy = _handles.back();
    _handles.pop_back();
    return easy;
}

void CurlTransport::GiveBack(CURL* easy) {
    if (_handles.size() >= kMostKeptHandles) {
        curl_easy_cleanup(easy);
        return;
    }
    curl_easy_reset(easy);
    _handles.push_back(easy);
}

}  // namespace Quern
