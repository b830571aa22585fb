#include "System/WWW/Task/DownloadFileTaskImpliOS.h"

#include <utility>

#include "Base/XLog.h"
#include "System/WWW/Task/DownloadFileTaskImpl.h"
#include "System/WWW/Task/WWWErrorCode.h"

namespace Quern {

DownloadFileTaskImpliOS::DownloadFileTaskImpliOS(DownloadFileTaskImpl* owner) : task(owner), liveTask(owner) {}

void DownloadFileTaskImpliOS::Resume() {
    std::shared_ptr<UrlResumeData> data;
    {
        const CCritical guard(&_fieldsMutex);
        if (state == kRunning) return;
        if (state == kPaused) data = std::exchange(resumeData, nullptr);
    }
    UrlSession& session = UrlSession::Current();
    const UrlSession::TransferId transfer =
        session.MakeDownload(UrlRequest(task->GetUrl()), task->GetLocalFilePath(), std::move(data), shared_from_this());
    {
        // At once: the end of the transfer before, which the main thread may be telling, finds either none of it or
        // all.
        const CCritical guard(&_fieldsMutex);
        state = kRunning;
        downloadTask = transfer;
        task->_isRequesting.store(true);
    }
    session.Resume(transfer);
}

void DownloadFileTaskImpliOS::Pause() {
    UrlSession::TransferId transfer;
    {
        const CCritical guard(&_fieldsMutex);
        if (state != kRunning) return;
        state = kPaused;
        transfer = std::exchange(downloadTask, 0);
    }
    std::shared_ptr<UrlResumeData> data = UrlSession::Current().CancelProducingResumeData(transfer);
    const CCritical guard(&_fieldsMutex);
    if (state == kPaused) resumeData = std::move(data);
}

void DownloadFileTaskImpliOS::Cancel() {
    if (!task) {
        ORVANE_LOG_ERROR("task is NULL");
        return;
    }
    Abandon();
    const CCritical guard(&task->_mutex);
    Uninit(0);  // silent as it is, a cancelled download may be started again
}

void DownloadFileTaskImpliOS::Abandon() {
    UrlSession::TransferId transfer;
    {
        const CCritical guard(&_fieldsMutex);
        transfer = std::exchange(downloadTask, 0);
    }
    if (transfer) UrlSession::Current().Cancel(transfer);
}

void DownloadFileTaskImpliOS::PassGate() {
    const CCritical gate(&_gate);
    _isTaskGone = true;
}

void DownloadFileTaskImpliOS::Uninit(UrlSession::TransferId ended) {
    std::shared_ptr<UrlResumeData> dropped;  // behind the lock: it closes a file
    const CCritical guard(&_fieldsMutex);
    if (downloadTask != 0 && downloadTask != ended) return;
    task->_isRequesting.store(false);
    dropped.swap(resumeData);
    state = kIdle;
    isBegin = false;
    totalSize = 0;
    downloadTask = 0;
}

bool DownloadFileTaskImpliOS::IsCurrent(UrlSession::TransferId transfer) {
    const CCritical guard(&_fieldsMutex);
    return transfer == downloadTask;
}

bool DownloadFileTaskImpliOS::IsTaskReleased() const {
    if (!WWWTaskBase::IsObjectRelease(liveTask) && !_isTaskGone) return false;
    ORVANE_LOG_INFO("WWWTaskBase ObjectRelease %p", static_cast<const void*>(liveTask));
    return true;
}

void DownloadFileTaskImpliOS::DidWriteData(UrlSession::TransferId transfer, long long totalWritten,
                                           long long expected) {
    if (!task) {
        ORVANE_LOG_ERROR("task is NULL");
        return;
    }
    const CCritical told(WWWTaskBase::_sMutex);
    const CCritical gate(&_gate);
    if (IsTaskReleased()) return;
    const CCritical guard(&task->_mutex);
    bool isFirst;
    {
        const CCritical fields(&_fieldsMutex);
        if (transfer != downloadTask) return;
        isFirst = !std::exchange(isBegin, true);
        if (isFirst) totalSize = expected;
    }
    if (isFirst && task->_listener) task->_listener->OnDownloadBegin(task, expected);
    // What the listener did in that call counts: it may have paused.
    if (task->_listener && IsCurrent(transfer)) task->_listener->OnDownloadProgress(task, totalWritten, expected);
}

void DownloadFileTaskImpliOS::DidFinishDownloading(UrlSession::TransferId transfer, UrlDownloadedFile& file) {
    const CCritical gate(&_gate);
    if (IsTaskReleased() || !IsCurrent(transfer)) return;
    const char* const path = task->GetLocalFilePath();
    if (!path || !*path) return;
    const int error = file.PlaceAt(path);
    if (error != 0) ORVANE_LOG_ERROR("download to %s: error %d", path, error);
    Finish(transfer, error == 0 ? kUrlNoError : kUrlCannotCreateFile);
}

// The finish has been told by DidFinishDownloading, and a pause or a cancel is silent.
void DownloadFileTaskImpliOS::DidComplete(UrlSession::TransferId transfer, int error, const std::string& errorText) {
    if (error == kUrlNoError || error == kUrlCancelled) return;
    ORVANE_LOG_INFO("didCompleteWithError error %s", errorText.c_str());
    const CCritical gate(&_gate);
    if (IsTaskReleased() || !IsCurrent(transfer)) return;
    Finish(transfer, error);
}

// Under the gate, with a live task.
void DownloadFileTaskImpliOS::Finish(UrlSession::TransferId transfer, int platformError) {
    const CCritical guard(&task->_mutex);
    long long size;
    {
        const CCritical fields(&_fieldsMutex);
        size = std::exchange(totalSize, 0);
        isBegin = false;
    }
    if (task->_listener) task->_listener->OnDownloadFinished(task, ConvertToWWWErrorCode(platformError), size);
    Uninit(transfer);  // unless the listener has started it again
}

}  // namespace Quern
