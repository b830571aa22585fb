/// \file DataTask.h
/// An HTTP request whose answer is held in memory. Made by gs_OrvaneRequest (Orvane/WWW.h). Header-only, C++11.
#ifndef ORVANE_DATA_TASK_H
#define ORVANE_DATA_TASK_H

#include "Orvane/WWWTask.h"

namespace Quern {

/// One request at a time; usable again when the listener's call has returned, with SetUrl before each request where the
/// address changes. Redirects are followed, certificates are checked, compressed bodies are decoded. There are no
/// cookies and there is no cache. Proxies are those of the process's environment, never for loopback addresses.
///
/// The order of the virtual operations is a contract between libraries. Their results come through the listener alone;
/// a request that is refused is told in the log and nowhere else.
class DataTask : virtual public WWWTask {
public:
    /// Owned by the caller, and to be removed, or its task destroyed, before it goes.
    class Listener {
    public:
        /// A request has ended. Called once for each request that was taken, on a thread of the library's own, under a
        /// lock of the whole process: while it runs every other completion waits, and so does who destroys a task, but
        /// transfers go on and new ones begin. So it is brief.
        ///
        /// Inside the call the listener may make, start and cancel data tasks, this one included, and destroy others;
        /// Get and Post of this one are refused until the call has returned. It may make a download and start it. It
        /// must not destroy its own task, must not wait for the main thread, and must not destroy, cancel or pause a
        /// download that is under way, nor change its listener: the main thread may be inside that download's listener
        /// and wait for this one.
        /// \param task the task that was asked
        /// \param httpStatus the answer's status; 0 if none came
        /// \param data the body, valid for this call only, not terminated; null after an error and for an empty body
        /// \param length of the body in bytes, 256 MiB at most: a larger one ends as kWWWErrorOther
        virtual void OnDataTaskFinished(DataTask* task, WWWErrorCode error, int httpStatus, const char* data,
                                        long long length) = 0;

    protected:
        ~Listener() = default;
    };

    /// The owner destroys a task by gs_OrvaneDestroy, on any thread. With a request in flight this waits for a
    /// listener's call that is under way, and no call comes after it.
    ~DataTask() override {}

    /// Sends a GET. Refused, with a line in the log, while a request is in flight, and for an address that is empty or
    /// does not follow RFC 3986. An address of another scheme, or without a host, ends as kWWWErrorUnsupportedURL.
    virtual void Get() = 0;

    /// Sends a POST, by the rules of Get, always over a connection of its own: it arrives at most once.
    /// \param body copied; null makes it a GET
    /// \param length in bytes; below 1 makes it a GET
    virtual void Post(const char* body, int length) = 0;

    /// Sets who is told, null for nobody. Waits for a call to the present one that is under way: afterwards the task
    /// is ready for its next request.
    virtual void SetListener(DataTask::Listener* listener) = 0;

    /// Tells nobody any more, whatever the argument. Waits likewise.
    virtual void RemoveListener(DataTask::Listener* listener) = 0;
};

}  // namespace Quern

#endif
