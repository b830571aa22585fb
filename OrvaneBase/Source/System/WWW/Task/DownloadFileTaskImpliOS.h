// What stands between a download task and the platform's URL session: the session's delegate.
//
// The session holds it while a transfer is under way, which may be longer than its task lives. Every call of the
// session therefore asks the set of live tasks first. The finish and the failure do so without the set's outer lock,
// so that they wait for no data listener; in its place stands the gate, which they hold over check and use, and which
// the task's destructor passes once the task has left the set. Order of locks: WWWTaskBase::_sMutex, the gate, the
// task's own.
#ifndef ORVANE_SYSTEM_WWW_TASK_DOWNLOAD_FILE_TASK_IMPLI_OS_H
#define ORVANE_SYSTEM_WWW_TASK_DOWNLOAD_FILE_TASK_IMPLI_OS_H

#include <memory>
#include <string>

#include "System/Thread/Mutex.h"
#include "System/WWW/UrlSession.h"

namespace Quern {

class DownloadFileTaskImpl;
class WWWTaskBase;

class DownloadFileTaskImpliOS final : public UrlSession::DownloadDelegate,
                                      public std::enable_shared_from_this<DownloadFileTaskImpliOS> {
public:
    explicit DownloadFileTaskImpliOS(DownloadFileTaskImpl* task);

    // The task's own operations, on its thread.
    void Resume();
    void Pause();
    void Cancel();
    // The task is going: returns when no call is inside it any more; the next one finds it gone.
    void PassGate();
    // Gives up what is in flight, without looking at the task.
    void Abandon();

    // The session's calls, on the main thread.
    void DidWriteData(UrlSession::TransferId transfer, long long totalWritten, long long expected) override;
    void DidResumeAtOffset(UrlSession::TransferId, long long, long long) override {}
    void DidFinishDownloading(UrlSession::TransferId transfer, UrlDownloadedFile& file) override;
    void DidComplete(UrlSession::TransferId transfer, int error, const std::string& errorText) override;

private:
    enum State { kIdle = 0, kRunning = 1, kPaused = 2 };

    // Whether the call is of the transfer that is waited for: none comes from one that was paused or cancelled.
    bool IsCurrent(UrlSession::TransferId transfer);
    // Under the gate.
    bool IsTaskReleased() const;
    // Back to idle, unless another transfer than the one that has ended is waited for by now.
    void Uninit(UrlSession::TransferId ended);
    void Finish(UrlSession::TransferId transfer, int platformError);

    DownloadFileTaskImpl* const task;   // not owned, and perhaps dead
    const WWWTaskBase* const liveTask;  // the same object, as the set knows it
    CMutex _gate{true};                 // recursive: a listener may use its task
    bool _isTaskGone = false;           // under the gate: what lives at its address since is another task

    // A leaf: the task's thread and the main thread both come here.
    CMutex _fieldsMutex;
    UrlSession::TransferId downloadTask ORVANE_GUARDED_BY(_fieldsMutex) = 0;  // 0: none is waited for
    std::shared_ptr<UrlResumeData> resumeData ORVANE_GUARDED_BY(_fieldsMutex);
    State state ORVANE_GUARDED_BY(_fieldsMutex) = kIdle;
    bool isBegin ORVANE_GUARDED_BY(_fieldsMutex) = false;     // OnDownloadBegin has been told in this run
    long long totalSize ORVANE_GUARDED_BY(_fieldsMutex) = 0;  // as it was told then
};

}  // namespace Quern

#endif
