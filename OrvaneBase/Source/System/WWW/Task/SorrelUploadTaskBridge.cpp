// Two languages met here on the home platform: the task on one side, the worker and its delegate on the other. Texts
// are copied on the way, since the caller may free his own as soon as the call returns.
#include "System/WWW/Task/SorrelUploadTaskBridge.h"

#include "Base/ConsoleSink.h"
#include "Base/XLog.h"
#include "System/WWW/Task/OrvaneSorrelUploadTask.h"

void SorrelUploadJNI(const char* uploadId, const char* filePath, long long partSize, const char* credentialInfo,
                     SorrelCUploadTask::Listener* listener, SorrelCUploadTask* task, const char* uploadUrl) {
    const auto text = [](const char* given) { return std::string(given ? given : ""); };
    const auto delegate = std::make_shared<MySorrelUploadTaskDelegate>();
    delegate->upload_withFilePath_withPartSize_withComParams_withCListener_withCTask_uploadUrl(
        text(uploadId), text(filePath), partSize, text(credentialInfo), listener, task, text(uploadUrl));
}

void OnUploadFinished(SorrelCUploadTask* task, SorrelCUploadTask::Listener* listener, int result) {
    if (!task) {
        ORVANE_LOG_ERROR("SorrelUploadTask *task is NULL");
    } else if (!listener) {
        ORVANE_LOG_ERROR("SorrelUploadTask::Listener *rspDlgt is NULL");
    } else {
        listener->OnFinished(task, result);
    }
}

void MySorrelUploadTaskDelegate::upload_withFilePath_withPartSize_withComParams_withCListener_withCTask_uploadUrl(
    const std::string& uploadId, const std::string& filePath, long long partSize, const std::string& comParams,
    SorrelCUploadTask::Listener* listener, SorrelCUploadTask* task, const std::string& uploadUrl) {
    _listener = listener;
    _cTask = task;
    const auto worker = std::make_shared<OrvaneSorrelUploadTask>();
    worker->setMyDelegate(shared_from_this());
    worker->setCredentialInfo(comParams);
    worker->upload_withFilePath_withPartSize_uploadUrl(uploadId, filePath, partSize, uploadUrl);
}

void MySorrelUploadTaskDelegate::onFinished(int result) {
    Quern::PlatformLog("MySorrelUploadTaskDelegate onFinished %d", result);
    OnUploadFinished(_cTask, _listener, result);
}
