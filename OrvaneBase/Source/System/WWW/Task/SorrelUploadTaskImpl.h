// The upload task that plugins and the library's own uploader hold.
#ifndef ORVANE_SYSTEM_WWW_TASK_SORREL_UPLOAD_TASK_IMPL_H
#define ORVANE_SYSTEM_WWW_TASK_SORREL_UPLOAD_TASK_IMPL_H

#include <string>

#include "Orvane/SorrelCUploadTask.h"

class SorrelUploadTaskImpl final : public SorrelCUploadTask {
public:
    // The listener may delete the task on another thread before this has returned: once the upload has begun no member
    // is touched.
    void Upload(const char* uploadId, const char* filePath, long long partSize, const char* uploadUrl) override;
    const char* GetUploadid() override { return _uploadId.c_str(); }
    const char* GetUploadFilePath() override { return _uploadFilePath.c_str(); }
    void SetCredentialInfo(const char* info) override { _credentialInfo = info ? info : ""; }
    void SetListener(SorrelCUploadTask::Listener* listener) override { _listener = listener; }

private:
    SorrelCUploadTask::Listener* _listener = nullptr;  // not owned
    std::string _credentialInfo;                       // the text of the common parameters
    std::string _uploadId;
    std::string _uploadFilePath;
};

#endif
