#include "System/WWW/Task/DownloadFileTaskImpl.h"

#include "Base/XLog.h"
#include "System/WWW/Task/DownloadFileTaskImpliOS.h"

namespace Quern {

DownloadFileTaskImpl::DownloadFileTaskImpl(const char* localFilePath)
    : _localFilePath(localFilePath), _impl(std::make_shared<DownloadFileTaskImpliOS>(this)) {
    EnterLiveSet();
}

// One after the other, never the gate around the set's lock: the main thread may be inside a listener, with the gate,
// and want that lock.
DownloadFileTaskImpl::~DownloadFileTaskImpl() {
    LeaveLiveSet();
    _impl->PassGate();
    _impl->Abandon();
}

void DownloadFileTaskImpl::Resume() {
    if (_isRequesting.exchange(true)) {
        ORVANE_LOG_INFO("DownloadFileTask is Requesting");
        return;
    }
    _impl->Resume();
}

void DownloadFileTaskImpl::Pause() {
    _isRequesting.store(false);
    _impl->Pause();
}

void DownloadFileTaskImpl::Cancel() {
    _impl->Cancel();
}

void DownloadFileTaskImpl::SetListener(DownloadFileTask::Listener* listener) {
    const CCritical guard(&_mutex);
    _listener = listener;
}

void DownloadFileTaskImpl::RemoveListener(DownloadFileTask::Listener*) {
    const CCritical guard(&_mutex);
    _listener = nullptr;
}

}  // namespace Quern
