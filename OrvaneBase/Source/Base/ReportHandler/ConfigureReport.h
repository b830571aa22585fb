// Collects what happened to configuration fetches and to the uploads that they ordered, and reports it on demand.
#ifndef ORVANE_BASE_REPORT_HANDLER_CONFIGURE_REPORT_H
#define ORVANE_BASE_REPORT_HANDLER_CONFIGURE_REPORT_H

#include <cstdint>
#include <vector>

#include "Base/Container/AString.h"
#include "System/Thread/Mutex.h"

namespace Quern {

// A record waits in memory until somebody calls Report: the client of the configuration and the upload do so behind
// their own records, with their own locks released. Without a data plugin the events go nowhere. Any thread.
class ConfigureReport {
public:
    // Never destroyed.
    static ConfigureReport* GetInstance();

    // A fetch that brought an answer, or that has no retry left. errorCode: a WWWErrorCode, 0 for an answer of whatever
    // HTTP status. costTime: milliseconds. retryCount: retries used.
    void RecordPullConfigResult(int errorCode, int costTime, int retryCount);
    // Texts are copied; null counts as empty. partSize: bytes.
    void RecordRecieveUploadTask(const char* uploadId, const char* filePattern, const char* filePath, int partSize);
    // result: as SorrelCUploadTask tells its listener.
    void RecordUploadResult(int result, const char* uploadId, const char* filePath);
    // Sends one event for each record, and forgets them: every fetch, then every order, then every upload, in order of
    // arrival. No lock is held while an event is sent.
    void Report();

private:
    struct PullConfigResult {
        int32_t errorCode;
        int32_t costTime;
        int32_t retryCount;
    };
    struct UploadTask {
        int32_t partSize;
        AString uploadId;
        AString filePattern;
        AString filePath;
    };
    struct UploadResult {
        int32_t result;
        AString uploadId;
        AString filePath;
    };

    ConfigureReport() = default;

    std::vector<PullConfigResult> _pullConfigResults ORVANE_GUARDED_BY(_mutex);
    std::vector<UploadTask> _uploadTasks ORVANE_GUARDED_BY(_mutex);
    std::vector<UploadResult> _uploadResults ORVANE_GUARDED_BY(_mutex);
    CMutex _mutex{true};
};

}  // namespace Quern

#endif
