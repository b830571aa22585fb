// A transfer to a file, which may go on where another one was stopped.
#ifndef ORVANE_SYSTEM_WWW_LINUX_DOWNLOAD_TRANSFER_H
#define ORVANE_SYSTEM_WWW_LINUX_DOWNLOAD_TRANSFER_H

#include <atomic>
#include <memory>
#include <string>

#include "System/WWW/Linux/DownloadChannel.h"
#include "System/WWW/Linux/PartialFile.h"
#include "System/WWW/Linux/Transport.h"

namespace Quern {

// What has come of a file so far, and what a later transfer must know in order to go on. Filled by one transfer after
// the other on the transport thread; the main thread has it when it is whole.
class PartialDownload final : public UrlResumeData, public UrlDownloadedFile {
public:
    PartialDownload(std::string address, std::string path) : url(std::move(address)), place(std::move(path)) {}

    int PlaceAt(const std::string& path) override;
    // What the server will know this very content by: a strong entity tag, else its date; "" if it has told neither.
    std::string Validator() const;

    const std::string url;
    const std::string place;
    PartialFile file;
    long long written = 0;
    long long total = -1;      // as the server says, -1 if it does not
    std::string entityTag;     // as they came, "" if they did not
    std::string lastModified;  // only if it tells this content from a later one
    bool isWhole = false;
    std::atomic<bool> isPlaced{false};  // handed over: nothing can go on with it. Set by the main thread
};

// On the transport thread.
//
// It goes on by Range with If-Range (RFC 9110, 13.1.5 and 14.2): the server then sends the rest of the same content, or
// all of another. A rest that does not begin where the file ends, or that is of another content, or cannot be had
// (416), is refused, and the file is fetched anew from its start.
class DownloadTransfer final : public TransferHandler {
public:
    DownloadTransfer(std::shared_ptr<PartialDownload> partial, std::shared_ptr<DownloadChannel> channel);

    // Makes ready. False if there is nothing to transfer: the end has been told.
    bool Begin();

    const UrlRequest& Request() override { return _request; }
    bool IsDownload() const override { return true; }
    int OnResponse(const ResponseHead& head) override;
    int OnData(const char* data, size_t length) override;
    bool OnFinished(const TransferOutcome& outcome) override;

private:
    void AskForRest();
    int StartOver();
    int TakeRest(const ResponseHead& head);
    int TakeWhole(const ResponseHead& head);

    const std::shared_ptr<PartialDownload> _partial;
    const std::shared_ptr<DownloadChannel> _channel;
    UrlRequest _request;
    bool _isRest = false;       // the request asks for a rest
    bool _isStartOver = false;  // the answer was refused, and is to be had from the start
};

}  // namespace Quern

#endif
