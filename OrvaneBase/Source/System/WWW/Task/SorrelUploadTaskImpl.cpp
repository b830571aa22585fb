// The task keeps the texts for its getters; all work is behind the bridge.
#include "System/WWW/Task/SorrelUploadTaskImpl.h"

#include "System/WWW/Task/SorrelUploadTaskBridge.h"

void SorrelUploadTaskImpl::Upload(const char* uploadId, const char* filePath, long long partSize,
                                  const char* uploadUrl) {
    _uploadId = uploadId ? uploadId : "";
    _uploadFilePath = filePath ? filePath : "";
    SorrelUploadJNI(_uploadId.c_str(), _uploadFilePath.c_str(), partSize, _credentialInfo.c_str(), _listener, this,
                    uploadUrl);
}
