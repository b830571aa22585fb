#include "System/WWW/Task/WWW.h"

#include "System/WWW/Task/DataTaskImpl.h"
#include "System/WWW/Task/DownloadFileTaskImpl.h"
#include "System/WWW/Task/SorrelUploadTaskImpl.h"

namespace Quern {

DataTask* WWW::Request(const char* url) {
    if (!url) return nullptr;
    auto* const task = new DataTaskImpl;
    task->SetUrl(url);
    return task;
}

DownloadFileTask* WWW::DownloadFile(const char* url, const char* localPath) {
    if (!url || !localPath) return nullptr;
    auto* const task = new DownloadFileTaskImpl(localPath);
    task->SetUrl(url);
    return task;
}

SorrelCUploadTask* WWW::GetSorrelUploadTask() {
    return new SorrelUploadTaskImpl;
}

void WWW::Destroy(DataTask* task) {
    delete task;
}

void WWW::Destroy(DownloadFileTask* task) {
    delete task;
}

// The cast is safe, since Request alone makes data tasks.
bool WWW::TryGet(DataTask* task) {
    return static_cast<DataTaskImpl*>(task)->TryGet();
}

}  // namespace Quern
