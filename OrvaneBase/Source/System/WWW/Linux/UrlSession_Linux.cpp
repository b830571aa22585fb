#include <atomic>
#include <map>
#include <utility>

#include "Orvane/OrvaneCore.h"
#include "System/WWW/Linux/DataTransfer.h"
#include "System/WWW/Linux/DownloadTransfer.h"
#include "System/WWW/Linux/LinuxUrlSession.h"
#include "System/WWW/Linux/TransportThread.h"
#include "System/WWW/UrlReference.h"

namespace Quern {
namespace {

UrlSession::TransferId NextTransfer() {
    static std::atomic<UrlSession::TransferId> next{1};  // of all sessions together
    return next.fetch_add(1, std::memory_order_relaxed);
}

TransportOptions WithUserAgent(TransportOptions options) {
    if (options.userAgent.empty()) options.userAgent = std::string("OrvaneCore/") + orvanecore_get_version();
    return options;
}

// On the transport thread. The transport itself only knows HTTP.
void StartTransfer(Transport& transport, UrlSession::TransferId transfer,
                   const std::shared_ptr<TransferHandler>& handler) {
    UrlReference url;
    if (ParseUrlReference(handler->Request().url, &url) && url.IsHttp()) {
        transport.Start(transfer, handler);
        return;
    }
    TransferOutcome outcome;
    outcome.error = kUrlUnsupportedURL;
    outcome.errorText = "unsupported URL";
    handler->OnFinished(outcome);
}

}  // namespace

LinuxUrlSession::LinuxUrlSession(TransportOptions options)
    : _thread(std::make_shared<TransportThread>(WithUserAgent(std::move(options)))) {}

LinuxUrlSession::~LinuxUrlSession() {
    _thread->End();
}

UrlSession::TransferId LinuxUrlSession::MakeDataTransfer(UrlRequest request, Completion completion) {
    const TransferId transfer = NextTransfer();
    const auto handler =
        std::make_shared<DataTransfer>(transfer, std::move(request), std::move(completion), _thread->Completions());
    Keep(transfer, {[transfer, handler](Transport& transport) { StartTransfer(transport, transfer, handler); }, {}});
    return transfer;
}

UrlSession::TransferId LinuxUrlSession::MakeDownload(UrlRequest request, const std::string& place,
                                                     std::shared_ptr<UrlResumeData> resumeData,
                                                     std::shared_ptr<DownloadDelegate> delegate) {
    const TransferId transfer = NextTransfer();
    auto partial = std::dynamic_pointer_cast<PartialDownload>(std::move(resumeData));
    if (!partial || partial->isPlaced) partial = std::make_shared<PartialDownload>(std::move(request.url), place);
    const auto channel = std::make_shared<DownloadChannel>(transfer, std::move(delegate));
    const auto handler = std::make_shared<DownloadTransfer>(partial, channel);
    Keep(transfer, {[transfer, handler](Transport& transport) {
                        if (handler->Begin()) StartTransfer(transport, transfer, handler);
                    },
                    partial});
    return transfer;
}

void LinuxUrlSession::Keep(TransferId transfer, Unstarted made) {
    const CCritical guard(&_mutex);
    std::erase_if(_downloads, [](const auto& entry) { return entry.second.expired(); });
    if (made.partial) _downloads[transfer] = made.partial;
    _unstarted.emplace(transfer, std::move(made));
}

void LinuxUrlSession::Resume(TransferId transfer) {
    TransportThread::Work start;
    {
        const CCritical guard(&_mutex);
        const auto made = _unstarted.find(transfer);
        if (made != _unstarted.end()) start.swap(made->second.start);
        if (start && made->second.isCancelled)  // in one step, or a quick answer would come first
            start = [begin = std::move(start), transfer](Transport& transport) {
                begin(transport);
                transport.Cancel(transfer);
            };
    }
    if (!start) return;
    _thread->Do(std::move(start));
    bool isCancelled;
    {
        // Not before: a cancel from another thread would overtake the start, and be of an unknown number.
        const CCritical guard(&_mutex);
        isCancelled = _unstarted.extract(transfer).mapped().isCancelled;
    }
    if (isCancelled) Cancel(transfer);
}

void LinuxUrlSession::Cancel(TransferId transfer) {
    {
        const CCritical guard(&_mutex);
        const auto made = _unstarted.find(transfer);
        if (made != _unstarted.end()) {
            made->second.isCancelled = true;  // as soon as it has started
            return;
        }
    }
    _thread->Do([transfer](Transport& transport) { transport.Cancel(transfer); });
}

// What it gives is filled and used on the transport thread, in the order of what is done there: so it may be used at
// once.
std::shared_ptr<UrlResumeData> LinuxUrlSession::CancelProducingResumeData(TransferId transfer) {
    std::shared_ptr<PartialDownload> partial;
    {
        const CCritical guard(&_mutex);
        const auto found = _downloads.find(transfer);
        if (found != _downloads.end()) partial = found->second.lock();
    }
    Cancel(transfer);
    return partial;
}

template <>
std::shared_ptr<UrlSession> Seam<UrlSession>::MakeBuiltIn() {
    return std::make_shared<LinuxUrlSession>(TransportOptions());
}

}  // namespace Quern
