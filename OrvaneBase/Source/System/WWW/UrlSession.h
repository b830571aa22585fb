// The platform's URL sessions: transfers over HTTP that call back long after they were asked for.
//
// A transfer is made, and then resumed, so that its number can be kept before anything happens. Numbers are never 0 and
// never used again. Error codes are those of the platform (UrlErrorCode below); 0 is none.
//
// Thread rule: every operation may be called from any thread, also under a lock of the caller, and returns without
// waiting for the network or for a callback. Completions of data transfers come one after the other on a thread of the
// session's own, everything of a download on the main thread, from the main run loop; no callback comes under a lock
// of the session. After `fork` without `exec` a session is of no use in the child.
#ifndef ORVANE_SYSTEM_WWW_URL_SESSION_H
#define ORVANE_SYSTEM_WWW_URL_SESSION_H

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "Base/Seam.h"
#include "System/WWW/UrlRequest.h"

namespace Quern {

// The platform's URL error codes, as far as the transport gives them.
enum UrlErrorCode : int {
    kUrlNoError = 0,
    kUrlUnknown = -1,
    kUrlCancelled = -999,
    kUrlTimedOut = -1001,
    kUrlUnsupportedURL = -1002,
    kUrlCannotFindHost = -1003,
    kUrlCannotConnectToHost = -1004,
    kUrlNetworkConnectionLost = -1005,
    kUrlTooManyRedirects = -1007,
    kUrlCannotDecodeContentData = -1016,
    kUrlCannotParseResponse = -1017,
    kUrlDataLengthExceedsMaximum = -1103,
    kUrlSecureConnectionFailed = -1200,
    kUrlCertificateHasBadDate = -1201,
    kUrlCertificateUntrusted = -1202,
    kUrlCertificateHasUnknownRoot = -1203,
    kUrlCertificateNotYetValid = -1204,
    kUrlClientCertificateRejected = -1205,
    kUrlCannotCreateFile = -3000,
    kUrlCannotWriteToFile = -3003,
};

// When a transfer reached what, in microseconds from its start; -1 where it did not get there. Each includes those
// before it.
struct UrlTimes {
    long long nameLookup = -1;
    long long connect = -1;
    long long tls = -1;
    long long firstByte = -1;
    long long total = -1;
};

// How a data transfer ended.
struct UrlResult {
    int error = kUrlNoError;
    std::string errorText;  // "" without an error
    int status = 0;         // HTTP status of the last answer, 0 if none came; with an error too
    std::string url;        // the address that answered, behind all redirects
    std::string body;       // decoded; empty with an error
    UrlTimes times;
};

// What a stopped download needs in order to go on; opaque.
class UrlResumeData {
public:
    virtual ~UrlResumeData() = default;
};

// The bytes of a finished download, which have no name yet. They are gone with the object unless they were placed.
class UrlDownloadedFile {
public:
    virtual ~UrlDownloadedFile() = default;
    // Gives them the name `path`, in place of a file that lies there; a folder there makes it fail. 0, or errno. Once
    // that has succeeded, another call does nothing.
    virtual int PlaceAt(const std::string& path) = 0;
};

class UrlSession : public Seam<UrlSession> {
public:
    using TransferId = uint64_t;
    using Completion = std::function<void(TransferId transfer, const UrlResult& result)>;

    // Told of a download, on the main thread. Calls that were on their way when the transfer was cancelled still come:
    // the delegate knows by the number which transfer it is waiting for.
    class DownloadDelegate {
    public:
        virtual ~DownloadDelegate() = default;
        // `expected` is the whole file's size in bytes, -1 if unknown.
        virtual void DidWriteData(TransferId transfer, long long totalWritten, long long expected) = 0;
        // The transfer goes on where a stopped one was; comes before the bytes of this one.
        virtual void DidResumeAtOffset(TransferId transfer, long long offset, long long expected) = 0;
        // The whole file is there; after the last DidWriteData. Placed during the call or lost.
        virtual void DidFinishDownloading(TransferId transfer, UrlDownloadedFile& file) = 0;
        // The end of every transfer, kUrlCancelled included.
        virtual void DidComplete(TransferId transfer, int error, const std::string& errorText) = 0;
    };

    // A transfer whose answer is collected in memory. `completion` is called once, cancelled or not.
    virtual TransferId MakeDataTransfer(UrlRequest request, Completion completion) = 0;

    // A download. `place` is the path that the file is meant for: its bytes are collected on the same file system.
    // `resumeData`, if not null, is what CancelProducingResumeData gave: the request is then that of the stopped one.
    virtual TransferId MakeDownload(UrlRequest request, const std::string& place,
                                    std::shared_ptr<UrlResumeData> resumeData,
                                    std::shared_ptr<DownloadDelegate> delegate) = 0;

    // Sends a transfer that was made, once.
    virtual void Resume(TransferId transfer) = 0;
    // Ends a transfer with kUrlCancelled. An unknown number, or that of a finished transfer, is ignored.
    virtual void Cancel(TransferId transfer) = 0;
    // Ends a download likewise and gives what a later one needs to go on; null for an unknown number. May be used at
    // once.
    virtual std::shared_ptr<UrlResumeData> CancelProducingResumeData(TransferId transfer) = 0;
};

template <>
std::shared_ptr<UrlSession> Seam<UrlSession>::MakeBuiltIn();

}  // namespace Quern

#endif
