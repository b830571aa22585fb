// Between the upload task and the platform object that does its work.
//
// Nobody holds a chain of requests: each completion holds the worker, that holds its delegate, and the delegate holds
// bare pointers to the task and its listener. When the last completion has ended, worker and delegate go.
#ifndef ORVANE_SYSTEM_WWW_TASK_SORREL_UPLOAD_TASK_BRIDGE_H
#define ORVANE_SYSTEM_WWW_TASK_SORREL_UPLOAD_TASK_BRIDGE_H

#include <memory>
#include <string>

#include "Orvane/SorrelCUploadTask.h"

// Begins an upload and returns at once. Null texts count as empty.
void SorrelUploadJNI(const char* uploadId, const char* filePath, long long partSize, const char* credentialInfo,
                     SorrelCUploadTask::Listener* listener, SorrelCUploadTask* task, const char* uploadUrl);

// Tells the listener; a null task or listener is told in the log instead.
void OnUploadFinished(SorrelCUploadTask* task, SorrelCUploadTask::Listener* listener, int result);

class MySorrelUploadTaskDelegate final : public std::enable_shared_from_this<MySorrelUploadTaskDelegate> {
public:
    void upload_withFilePath_withPartSize_withComParams_withCListener_withCTask_uploadUrl(
        const std::string& uploadId, const std::string& filePath, long long partSize, const std::string& comParams,
        SorrelCUploadTask::Listener* listener, SorrelCUploadTask* task, const std::string& uploadUrl);

    // Once, at the end. On the thread of the session's completions.
    void onFinished(int result);

private:
    SorrelCUploadTask::Listener* _listener = nullptr;
    SorrelCUploadTask* _cTask = nullptr;
};

#endif
