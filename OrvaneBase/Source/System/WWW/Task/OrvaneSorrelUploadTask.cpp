#include "System/WWW/Task/OrvaneSorrelUploadTask.h"

#include <fcntl.h>
#include <pthread.h>
#include <signal.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <new>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include "Base/ConsoleSink.h"
#include "Serializer/Codec/Sha1.h"
#include "Storage/Bundle/InfoDictionary.h"
#include "System/Thread/ThreadName.h"
#include "System/WWW/Task/SorrelUploadAnswer.h"
#include "System/WWW/Task/SorrelUploadProtocol.h"
#include "System/WWW/Task/SorrelUploadTaskBridge.h"

using Quern::PlatformLog;
using Quern::Sha1;
using Quern::UrlResult;
using Quern::UrlSession;

namespace {

constexpr int kRetries = 3;  // of a part, behind its first attempt
constexpr int kHttpOk = 200;

// A regular file that is open for reading, or none. A pipe or a device would never end, and a link may lead to what
// nobody meant to send.
class InputFile {
public:
    explicit InputFile(const std::string& path)
        : _descriptor(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY)) {
        struct stat status;
        if (_descriptor < 0) return;
        if (fstat(_descriptor, &status) == 0 && S_ISREG(status.st_mode)) {
            _size = status.st_size;
        } else {
            close(_descriptor);
            _descriptor = -1;
        }
    }
    ~InputFile() {
        if (_descriptor >= 0) close(_descriptor);
    }
    InputFile(const InputFile&) = delete;
    InputFile& operator=(const InputFile&) = delete;

    bool IsOpen() const { return _descriptor >= 0; }
    long long Size() const { return _size; }
    // As many bytes as there are, up to `length`, from a position on. An error counts as the file's end.
    size_t Read(char* out, size_t length, long long position) const {
        size_t count = 0;
        while (count < length) {
            const ssize_t got =
                pread(_descriptor, out + count, length - count, position + static_cast<long long>(count));
            if (got < 0 && errno == EINTR) continue;
            if (got <= 0) break;
            count += static_cast<size_t>(got);
        }
        return count;
    }

private:
    int _descriptor;
    long long _size = 0;
};

std::string Digest(const std::string& path, long long position, long long length) {
    constexpr long long kPiece = 256 * 1024;
    const InputFile file(path);
    if (!file.IsOpen()) return {};
    Sha1 digest;
    std::vector<char> piece(static_cast<size_t>(std::clamp(file.Size(), 1LL, kPiece)));
    while (length > 0) {
        const auto wanted = static_cast<size_t>(std::min(length, static_cast<long long>(piece.size())));
        const size_t got = file.Read(piece.data(), wanted, position);
        digest.Update(piece.data(), got);
        if (got < wanted) break;
        position += static_cast<long long>(got);
        length -= static_cast<long long>(got);
    }
    return digest.HexDigest();
}

std::string LastPathComponent(const std::string& path) {
    const size_t end = path.find_last_not_of('/');
    if (end == std::string::npos) return path.empty() ? "" : "/";
    const size_t slash = path.rfind('/', end);
    return path.substr(slash == std::string::npos ? 0 : slash + 1,
                       end - (slash == std::string::npos ? 0 : slash + 1) + 1);
}

// The platform's short form of a block of bytes.
std::string Describe(const std::string& data) {
    constexpr size_t kShown = 24;
    if (data.empty()) return "(null)";
    static const char kDigits[] = "0123456789abcdef";
    std::string text = "{length = " + std::to_string(data.size()) + ", bytes = 0x";
    for (size_t i = 0; i < std::min(data.size(), kShown); ++i) {
        const auto byte = static_cast<unsigned char>(data[i]);
        (text += kDigits[byte >> 4]) += kDigits[byte & 0x0F];
    }
    return text + (data.size() > kShown ? " ... }" : "}");
}

void LogCompletion(const UrlResult& result) {
    PlatformLog("completed error:%s, response:%s, data %s", result.error ? result.errorText.c_str() : "(null)",
                result.status ? (std::to_string(result.status) + " " + result.url).c_str() : "(null)",
                Describe(result.body).c_str());
}

// Sends a request whose end is told on the session's thread.
template <typename Completed>
void Send(Quern::UrlRequest request, Completed completed) {
    UrlSession& session = UrlSession::Current();
    session.Resume(session.MakeDataTransfer(
        std::move(request), [completed](UrlSession::TransferId, const UrlResult& result) { completed(result); }));
}

}  // namespace

void OrvaneSorrelUploadTask::upload_withFilePath_withPartSize_uploadUrl(const std::string& uploadId,
                                                                        const std::string& filePath, long long partSize,
                                                                        const std::string& uploadUrl) {
    _uploadid = uploadId;
    _filePath = filePath;
    _partSize = static_cast<int32_t>(partSize);
    _uploadUrl = uploadUrl;
    // With every signal blocked: the host's handlers run on the host's threads.
    sigset_t all, before;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before);
    bool hasThread = true;
    try {
        std::thread([self = shared_from_this()] {
            Quern::set_thread_name("SorrelUpload");
            self->uploadInner();
        }).detach();
    } catch (const std::exception&) {  // the system gives no thread, or there is no memory
        hasThread = false;
    }
    pthread_sigmask(SIG_SETMASK, &before, nullptr);
    if (!hasThread) uploadInner();  // late rather than never
}

void OrvaneSorrelUploadTask::uploadInner() {
    prepareFile_withFilePath_withPartSize(_uploadid, _filePath, _partSize);
}

void OrvaneSorrelUploadTask::prepareFile_withFilePath_withPartSize(const std::string& uploadId,
                                                                   const std::string& filePath, int32_t) {
    const long long totalSize = fileSizeAtPath(filePath);
    const std::string totalSha1 = fileToSHA1(filePath);
    std::string bizParams, error;
    if (!SorrelUploadProtocol::WriteBizParams(uploadId, totalSize, totalSha1, bizParams, error)) {
        PlatformLog("get json error %s", error.c_str());
        return;  // the listener hears nothing
    }
    Quern::UrlRequest request(SorrelUploadProtocol::PrepareUrl(_uploadUrl, _comParams, bizParams));
    request.method = "PUT";
    PlatformLog("preparefiel url is %s", request.url.c_str());
    Send(std::move(request),
         [self = shared_from_this()](const UrlResult& result) { self->Deliver(self->Prepared(result)); });
}

OrvaneSorrelUploadTask::Result OrvaneSorrelUploadTask::Prepared(const UrlResult& result) {
    LogCompletion(result);
    SorrelUploadAnswer answer;
    std::string error;
    if (result.error != Quern::kUrlNoError) {
        PlatformLog("preparefile error code%ld, err%s", static_cast<long>(result.error), result.errorText.c_str());
    } else if (result.status != kHttpOk) {
        PlatformLog("preparefile http error code %d", result.status);
    } else if (result.body.empty()) {
        PlatformLog("preparefile data is nill");
    } else if (!answer.Read(result.body, error)) {
        PlatformLog("preparefile decodejson err ret err %s", error.c_str());
    } else if (answer.ret != 0) {
        PlatformLog("preparefile server errer ret %d, err %s", answer.ret, "(null)");  // never the server's text
        return answer.ret > 0 ? kRefused : kPrepareFailed;
    } else {
        uploadPart_withStartPos_withRetry(answer.uploadUrl, answer.nextPos, kRetries);
        return kStillRunning;
    }
    return kPrepareFailed;
}

void OrvaneSorrelUploadTask::uploadPart_withStartPos_withRetry(const std::string& url, long long startPos, int retry) {
    PlatformLog("url is %s, startPos is %lld, retryCount %d", url.c_str(), startPos, retry);
    const long long total = fileSizeAtPath(_filePath);
    std::string body;
    if (!BuildPart(startPos, total, body))  // no memory is a failed attempt
        return retry >= 1 ? uploadPart_withStartPos_withRetry(url, startPos, retry - 1) : Deliver(kPartFailed);
    Send(SorrelUploadProtocol::PartBody::Request(url, std::move(body)),
         [self = shared_from_this(), url, startPos, retry, total](const UrlResult& result) {
             const Result outcome = self->Sent(result, total);
             if (outcome == kPartFailed && retry >= 1)
                 self->uploadPart_withStartPos_withRetry(url, startPos, retry - 1);
             else
                 self->Deliver(outcome);
         });
}

// The digest is of the very bytes that go out, even if the file changes meanwhile.
bool OrvaneSorrelUploadTask::BuildPart(long long startPos, long long total, std::string& body) const {
    const long long room = std::clamp(total - startPos, 0LL, std::max<long long>(_partSize, 0));
    try {
        SorrelUploadProtocol::PartBody part(LastPathComponent(_filePath), static_cast<size_t>(room));
        const InputFile file(_filePath);
        size_t length = 0;
        std::string digest;
        if (file.IsOpen()) {
            length = file.Read(part.Part(), static_cast<size_t>(room), startPos);
            Sha1 sha1;
            sha1.Update(part.Part(), length);
            digest = sha1.HexDigest();
        }
        body = std::move(part).Finish(length, digest);
        return true;
    } catch (const std::bad_alloc&) {
        PlatformLog("no memory for a part of %lld bytes", room);
        return false;
    }
}

OrvaneSorrelUploadTask::Result OrvaneSorrelUploadTask::Sent(const UrlResult& result, long long total) {
    LogCompletion(result);
    SorrelUploadAnswer answer;
    std::string error;
    if (result.error != Quern::kUrlNoError) {
        PlatformLog("uploadPart error code%ld, err%s", static_cast<long>(result.error), result.errorText.c_str());
    } else if (result.status != kHttpOk) {
        PlatformLog("uploadPart http error code %d", result.status);
    } else if (result.body.empty()) {
        PlatformLog("uploadPart data is nill");
    } else if (!answer.Read(result.body, error)) {
        PlatformLog("uploadPart decodejson err ret err %s", error.c_str());
    } else if (answer.ret != 0) {
        PlatformLog("uploadPart server err ret %d, err %s", answer.ret, answer.err.c_str());
    } else if (answer.nextPos >= total) {
        PlatformLog("upload file success!");
        return kDone;
    } else {
        uploadPart_withStartPos_withRetry(answer.uploadUrl, answer.nextPos, kRetries);
        return kStillRunning;
    }
    return kPartFailed;
}

void OrvaneSorrelUploadTask::Deliver(Result result) {
    if (result != kStillRunning) _delegate->onFinished(result);
}

std::string OrvaneSorrelUploadTask::fileToSHA1(const std::string& path) {
    return Digest(path, 0, INT64_MAX);
}

std::string OrvaneSorrelUploadTask::filePartToSHA1_withStartPos_withPartSize(const std::string& path,
                                                                             long long startPos, int32_t partSize) {
    return Digest(path, startPos, partSize);
}

long long OrvaneSorrelUploadTask::fileSizeAtPath(const std::string& path) {
    struct stat status;
    return lstat(path.c_str(), &status) == 0 && S_ISREG(status.st_mode) ? status.st_size : 0;
}

std::string OrvaneSorrelUploadTask::getPlistString_andKey_withdefault(const char* section, const char* key,
                                                                      const char* defaultValue) {
    const std::string fallback = defaultValue ? defaultValue : "";
    if (!section || !key) return fallback;
    const Quern::InfoValue* const found = Quern::InfoDictionary::Current().Root().Find(section);
    if (!found) {
        PlatformLog("SolidConfigReader::GetString section:%s not exist, return defaultvalue", section);
        return fallback;
    }
    if (!found->IsDictionary()) {
        PlatformLog(
            "SolidConfigReader::GetString section:%s is not a Dictionary, return defaultvalue, please Check "
            "info.plist!",
            section);
        return fallback;
    }
    const Quern::InfoValue* const value = found->Find(key);
    return value && value->Text() ? *value->Text() : fallback;
}
