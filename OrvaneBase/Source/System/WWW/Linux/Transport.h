// Between the URL session and the private library liborvanetransport.so, which moves the bytes.
//
// The library is opened at the first request, so that a process that sends none does not carry what it brings. Both
// sides are of one build; kTransportInterface keeps a library that was left over from another one out.
//
// Thread rule: everything happens on the session's transport thread, but for Wake.
#ifndef ORVANE_SYSTEM_WWW_LINUX_TRANSPORT_H
#define ORVANE_SYSTEM_WWW_LINUX_TRANSPORT_H

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

#include "System/WWW/UrlRequest.h"
#include "System/WWW/UrlSession.h"

namespace Quern {

constexpr int kTransportInterface = 1;
constexpr char kTransportLibrary[] = "liborvanetransport.so";
constexpr char kTransportFactory[] = "orvane_transport_create";

struct TransportOptions {
    // A transfer ends as timed out after that long without a byte sent or received. Waiting for its turn, looking the
    // name up and connecting count.
    int idleMilliseconds = 60000;
    // A file of certificates in PEM to trust in place of the system's; "" for these, or those that $SSL_CERT_FILE and
    // $SSL_CERT_DIR name.
    std::string certificateFile;
    // Of a request that has no User-Agent of its own.
    std::string userAgent;
};

// The final answer's head: of redirects, only the last one's.
class ResponseHead {
public:
    virtual int Status() const = 0;
    // The body's length as the server says, -1 if it does not.
    virtual long long ContentLength() const = 0;
    // The first value of a header, null if there is none; valid for the call. The case of the name does not matter.
    virtual const char* Header(const char* name) const = 0;

protected:
    ~ResponseHead() = default;
};

struct TransferOutcome {
    int error = kUrlNoError;
    std::string errorText;
    int status = 0;
    std::string url;
    UrlTimes times;
};

// Who asked for a transfer.
class TransferHandler {
public:
    virtual ~TransferHandler() = default;

    // Called at each start; must stay as it is until the end.
    virtual const UrlRequest& Request() = 0;
    // Whether the body is to come in large pieces and, if the server agrees, as it stands, without compression.
    virtual bool IsDownload() const = 0;

    // Called once an answer, before its first byte. 0, or the code that the transfer is to end with.
    virtual int OnResponse(const ResponseHead& head) = 0;
    // 0, or the code that the transfer is to end with.
    virtual int OnData(const char* data, size_t length) = 0;
    // The end. True asks for another start, with what Request gives then.
    virtual bool OnFinished(const TransferOutcome& outcome) = 0;
};

class Transport {
public:
    virtual ~Transport() = default;

    // Begins a transfer now, or when its turn comes.
    virtual void Start(UrlSession::TransferId transfer, std::shared_ptr<TransferHandler> handler) = 0;
    // Ends one with kUrlCancelled, at once. An unknown number is ignored.
    virtual void Cancel(UrlSession::TransferId transfer) = 0;
    // Does what is due, then waits until something happens or Wake.
    virtual void Step() = 0;
    // Ends Step's wait, the present or the next one. Any thread.
    virtual void Wake() = 0;
};

// The library's one symbol, kTransportFactory. Null if the interface is another one or the library cannot work.
using TransportFactory = Transport* (*)(int interface, const TransportOptions& options);

// Opens the library and makes a transport. If that fails, says so on the console and makes one whose transfers all end
// with kUrlUnknown. Never null.
std::unique_ptr<Transport> OpenTransport(const TransportOptions& options);
// One whose transfers all end with kUrlUnknown and that text.
std::unique_ptr<Transport> NoTransport(std::string reason);

}  // namespace Quern

#endif
