// A transfer whose answer is collected in memory.
#ifndef ORVANE_SYSTEM_WWW_LINUX_DATA_TRANSFER_H
#define ORVANE_SYSTEM_WWW_LINUX_DATA_TRANSFER_H

#include "System/WWW/Linux/CompletionThread.h"
#include "System/WWW/Linux/Transport.h"

namespace Quern {

// On the transport thread, but for the completion, which is called once, on the completion thread. It may take its
// time: other completions wait for it, transfers do not.
class DataTransfer final : public TransferHandler, public std::enable_shared_from_this<DataTransfer> {
public:
    // A body beyond this ends the transfer, so that a server that never ends does not fill the memory.
    static constexpr long long kLargestBody = 256LL << 20;  // bytes

    DataTransfer(UrlSession::TransferId transfer, UrlRequest request, UrlSession::Completion completion,
                 CompletionThread& completions);

    const UrlRequest& Request() override { return _request; }
    bool IsDownload() const override { return false; }
    int OnResponse(const ResponseHead& head) override;
    int OnData(const char* data, size_t length) override;
    bool OnFinished(const TransferOutcome& outcome) override;

private:
    const UrlSession::TransferId _transfer;
    const UrlRequest _request;
    UrlSession::Completion _completion;  // empty once it was called
    CompletionThread& _completions;      // outlives the transport thread
    UrlResult _result;                   // the body as it grows; after a failure without one
};

}  // namespace Quern

#endif
