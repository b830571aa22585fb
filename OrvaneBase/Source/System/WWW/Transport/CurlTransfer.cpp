#include "System/WWW/Transport/CurlTransfer.h"

#include <curl/header.h>
#include <sys/socket.h>

#include <utility>

#include "System/WWW/Transport/CurlError.h"

namespace Quern {
namespace {

CurlTransfer& Self(void* self) {
    return *static_cast<CurlTransfer*>(self);
}

}  // namespace

CurlTransfer::CurlTransfer(CURL* easy, UrlSession::TransferId id, std::shared_ptr<TransferHandler> handler,
                           Clock::time_point begin, bool needsLookup, const CurlEnvironment& environment)
    : _easy(easy),
      _id(id),
      _handler(std::move(handler)),
      _request(_handler->Request()),
      _lastActivity(begin),
      _isLookingUp(needsLookup) {
    SetUp(environment);
    SetUpMethod();
    SetUpHeaders();
}

CurlTransfer::~CurlTransfer() {
    curl_slist_free_all(_headers);
}

CurlTransfer* CurlTransfer::Of(CURL* easy) {
    char* transfer = nullptr;
    curl_easy_getinfo(easy, CURLINFO_PRIVATE, &transfer);
    return reinterpret_cast<CurlTransfer*>(transfer);
}

void CurlTransfer::SetUp(const CurlEnvironment& environment) {
    constexpr long kLongestRedirectChain = 16;
    constexpr long kDownloadBuffer = 512 * 1024;  // in place of 16 KB: fewer reads and writes a byte
    const bool isDownload = _handler->IsDownload();
    const auto set = [this](CURLoption option, auto value) { curl_easy_setopt(_easy, option, value); };

    set(CURLOPT_PRIVATE, this);
    set(CURLOPT_URL, _request.url.c_str());
    set(CURLOPT_PROTOCOLS_STR, "http,https");
    set(CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    set(CURLOPT_FOLLOWLOCATION, 1L);
    set(CURLOPT_MAXREDIRS, kLongestRedirectChain);
    set(CURLOPT_USERAGENT, environment.options.userAgent.c_str());
    set(CURLOPT_ACCEPT_ENCODING, isDownload ? "identity" : "");  // "": all that libcurl decodes
    if (isDownload) set(CURLOPT_BUFFERSIZE, kDownloadBuffer);
    set(CURLOPT_NOPROXY, environment.noProxy.c_str());
    if (!environment.options.certificateFile.empty()) set(CURLOPT_CAINFO, environment.options.certificateFile.c_str());
    if (!environment.certificateFolder.empty()) set(CURLOPT_CAPATH, environment.certificateFolder.c_str());

    // Without it, ending a transfer whose name is being looked up waits for the name server.
    set(CURLOPT_QUICK_EXIT, 1L);
    set(CURLOPT_NOSIGNAL, 1L);
    // libcurl shares that time out among a host's addresses. By itself it would stay with one that is silent until the
    // idle clock ends the transfer.
    set(CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(environment.options.idleMilliseconds));
    set(CURLOPT_ERRORBUFFER, _errorText);
    set(CURLOPT_WRITEFUNCTION, &OnBody);
    set(CURLOPT_WRITEDATA, this);
    set(CURLOPT_HEADERFUNCTION, &OnHeader);
    set(CURLOPT_HEADERDATA, this);
    set(CURLOPT_RESOLVER_START_FUNCTION, &OnLookup);
    set(CURLOPT_RESOLVER_START_DATA, this);
    set(CURLOPT_OPENSOCKETFUNCTION, &OnOpenSocket);
    set(CURLOPT_OPENSOCKETDATA, this);
    set(CURLOPT_PREREQFUNCTION, &OnConnected);
    set(CURLOPT_PREREQDATA, this);
}

void CurlTransfer::SetUpMethod() {
    if (_request.method == "GET") return;
    // On a kept connection that turns out to be dead libcurl would send it a second time, which is not for it to
    // decide. Where it follows a redirect it takes a kept one all the same: so it has the body through OnRead and
    // OnSeek, which know a repetition when they see one.
    curl_easy_setopt(_easy, CURLOPT_FRESH_CONNECT, 1L);
    curl_easy_setopt(_easy, CURLOPT_POST, 1L);
    curl_easy_setopt(_easy, CURLOPT_POSTFIELDSIZE_LARGE, static_cast<curl_off_t>(_request.body.size()));
    curl_easy_setopt(_easy, CURLOPT_READFUNCTION, &OnRead);
    curl_easy_setopt(_easy, CURLOPT_READDATA, this);
    curl_easy_setopt(_easy, CURLOPT_SEEKFUNCTION, &OnSeek);
    curl_easy_setopt(_easy, CURLOPT_SEEKDATA, this);
    if (_request.method != "POST") curl_easy_setopt(_easy, CURLOPT_CUSTOMREQUEST, _request.method.c_str());
    constexpr long kUploadBuffer = 512 * 1024;  // in place of 64 KB: fewer writes a byte
    if (_request.body.size() > kUploadBuffer) curl_easy_setopt(_easy, CURLOPT_UPLOAD_BUFFERSIZE, kUploadBuffer);
    curl_easy_setopt(_easy, CURLOPT_NOPROGRESS, 0L);
    curl_easy_setopt(_easy, CURLOPT_XFERINFOFUNCTION, &OnCount);
    curl_easy_setopt(_easy, CURLOPT_XFERINFODATA, this);
}

void CurlTransfer::SetUpHeaders() {
    for (const UrlRequest::Header& header : _request.headers) {
        // To libcurl a name without a value removes the header, and a semicolon stands for an empty value.
        const bool isEmpty = header.value.find_first_not_of(" \t") == std::string::npos;
        AddHeader(isEmpty ? header.name + ";" : header.name + ": " + header.value);
    }
    // What libcurl adds by itself: waiting for leave to send a body, and a type for a body that is none.
    if (_request.method != "GET" && !_request.FindHeader("Expect")) AddHeader("Expect:");
    if (_request.method != "GET" && _request.body.empty() && !_request.FindHeader("Content-Type"))
        AddHeader("Content-Type:");
    if (_headers) curl_easy_setopt(_easy, CURLOPT_HTTPHEADER, _headers);
}

void CurlTransfer::AddHeader(const std::string& line) {
    if (curl_slist* const longer = curl_slist_append(_headers, line.c_str())) _headers = longer;
}

size_t CurlTransfer::OnHeader(char*, size_t size, size_t count, void* self) {
    Self(self)._lastActivity = Clock::now();
    Self(self)._isAnswered = true;
    return size * count;
}

size_t CurlTransfer::OnRead(char* out, size_t size, size_t count, void* self) {
    CurlTransfer& transfer = Self(self);
    if (transfer._bodyRead == 0) transfer._isAnswered = false;
    const size_t length = transfer._request.body.copy(out, size * count, transfer._bodyRead);
    transfer._bodyRead += length;
    return length;
}

// The body goes out again only to where an answer has sent it.
int CurlTransfer::OnSeek(void* self, curl_off_t offset, int origin) {
    CurlTransfer& transfer = Self(self);
    if (!transfer._isAnswered || offset != 0 || origin != SEEK_SET) return CURL_SEEKFUNC_FAIL;
    transfer._bodyRead = 0;
    return CURL_SEEKFUNC_OK;
}

// libcurl drops the bodies of answers that it goes on from: what comes here is of the final one.
size_t CurlTransfer::OnBody(char* data, size_t size, size_t count, void* self) {
    CurlTransfer& transfer = Self(self);
    transfer._lastActivity = Clock::now();
    if (!transfer.Begin()) return CURL_WRITEFUNC_ERROR;
    transfer._handlersError = transfer._handler->OnData(data, size * count);
    return transfer._handlersError == kUrlNoError ? size * count : CURL_WRITEFUNC_ERROR;
}

// Tells the handler of the answer, once. False if the handler does not want it.
bool CurlTransfer::Begin() {
    if (!std::exchange(_hasBegun, true)) _handlersError = _handler->OnResponse(*this);
    return _handlersError == kUrlNoError;
}

int CurlTransfer::OnCount(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t sent) {
    CurlTransfer& transfer = Self(self);
    if (std::exchange(transfer._sent, sent) != sent) transfer._lastActivity = Clock::now();
    return 0;
}

// A redirect's lookup waits for nobody, but counts like any other.
int CurlTransfer::OnLookup(void*, void*, void* self) {
    Self(self)._isLookingUp = true;
    return 0;
}

curl_socket_t CurlTransfer::OnOpenSocket(void* self, curlsocktype, curl_sockaddr* address) {
    Self(self)._isLookingUp = false;
    Self(self)._isConnecting = true;
    return socket(address->family, address->socktype | SOCK_CLOEXEC, address->protocol);
}

int CurlTransfer::OnConnected(void* self, char*, char*, int, int) {
    Self(self)._isLookingUp = false;
    Self(self)._isConnecting = false;
    return CURL_PREREQFUNC_OK;
}

int CurlTransfer::Status() const {
    long status = 0;
    curl_easy_getinfo(_easy, CURLINFO_RESPONSE_CODE, &status);
    return static_cast<int>(status);
}

long long CurlTransfer::ContentLength() const {
    curl_off_t length = -1;
    curl_easy_getinfo(_easy, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length);
    return length;
}

const char* CurlTransfer::Header(const char* name) const {
    constexpr int kLastRequest = -1;
    curl_header* header = nullptr;
    const CURLHcode result = curl_easy_header(_easy, name, 0, CURLH_HEADER, kLastRequest, &header);
    return result == CURLHE_OK ? header->value : nullptr;
}

TransferOutcome CurlTransfer::Outcome(CURLcode result, int error) {
    if (error == kUrlNoError && result == CURLE_OK) Begin();  // an answer without a body
    if (error == kUrlNoError) error = _handlersError;
    TransferOutcome outcome;
    outcome.error = error != kUrlNoError ? error : UrlErrorOf(result, _easy);
    if (outcome.error != kUrlNoError) {
        const char* const reason = _errorText[0] ? _errorText : curl_easy_strerror(result);
        outcome.errorText = std::to_string(outcome.error) + (result == CURLE_OK ? "" : std::string(" ") + reason);
    }
    outcome.status = Status();
    const char* url = nullptr;
    curl_easy_getinfo(_easy, CURLINFO_EFFECTIVE_URL, &url);
    if (url) outcome.url = url;

    const auto time = [this](CURLINFO what) -> long long {
        curl_off_t microseconds = 0;
        curl_easy_getinfo(_easy, what, &microseconds);
        return microseconds > 0 ? microseconds : -1;
    };
    outcome.times.nameLookup = time(CURLINFO_NAMELOOKUP_TIME_T);
    outcome.times.connect = time(CURLINFO_CONNECT_TIME_T);
    outcome.times.tls = time(CURLINFO_APPCONNECT_TIME_T);
    outcome.times.firstByte = time(CURLINFO_STARTTRANSFER_TIME_T);
    outcome.times.total = time(CURLINFO_TOTAL_TIME_T);
    return outcome;
}

}  // namespace Quern
