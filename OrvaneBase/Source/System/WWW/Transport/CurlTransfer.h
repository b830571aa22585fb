// One transfer on one of libcurl's handles.
#ifndef ORVANE_SYSTEM_WWW_TRANSPORT_CURL_TRANSFER_H
#define ORVANE_SYSTEM_WWW_TRANSPORT_CURL_TRANSFER_H

#include <curl/curl.h>

#include <chrono>
#include <memory>

#include "System/WWW/Linux/Transport.h"

namespace Quern {

// What is the same for all transfers of a transport.
struct CurlEnvironment {
    TransportOptions options;
    std::string noProxy;  // hosts that are reached without a proxy
    std::string certificateFolder;
};

// All of it runs on the transport thread. libcurl calls back into it while it performs, so it stays where it was made.
class CurlTransfer final : public ResponseHead {
public:
    using Clock = std::chrono::steady_clock;

    // `easy` is the caller's, and fresh or reset. `begin`: when it was asked for, which the idle clock counts from.
    CurlTransfer(CURL* easy, UrlSession::TransferId id, std::shared_ptr<TransferHandler> handler,
                 Clock::time_point begin, bool needsLookup, const CurlEnvironment& environment);
    ~CurlTransfer();
    CurlTransfer(const CurlTransfer&) = delete;
    CurlTransfer& operator=(const CurlTransfer&) = delete;

    // The transfer that the handle works for; null for a handle without one.
    static CurlTransfer* Of(CURL* easy);

    CURL* Easy() const { return _easy; }
    UrlSession::TransferId Id() const { return _id; }
    const std::shared_ptr<TransferHandler>& Handler() const { return _handler; }
    // When a byte last went either way, or the transfer began.
    Clock::time_point LastActivity() const { return _lastActivity; }
    // Whether a name, its own or a redirect's, may still be looked up.
    bool IsLookingUp() const { return _isLookingUp; }

    // Whether a connection is being made.
    bool IsConnecting() const { return _isConnecting; }

    // How it ended, off the handle. `error` in place of libcurl's result where it is not 0.
    TransferOutcome Outcome(CURLcode result, int error = kUrlNoError);

private:
    // Set the handle's options: all that is common, the method with its body, and the headers.
    void SetUp(const CurlEnvironment& environment);
    void SetUpMethod();
    void SetUpHeaders();
    void AddHeader(const std::string& line);
    bool Begin();

    // libcurl's callbacks. Each finds its transfer in `self`.
    static size_t OnHeader(char* data, size_t size, size_t count, void* self);
    static size_t OnRead(char* out, size_t size, size_t count, void* self);
    static int OnSeek(void* self, curl_off_t offset, int origin);
    static size_t OnBody(char* data, size_t size, size_t count, void* self);
    static int OnCount(void* self, curl_off_t, curl_off_t, curl_off_t, curl_off_t sent);
    static int OnLookup(void*, void*, void* self);
    static curl_socket_t OnOpenSocket(void* self, curlsocktype purpose, curl_sockaddr* address);
    static int OnConnected(void* self, char*, char*, int, int);

    int Status() const override;
    long long ContentLength() const override;
    const char* Header(const char* name) const override;

    CURL* const _easy;
    const UrlSession::TransferId _id;
    const std::shared_ptr<TransferHandler> _handler;
    const UrlRequest& _request;             // the handler's
    curl_slist* _headers = nullptr;         // owned; libcurl reads it as long as the transfer lasts
    char _errorText[CURL_ERROR_SIZE] = "";  // libcurl's words for what went wrong
    Clock::time_point _lastActivity;
    curl_off_t _sent = 0;      // bytes of the body that the socket has taken
    size_t _bodyRead = 0;      // bytes of the request's body that libcurl has taken
    bool _isAnswered = false;  // a header has come since it took the first of them
    bool _isLookingUp;
    bool _isConnecting = false;
    bool _hasBegun = false;            // the handler has been told of the answer
    int _handlersError = kUrlNoError;  // the code with which the handler has ended it
};

}  // namespace Quern

#endif
