// The factory of HTTP tasks. Code outside the library comes here through Orvane/WWW.h.
#ifndef ORVANE_SYSTEM_WWW_TASK_WWW_H
#define ORVANE_SYSTEM_WWW_TASK_WWW_H

#include "Orvane/DataTask.h"
#include "Orvane/DownloadFileTask.h"
#include "Orvane/SorrelCUploadTask.h"

namespace Quern {

// Any thread. A task is the caller's until Destroy, which inside its own listener's call is not allowed.
class WWW {
public:
    // Null for a null.
    static DataTask* Request(const char* url);
    static DownloadFileTask* DownloadFile(const char* url, const char* localPath);
    // An upload, which the caller deletes.
    static SorrelCUploadTask* GetSorrelUploadTask();
    // A null is ignored.
    static void Destroy(DataTask* task);
    static void Destroy(DownloadFileTask* task);

    // DataTask::Get of a task that Request made, for the library's own users, who must know whether their listener is
    // going to hear of it. While that listener is being told, one request is kept and sent when it has returned.
    // False, with the line that Get logs, if the request was refused.
    static bool TryGet(DataTask* task);
};

}  // namespace Quern

#endif
