// The data task: one request at a time through the platform's URL session.
#ifndef ORVANE_SYSTEM_WWW_TASK_DATA_TASK_IMPL_H
#define ORVANE_SYSTEM_WWW_TASK_DATA_TASK_IMPL_H

#include <atomic>
#include <optional>

#include "Orvane/DataTask.h"
#include "System/WWW/Task/WWWTaskBase.h"
#include "System/WWW/UrlSession.h"

namespace Quern {

class DataTaskImpl final : public WWWTaskBase, public DataTask {
public:
    DataTaskImpl();
    // Does not give up what is in flight: its end is dropped with a line.
    ~DataTaskImpl() override;

    void Get() override;
    void Post(const char* body, int length) override;
    void SetListener(DataTask::Listener* listener) override;
    void RemoveListener(DataTask::Listener* listener) override;
    void Cancel() override;

    // Get for the library's own users, who must know whether the listener is going to hear of it. While this task's
    // listener is being told, on whatever thread the caller is, one request is kept and sent when the listener has
    // returned. False, with the line that Get logs, if the request was refused.
    bool TryGet();

private:
    // The request of the present address and headers; false, with a line, if there can be none.
    bool Prepare(const char* body, int length, UrlRequest& request) const;
    // Enters the one request that the task may have; false if it has one. Release takes it out where none was sent.
    bool Claim();
    // When a request of TryGet goes out: at once, when the listener has returned, or not at all.
    enum class Turn { kNow, kLater, kNever };
    bool IsBusy();
    // As Claim, but keeps the request where that is allowed; `request` is then taken.
    Turn ClaimOrKeep(UrlRequest& request);
    void Release();
    void Send(UrlRequest request);
    UrlSession::TransferId Make(UrlRequest request);

    // What the platform's completion does: on the session's thread, with a task that may be dead.
    static void Completed(WWWTaskBase* task, UrlSession::TransferId transfer, const UrlResult& result);
    void FinishedCallback(WWWErrorCode error, int httpStatus, const char* data, long long length);
    void SendKept();

    // A request of TryGet that waits for the listener. Cancel may come in between.
    struct KeptRequest {
        UrlRequest request;
        bool isCancelled = false;
    };

    DataTask::Listener* _listener ORVANE_GUARDED_BY(_mutex) = nullptr;  // not owned
    bool _stopped = false;  // keeps the listener from being told; nothing sets it
    CMutex _mutex{true};    // held while the listener is told, so it is recursive; taken after _sMutex

    // A leaf, so that Post waits for no listener.
    CMutex _stateMutex;
    bool _isRequesting ORVANE_GUARDED_BY(_stateMutex) = false;  // a request is out, or kept
    bool _isTelling ORVANE_GUARDED_BY(_stateMutex) = false;     // the listener is being told of the end
    std::optional<KeptRequest> _kept ORVANE_GUARDED_BY(_stateMutex);

    // The transfer in flight, 0 when idle. A completion clears its own number alone: the next request may be out.
    std::atomic<UrlSession::TransferId> _platformTask{0};
};

}  // namespace Quern

#endif
