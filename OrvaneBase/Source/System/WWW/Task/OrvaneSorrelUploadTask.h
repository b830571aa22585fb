// The worker of one upload: announces the file, then sends part after part as the server's answers say.
//
//     uploadInner --PUT--> prepared: 1 or 2, or the first part
//     a part --POST--> sent: 0, or the next part, or the same again, three times at most, then 3
//
// Its failures go to the platform's console and not to the log; only the result travels on.
#ifndef ORVANE_SYSTEM_WWW_TASK_ORVANE_SORREL_UPLOAD_TASK_H
#define ORVANE_SYSTEM_WWW_TASK_ORVANE_SORREL_UPLOAD_TASK_H

#include <cstdint>
#include <memory>
#include <string>

#include "System/WWW/UrlSession.h"

class MySorrelUploadTaskDelegate;

// The first step runs on a thread of its own, the later ones in the completions of the session's data transfers, one
// after the other. Each holds the object.
class OrvaneSorrelUploadTask final : public std::enable_shared_from_this<OrvaneSorrelUploadTask> {
public:
    void setMyDelegate(std::shared_ptr<MySorrelUploadTaskDelegate> delegate) { _delegate = std::move(delegate); }
    void setCredentialInfo(const std::string& comParams) { _comParams = comParams; }
    // Begins. `partSize` is cut to 32 bits.
    void upload_withFilePath_withPartSize_uploadUrl(const std::string& uploadId, const std::string& filePath,
                                                    long long partSize, const std::string& uploadUrl);

    // The SHA-1 of a file, and of `partSize` bytes of it from `startPos` on, fewer at its end: 40 lower-case
    // hexadecimal characters, "" if there is no such file. The file is read in pieces.
    static std::string fileToSHA1(const std::string& path);
    static std::string filePartToSHA1_withStartPos_withPartSize(const std::string& path, long long startPos,
                                                                int32_t partSize);
    // In bytes, 0 if there is no such file.
    static long long fileSizeAtPath(const std::string& path);
    // A text of the application's manifest, from the dictionary `section`; the default, with a line on the console if
    // there is no such dictionary. Has no caller in the library.
    static std::string getPlistString_andKey_withdefault(const char* section, const char* key,
                                                         const char* defaultValue);

private:
    // What a step gives; the others are the listener's.
    enum Result : int { kDone = 0, kRefused = 1, kPrepareFailed = 2, kPartFailed = 3, kStillRunning = 4 };

    void uploadInner();
    void prepareFile_withFilePath_withPartSize(const std::string& uploadId, const std::string& filePath,
                                               int32_t partSize);
    void uploadPart_withStartPos_withRetry(const std::string& url, long long startPos, int retry);
    bool BuildPart(long long startPos, long long total, std::string& body) const;
    Result Prepared(const Quern::UrlResult& result);
    Result Sent(const Quern::UrlResult& result, long long total);
    void Deliver(Result result);

    std::string _comParams;
    std::shared_ptr<MySorrelUploadTaskDelegate> _delegate;
    std::string _uploadid;
    std::string _filePath;
    int32_t _partSize = 0;
    std::string _uploadUrl;
};

#endif
