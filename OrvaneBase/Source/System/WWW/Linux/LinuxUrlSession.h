// URL sessions on Linux: one transport thread, which moves the bytes of every transfer, and one completion thread, on
// which data transfers end, so that a slow completion holds up no transfer. Both start with the first transfer that is
// resumed. Downloads end on the main run loop.
#ifndef ORVANE_SYSTEM_WWW_LINUX_LINUX_URL_SESSION_H
#define ORVANE_SYSTEM_WWW_LINUX_LINUX_URL_SESSION_H

#include <functional>
#include <map>
#include <memory>
#include <string>

#include "System/Thread/Mutex.h"
#include "System/WWW/Linux/Transport.h"
#include "System/WWW/UrlSession.h"

namespace Quern {

class PartialDownload;
class TransportThread;

class LinuxUrlSession final : public UrlSession {
public:
    // An empty user agent is the library's own.
    explicit LinuxUrlSession(TransportOptions options);
    // Drops what is in flight without telling its end.
    ~LinuxUrlSession() override;

    TransferId MakeDataTransfer(UrlRequest request, Completion completion) override;
    TransferId MakeDownload(UrlRequest request, const std::string& place, std::shared_ptr<UrlResumeData> resumeData,
                            std::shared_ptr<DownloadDelegate> delegate) override;
    void Resume(TransferId transfer) override;
    void Cancel(TransferId transfer) override;
    std::shared_ptr<UrlResumeData> CancelProducingResumeData(TransferId transfer) override;

private:
    // A transfer that the transport thread does not have yet.
    struct Unstarted {
        std::function<void(Transport& transport)> start;  // on the transport thread
        std::shared_ptr<PartialDownload> partial;         // of a download
        bool isCancelled = false;
    };

    void Keep(TransferId transfer, Unstarted made);

    const std::shared_ptr<TransportThread> _thread;  // shared with the threads

    CMutex _mutex;  // a leaf
    std::map<TransferId, Unstarted> _unstarted ORVANE_GUARDED_BY(_mutex);
    std::map<TransferId, std::weak_ptr<PartialDownload>> _downloads ORVANE_GUARDED_BY(_mutex);
};

}  // namespace Quern

#endif
