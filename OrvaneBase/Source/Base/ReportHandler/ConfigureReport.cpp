#include "Base/ReportHandler/ConfigureReport.h"

#include <utility>

#include "Base/ReportHandler/ReportHandler.h"

namespace Quern {
namespace {

constexpr int kDataType = 2;
constexpr int kSourceId = 2000;

// The numbered fields of every event; what they hold depends on the event.
constexpr int kField1 = 30001;
constexpr int kField2 = 30002;
constexpr int kField3 = 30003;
constexpr int kField4 = 30004;

}  // namespace

ConfigureReport* ConfigureReport::GetInstance() {
    static ConfigureReport* instance = new ConfigureReport;
    return instance;
}

void ConfigureReport::RecordPullConfigResult(int errorCode, int costTime, int retryCount) {
    const CCritical guard(&_mutex);
    _pullConfigResults.push_back({errorCode, costTime, retryCount});
}

void ConfigureReport::RecordRecieveUploadTask(const char* uploadId, const char* filePattern, const char* filePath,
                                              int partSize) {
    const CCritical guard(&_mutex);
    _uploadTasks.push_back({partSize, AString(uploadId), AString(filePattern), AString(filePath)});
}

void ConfigureReport::RecordUploadResult(int result, const char* uploadId, const char* filePath) {
    const CCritical guard(&_mutex);
    _uploadResults.push_back({result, AString(uploadId), AString(filePath)});
}

void ConfigureReport::Report() {
    std::vector<PullConfigResult> pullConfigResults;
    std::vector<UploadTask> uploadTasks;
    std::vector<UploadResult> uploadResults;
    {
        const CCritical guard(&_mutex);
        pullConfigResults.swap(_pullConfigResults);
        uploadTasks.swap(_uploadTasks);
        uploadResults.swap(_uploadResults);
    }
    for (const PullConfigResult& record : pullConfigResults) {
        ReportHandler event("PullConfigResult", kDataType, kSourceId);
        event.Add(kField1, record.errorCode);
        event.Add(kField2, record.costTime);
        event.Add(kField3, record.retryCount);
        event.Report();
    }
    for (const UploadTask& record : uploadTasks) {
        ReportHandler event("RecieveUploadTask", kDataType, kSourceId);
        event.Add(kField1, record.uploadId.c_str());
        event.Add(kField2, record.filePattern.c_str());
        event.Add(kField3, record.filePath.c_str());
        event.Add(kField4, record.partSize);
        event.Report();
    }
    for (const UploadResult& record : uploadResults) {
        ReportHandler event("UploadResult", kDataType, kSourceId);
        event.Add(kField1, record.result);
        event.Add(kField2, record.uploadId.c_str());
        event.Add(kField3, record.filePath.c_str());
        event.Add(kField4, 0);
        event.Report();
    }
}

}  // namespace Quern
