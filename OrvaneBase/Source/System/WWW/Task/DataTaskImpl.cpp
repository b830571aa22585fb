#include "System/WWW/Task/DataTaskImpl.h"

#include <utility>

#include "Base/XLog.h"
#include "System/WWW/Task/WWWErrorCode.h"
#include "System/WWW/UrlReference.h"

namespace Quern {

DataTaskImpl::DataTaskImpl() {
    EnterLiveSet();
}

DataTaskImpl::~DataTaskImpl() {
    LeaveLiveSet();
}

void DataTaskImpl::Get() {
    Post(nullptr, 0);
}

void DataTaskImpl::Post(const char* body, int length) {
    if (!Claim()) {
        ORVANE_LOG_INFO("DataTask is Requesting");
        return;
    }
    UrlRequest request;
    if (Prepare(body, length, request))
        Send(std::move(request));
    else
        Release();
}

bool DataTaskImpl::TryGet() {
    UrlRequest request;
    if (!IsBusy() && !Prepare(nullptr, 0, request)) return false;
    switch (request.url.empty() ? Turn::kNever : ClaimOrKeep(request)) {
        case Turn::kNow:
            Send(std::move(request));
            return true;
        case Turn::kLater:
            return true;
        default:
            ORVANE_LOG_INFO("DataTask is Requesting");
            return false;
    }
}

// Whether neither is a request possible now nor can one be kept.
bool DataTaskImpl::IsBusy() {
    const CCritical guard(&_stateMutex);
    return _isRequesting && (!_isTelling || _kept);
}

DataTaskImpl::Turn DataTaskImpl::ClaimOrKeep(UrlRequest& request) {
    const CCritical guard(&_stateMutex);
    if (!std::exchange(_isRequesting, true)) return Turn::kNow;
    if (!_isTelling || _kept) return Turn::kNever;
    _kept = KeptRequest{std::move(request)};
    return Turn::kLater;
}

bool DataTaskImpl::Claim() {
    const CCritical guard(&_stateMutex);
    return !std::exchange(_isRequesting, true);
}

void DataTaskImpl::Release() {
    const CCritical guard(&_stateMutex);
    _isRequesting = false;
}

bool DataTaskImpl::Prepare(const char* body, int length, UrlRequest& request) const {
    if (_url.empty()) {
        ORVANE_LOG_ERROR("_url is null");
        return false;
    }
    if (!ParseUrlReference(_url)) {
        ORVANE_LOG_ERROR("url is null");
        return false;
    }
    ORVANE_LOG_INFO("Url: %s", _url.c_str());
    request.url = _url;
    if (body && length >= 1) {
        request.method = "POST";
        request.body.assign(body, static_cast<size_t>(length));
    }
    for (const auto& [name, value] : _headers)
        request.SetValueForHttpHeader(name, value);
    return true;
}

// Once the transfer is resumed its completion may run, and the listener may have the task destroyed: `this` is not
// touched any more.
void DataTaskImpl::Send(UrlRequest request) {
    const UrlSession::TransferId transfer = Make(std::move(request));
    _platformTask.store(transfer);
    UrlSession::Current().Resume(transfer);
}

UrlSession::TransferId DataTaskImpl::Make(UrlRequest request) {
    WWWTaskBase* const task = this;
    const auto completion = [task](UrlSession::TransferId transfer, const UrlResult& result) {
        Completed(task, transfer, result);
    };
    return UrlSession::Current().MakeDataTransfer(std::move(request), completion);
}

// On the session's thread, with a task that may be dead.
void DataTaskImpl::Completed(WWWTaskBase* task, UrlSession::TransferId transfer, const UrlResult& result) {
    ORVANE_LOG_INFO("completed error:%s, response:%s length:%d, %p", result.error ? result.errorText.c_str() : "(null)",
                    result.status ? (std::to_string(result.status) + " " + result.url).c_str() : "(null)",
                    static_cast<int>(result.body.size()), static_cast<const void*>(task));
    const CCritical told(_sMutex);
    if (IsObjectRelease(task)) {
        ORVANE_LOG_INFO("WWWTaskBase ObjectRelease %p", static_cast<const void*>(task));
        return;
    }
    // A task of another kind may live at a dead one's address.
    auto* const self = dynamic_cast<DataTaskImpl*>(task);
    if (!self) return;
    const bool hasData = !result.body.empty();
    self->FinishedCallback(ConvertToWWWErrorCode(result.error), result.status, hasData ? result.body.data() : nullptr,
                           static_cast<long long>(result.body.size()));
    UrlSession::TransferId own = transfer;
    self->_platformTask.compare_exchange_strong(own, 0);
    self->SendKept();
}

void DataTaskImpl::FinishedCallback(WWWErrorCode error, int httpStatus, const char* data, long long length) {
    const CCritical guard(&_mutex);
    {
        const CCritical state(&_stateMutex);
        _isTelling = true;
    }
    if (_listener && !_stopped) _listener->OnDataTaskFinished(this, error, httpStatus, data, length);
    const CCritical state(&_stateMutex);
    _isTelling = false;
    _isRequesting = _kept.has_value();  // a request that was kept takes its place at once
}

void DataTaskImpl::SendKept() {
    UrlRequest request;
    {
        const CCritical guard(&_stateMutex);
        if (!_kept) return;
        request = std::move(_kept->request);
    }
    const UrlSession::TransferId transfer = Make(std::move(request));
    bool isCancelled;
    {
        // At once, so that a cancel meets either the one or the other.
        const CCritical guard(&_stateMutex);
        isCancelled = _kept->isCancelled;
        _kept.reset();
        _platformTask.store(isCancelled ? 0 : transfer);
    }
    UrlSession& session = UrlSession::Current();
    if (isCancelled) session.Cancel(transfer);
    session.Resume(transfer);
}

void DataTaskImpl::Cancel() {
    UrlSession::TransferId transfer;
    {
        const CCritical guard(&_stateMutex);
        transfer = _platformTask.exchange(0);
        if (_kept) _kept->isCancelled = true;  // its end is told like that of any other
    }
    if (transfer) UrlSession::Current().Cancel(transfer);
}

void DataTaskImpl::SetListener(DataTask::Listener* listener) {
    const CCritical guard(&_mutex);
    _listener = listener;
}

void DataTaskImpl::RemoveListener(DataTask::Listener*) {
    const CCritical guard(&_mutex);
    _listener = nullptr;
}

}  // namespace Quern
