#include "System/WWW/Linux/DownloadTransfer.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "System/WWW/ContentRange.h"

namespace Quern {
namespace {

constexpr int kOk = 200;
constexpr int kPartialContent = 206;
constexpr int kRangeNotSatisfiable = 416;

std::string Text(const char* header) {
    return header ? header : "";
}

// Whether the body is stored as the server keeps it, so that offsets in the file are offsets of its ranges.
bool IsIdentity(const ResponseHead& head) {
    const char* const coding = head.Header("Content-Encoding");
    return !coding || strcmp(coding, "identity") == 0;
}

}  // namespace

std::string PartialDownload::Validator() const {
    return entityTag.empty() || entityTag.rfind("W/", 0) == 0 ? lastModified : entityTag;
}

// A pause that comes while the file is being placed may have its end told a second time.
int PartialDownload::PlaceAt(const std::string& path) {
    if (isPlaced) return 0;
    if (unlink(path.c_str()) != 0 && errno != ENOENT) return errno;
    const int error = file.PlaceAt(path);
    isPlaced = error == 0;
    return error;
}

DownloadTransfer::DownloadTransfer(std::shared_ptr<PartialDownload> partial, std::shared_ptr<DownloadChannel> channel)
    : _partial(std::move(partial)), _channel(std::move(channel)), _request(_partial->url) {}

bool DownloadTransfer::Begin() {
    if (_partial->isWhole) {
        if (_partial->written > 0) _channel->TellProgress(_partial->written, _partial->total);
        _channel->TellFinished(_partial);
        return false;
    }
    if (!_partial->file.IsOpen()) {
        const int error = _partial->file.Open(_partial->place);
        if (error != 0) {
            _channel->TellFailed(kUrlCannotCreateFile, strerror(error));
            return false;
        }
    }
    if (_partial->written > 0 && !_partial->Validator().empty()) AskForRest();
    return true;
}

void DownloadTransfer::AskForRest() {
    _isRest = true;
    _request.headers = {{"Range", "bytes=" + std::to_string(_partial->written) + "-"},
                        {"If-Range", _partial->Validator()}};
}

int DownloadTransfer::StartOver() {
    _isStartOver = true;
    return kUrlCannotParseResponse;  // ends this transfer; OnFinished starts the next one
}

int DownloadTransfer::OnResponse(const ResponseHead& head) {
    if (_isRest && head.Status() == kPartialContent) return TakeRest(head);
    if (_isRest && head.Status() == kRangeNotSatisfiable) return StartOver();
    return TakeWhole(head);
}

int DownloadTransfer::TakeRest(const ResponseHead& head) {
    ContentRange range;
    const std::string entityTag = Text(head.Header("ETag"));
    const std::string lastModified = Text(head.Header("Last-Modified"));
    const bool isOfSameContent =
        (entityTag.empty() || entityTag == _partial->entityTag) &&
        (lastModified.empty() || _partial->lastModified.empty() || lastModified == _partial->lastModified);
    if (!ParseContentRange(Text(head.Header("Content-Range")), range) || range.first != _partial->written ||
        (range.total >= 0 && _partial->total >= 0 && range.total != _partial->total) || !isOfSameContent ||
        !IsIdentity(head))
        return StartOver();
    if (range.total >= 0) _partial->total = range.total;
    _channel->TellResumed(_partial->written, _partial->total);
    return kUrlNoError;
}

int DownloadTransfer::TakeWhole(const ResponseHead& head) {
    ContentRange range;
    // A part that nobody asked for is no file.
    if (head.Status() == kPartialContent && ParseContentRange(Text(head.Header("Content-Range")), range) &&
        (range.first != 0 || range.last < range.total - 1))
        return kUrlCannotParseResponse;
    if (_partial->file.Clear() != 0) return kUrlCannotWriteToFile;
    _partial->written = 0;
    _partial->total = IsIdentity(head) ? head.ContentLength() : -1;
    // An error's page is stored like a file, and not gone on with.
    const bool canGoOn = head.Status() == kOk && IsIdentity(head);
    _partial->entityTag = canGoOn ? Text(head.Header("ETag")) : "";
    // Within the second of its change a file may change again under the same date (RFC 9110, 8.8.2.2).
    const std::string lastModified = canGoOn ? Text(head.Header("Last-Modified")) : "";
    const char* const date = head.Header("Date");
    _partial->lastModified = date && lastModified != date ? lastModified : "";
    return kUrlNoError;
}

int DownloadTransfer::OnData(const char* data, size_t length) {
    const int error = _partial->file.Append(data, length);
    _partial->written = _partial->file.Length();
    if (error != 0) return kUrlCannotWriteToFile;
    _channel->TellProgress(_partial->written, _partial->total);
    return kUrlNoError;
}

bool DownloadTransfer::OnFinished(const TransferOutcome& outcome) {
    const int writeError = _partial->file.IsOpen() ? _partial->file.Flush() : 0;
    _partial->written = _partial->file.Length();
    if (std::exchange(_isStartOver, false) && outcome.error != kUrlCancelled) {
        _isRest = false;
        _request.headers.clear();
        return true;
    }
    if (outcome.error != kUrlNoError) {
        _channel->TellFailed(outcome.error, outcome.errorText);
    } else if (writeError != 0) {
        _channel->TellFailed(kUrlCannotWriteToFile, strerror(writeError));
    } else if (_partial->total >= 0 && _partial->written != _partial->total) {
        _channel->TellFailed(kUrlNetworkConnectionLost, "the server sent less than the file");
    } else {
        _partial->isWhole = true;
        _channel->TellFinished(_partial);
    }
    return false;
}

}  // namespace Quern
