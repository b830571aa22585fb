// The upload of files that the configuration server orders.
//
// An order is the module "Upload" of an answer. Its keys:
//
//     "file_path"      folders to search, separated by "|": "ORVANE_LOG_DIR" and "ORVANE_CORE_LOG_DIR" for the log
//                      folders of the modules "Orvane" and "OrvaneCore", whatever follows; anything else is put
//                      behind the application's container as it stands
//     "file_pattern"   regular expressions for the names of files, separated by "|"; the case of letters does not count
//     "upload_id"      names the upload to the server, and the zip in the cache folder
//     "part_size"      bytes a part
//     "manual_upload"  1: over Wi-Fi alone
//
// Nothing outside the sandbox (Storage/File/Sandbox.h) is found, whatever a server names.
#ifndef ORVANE_BASE_CONFIGURE_FILE_UPLOADER_H
#define ORVANE_BASE_CONFIGURE_FILE_UPLOADER_H

#include <atomic>
#include <map>
#include <string>
#include <vector>

#include "Base/Configure/Configure.h"
#include "Base/MakeOnce.h"
#include "Orvane/SorrelCUploadTask.h"
#include "System/Thread/Mutex.h"

namespace Orvane {

// One upload at a time. Any thread.
class FileUploader final : public ConfigureObserver, public SorrelCUploadTask::Listener {
public:
    // Made at the first call, without a lock. Never freed: an upload may end at any time.
    static FileUploader* GetInstance();

    // Searches and zips before it returns, so a big zip holds up the observers behind this one; the upload goes on by
    // itself. The list is not looked at: the values are read by key.
    void OnConfigureRefreshed(IStringIterator* keys) override;

    // On the thread of the URL session's completions. Reports the result, removes the zip unless the upload has failed
    // (2, 3), and deletes the task.
    void OnFinished(SorrelCUploadTask* task, int result) override;

private:
    struct Order {
        Quern::AString path;
        Quern::AString pattern;
        Quern::AString uploadId;
        int partSize;
        int isManual;
    };

    template <typename T, typename Make>
    friend T* Quern::MakeOnce(std::atomic<T*>& place, Make make);

    FileUploader() = default;
    ~FileUploader() = default;

    static bool _IsAllowed(const Order& order);
    static std::vector<std::string> _Search(const Order& order);
    void _ZipAndUpload(const Order& order, const std::vector<std::string>& files);
    void _Upload(const char* uploadId, const char* zipPath, int partSize);

    // Set when an upload begins and cleared when it ends. An upload whose id is no UTF-8 text never ends, and so blocks
    // every later one. The search reads it without the mutex.
    std::atomic<bool> _isUploading{false};
    // Attempts by upload id in this process. Five are the most: the next one closes the uploader for good, for any id.
    std::map<std::string, int> _uploadTimes ORVANE_GUARDED_BY(_mutex);
    // Guards the begin of an upload. A task is made and started under it; no answer is waited for.
    Quern::CMutex _mutex{true};
};

}  // namespace Orvane

#endif
