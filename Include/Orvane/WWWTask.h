/// \file WWWTask.h
/// What every HTTP task has. Header-only, C++11.
#ifndef ORVANE_WWW_TASK_H
#define ORVANE_WWW_TASK_H

#include <cstdint>

namespace Quern {

/// How a request or a download ended. An HTTP status is no error: a page of status 404 or 500 arrives with
/// kWWWErrorNone.
enum WWWErrorCode : int32_t {
    kWWWErrorNone = 0,
    kWWWErrorOther = 1,     ///< what has no code of its own: refused, cancelled, TLS, no HTTP, a body that is too large
    kWWWErrorTimedOut = 2,  ///< 60 seconds without a byte sent or received; looking the name up and connecting count
    kWWWErrorCannotFindHost = 3,
    kWWWErrorUnsupportedURL = 4,  ///< neither http nor https, or without a host
    kWWWErrorConnectionLost = 5,
    kWWWErrorFile = 6  ///< a download's file cannot be written or put in place
};

/// The order of the virtual operations is a contract between libraries.
///
/// Thread rule for every task: it is used by one thread at a time, which may be a different one each time, but for what
/// its class says of its listener. A task does not survive `fork`: a child of the process calls `exec` first.
class WWWTask {
public:
    virtual ~WWWTask() {}

    /// Adds a header for each later request, or gives a known one a new value. Downloads send none of them. A null is
    /// ignored.
    ///
    /// Of names that differ in case alone, the one that comes last in the order of bytes goes out. What would break the
    /// message is left out, with one line on the console each: a name that is no token, a value with a line break, and
    /// the names Content-Length, Transfer-Encoding and Connection. Everything else goes out as it stands, Host too.
    virtual void SetHttpHeader(const char* key, const char* value) = 0;

    /// Sets the address of the next request. A null is ignored.
    virtual void SetUrl(const char* url) = 0;

    /// \return the address as it was set, never null; valid until SetUrl or the task's end
    virtual const char* GetUrl() = 0;

    /// Gives up what is in flight; see the derived class for what its listener hears. Does nothing for an idle task.
    virtual void Cancel() = 0;
};

}  // namespace Quern

#endif
