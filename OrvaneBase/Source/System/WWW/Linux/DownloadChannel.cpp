#include "System/WWW/Linux/DownloadChannel.h"

#include <utility>

#include "System/Application/MainRunLoop.h"

namespace Quern {
namespace {

// A frame at 60 a second: nobody draws progress more often.
constexpr std::chrono::milliseconds kProgressInterval{17};

}  // namespace

DownloadChannel::DownloadChannel(UrlSession::TransferId transfer,
                                 std::shared_ptr<UrlSession::DownloadDelegate> delegate)
    : _transfer(transfer), _delegate(std::move(delegate)) {}

void DownloadChannel::Post(std::function<void()> call) {
    MainRunLoop::Current().Post([self = shared_from_this(), call = std::move(call)] { call(); });
}

void DownloadChannel::TellResumed(long long offset, long long expected) {
    Post([this, offset, expected] { _delegate->DidResumeAtOffset(_transfer, offset, expected); });
}

void DownloadChannel::TellProgress(long long written, long long expected) {
    long long delay;
    {
        const CCritical guard(&_mutex);
        _written = written;
        _expected = expected;
        _hasNews = true;
        if (std::exchange(_isWaiting, true)) return;
        delay = std::chrono::ceil<std::chrono::milliseconds>(_next - Clock::now()).count();
    }
    if (delay <= 0)
        Post([this] { DeliverProgress(); });
    else
        MainRunLoop::Current().StartTimer(delay, [self = shared_from_this()] { self->DeliverProgress(); });
}

void DownloadChannel::DeliverProgress() {
    long long written, expected;
    {
        const CCritical guard(&_mutex);
        _isWaiting = false;
        if (!std::exchange(_hasNews, false)) return;
        written = _written;
        expected = _expected;
        _next = Clock::now() + kProgressInterval;
    }
    _delegate->DidWriteData(_transfer, written, expected);
}

void DownloadChannel::TellFinished(std::shared_ptr<UrlDownloadedFile> file) {
    Post([this, file = std::move(file)] {
        DeliverProgress();
        _delegate->DidFinishDownloading(_transfer, *file);
        _delegate->DidComplete(_transfer, kUrlNoError, "");
    });
}

void DownloadChannel::TellFailed(int error, const std::string& errorText) {
    Post([this, error, errorText] {
        if (error != kUrlCancelled) DeliverProgress();
        _delegate->DidComplete(_transfer, error, errorText);
    });
}

}  // namespace Quern
