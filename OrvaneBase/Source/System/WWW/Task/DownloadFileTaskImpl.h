// The download task; the work is its delegate's.
#ifndef ORVANE_SYSTEM_WWW_TASK_DOWNLOAD_FILE_TASK_IMPL_H
#define ORVANE_SYSTEM_WWW_TASK_DOWNLOAD_FILE_TASK_IMPL_H

#include <atomic>
#include <memory>
#include <string>

#include "Orvane/DownloadFileTask.h"
#include "System/WWW/Task/WWWTaskBase.h"

namespace Quern {

class DownloadFileTaskImpliOS;

class DownloadFileTaskImpl final : public WWWTaskBase, public DownloadFileTask {
public:
    explicit DownloadFileTaskImpl(const char* localFilePath);
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
    std::atomic<bool> _isRequesting{false};
    const std::shared_ptr<DownloadFileTaskImpliOS> _impl;  // transfers that are under way hold it too
};

}  // namespace Quern

#endif
