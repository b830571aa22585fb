// A download's way to the main thread.
#ifndef ORVANE_SYSTEM_WWW_LINUX_DOWNLOAD_CHANNEL_H
#define ORVANE_SYSTEM_WWW_LINUX_DOWNLOAD_CHANNEL_H

#include <chrono>
#include <memory>
#include <string>

#include "System/Thread/Mutex.h"
#include "System/WWW/UrlSession.h"

namespace Quern {

// The transport thread tells it what happens, and it tells the delegate on the main run loop. One post of progress
// waits at a time; it carries the numbers that are newest when it is performed. There are at most 60 of them a second.
class DownloadChannel : public std::enable_shared_from_this<DownloadChannel> {
public:
    DownloadChannel(UrlSession::TransferId transfer, std::shared_ptr<UrlSession::DownloadDelegate> delegate);

    void TellResumed(long long offset, long long expected);
    void TellProgress(long long written, long long expected);
    // The last progress first, if it has not been told.
    void TellFinished(std::shared_ptr<UrlDownloadedFile> file);
    void TellFailed(int error, const std::string& errorText);

private:
    using Clock = std::chrono::steady_clock;

    void DeliverProgress();
    void Post(std::function<void()> call);

    const UrlSession::TransferId _transfer;
    const std::shared_ptr<UrlSession::DownloadDelegate> _delegate;

    CMutex _mutex;  // a leaf
    long long _written ORVANE_GUARDED_BY(_mutex) = 0;
    long long _expected ORVANE_GUARDED_BY(_mutex) = -1;
    bool _hasNews ORVANE_GUARDED_BY(_mutex) = false;    // more than was delivered
    bool _isWaiting ORVANE_GUARDED_BY(_mutex) = false;  // a post
    Clock::time_point _next ORVANE_GUARDED_BY(_mutex);  // no delivery before that
};

}  // namespace Quern

#endif
