#include "System/WWW/Linux/DataTransfer.h"

#include <algorithm>
#include <new>
#include <utility>

namespace Quern {

DataTransfer::DataTransfer(UrlSession::TransferId transfer, UrlRequest request, UrlSession::Completion completion,
                           CompletionThread& completions)
    : _transfer(transfer),
      _request(std::move(request)),
      _completion(std::move(completion)),
      _completions(completions) {}

int DataTransfer::OnResponse(const ResponseHead& head) {
    constexpr long long kTrustedLength = 1 << 20;  // beyond it, what a server says is believed when it comes
    const long long length = head.ContentLength();
    if (length > kLargestBody) return kUrlDataLengthExceedsMaximum;
    if (length > 0) _result.body.reserve(static_cast<size_t>(std::min(length, kTrustedLength)));
    return kUrlNoError;
}

int DataTransfer::OnData(const char* data, size_t length) {
    if (_result.body.size() + length > static_cast<size_t>(kLargestBody)) return kUrlDataLengthExceedsMaximum;
    try {
        _result.body.append(data, length);
    } catch (const std::bad_alloc&) {
        return kUrlDataLengthExceedsMaximum;
    }
    return kUrlNoError;
}

bool DataTransfer::OnFinished(const TransferOutcome& outcome) {
    _result.error = outcome.error;
    _result.errorText = outcome.errorText;
    _result.status = outcome.status;
    _result.url = outcome.url;
    _result.times = outcome.times;
    if (outcome.error != kUrlNoError) std::string().swap(_result.body);
    _completions.Post([self = shared_from_this()] {
        const UrlSession::Completion completion = std::move(self->_completion);
        if (completion) completion(self->_transfer, self->_result);
    });
    return false;
}

}  // namespace Quern
