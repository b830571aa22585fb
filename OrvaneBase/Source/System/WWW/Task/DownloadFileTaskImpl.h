// The download task. It keeps the listener and the path; the work is its delegate's, DownloadFileTaskImpliOS, which may
// outlive it while a transfer is under way.
#ifndef ORVANE_SYSTEM_WWW_TASK_DOWNLOAD_FILE_TASK_IMPL_H
#define ORVANE_SYSTEM_WWW_TASK_DOWNLOAD_FILE_TASK_IMPL_H

#include <atomic>
#include <memory>
#include <string>

#include "Orvane/DownloadFileTask.h"
#include "System/WWW/Task/WWWTaskBase.h"

namespace Quern {

class DownloadFileTaskImpliOS;

// The listener is told on the main thread.
class DownloadFileTaskImpl final : public WWWTaskBase, public DownloadFileTask {
public:
    // `localFilePath`: where the whole file is put; never null. Nothing is requested before Resume.
    explicit DownloadFileTaskImpl(const char* localFilePath);
    // Waits for a listener that is being told, and gives up what is in flight.
    ~DownloadFileTaskImpl() override;

    void Pause() override;
    void Resume() override;
    void Cancel() override;
    void SetListener(DownloadFileTask::Listener* listener) override;
    void RemoveListener(DownloadFileTask::Listener* listener) override;
    const char* GetLocalFilePath() override { return _localFilePath.c_str(); }

private:
    friend class DownloadFileTaskImpliOS;

    CMutex _mutex{true};  // held while the listener is told, so it is recursive; taken after _sMutex and the gate
    const std::string _localFilePath;
    DownloadFileTask::Listener* _listener ORVANE_GUARDED_BY(_mutex) = nullptr;  // not owned
    std::atomic<bool> _isRequesting{false};                // from Resume to Pause or the end; a second Resume only logs
    const std::shared_ptr<DownloadFileTaskImpliOS> _impl;  // transfers that are under way hold it too
};

}  // namespace Quern

#endif
