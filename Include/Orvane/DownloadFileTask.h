/// \file DownloadFileTask.h
/// A download to a file that can be paused. Made by gs_OrvaneDownloadFile (Orvane/WWW.h). Header-only, C++11.
#ifndef ORVANE_DOWNLOAD_FILE_TASK_H
#define ORVANE_DOWNLOAD_FILE_TASK_H

#include "Orvane/WWWTask.h"

namespace Quern {

/// The file appears under its path when it is whole, in place of what lay there; until then its bytes have no name, so
/// that a process that is killed leaves nothing behind (on file systems without unnamed files, and without /proc: a
/// hidden one beside it). A pause keeps them, and the server's validators with them: a file that has changed on the
/// server meanwhile, or that has no validator, is fetched from its start rather than made of two halves.
///
/// The order of the virtual operations is a contract between libraries. The headers of SetHttpHeader are not sent.
class DownloadFileTask : virtual public WWWTask {
public:
    /// Called on the main thread, from the main run loop (Orvane/MainRunLoop.h). Owned by the caller, and to be
    /// removed, or its task destroyed, before it goes. A call may set headers and listeners, start, pause and cancel
    /// any task, and make new ones; it must destroy none (post that to the main run loop).
    class Listener {
    public:
        /// The first bytes have come. Once from a Resume to the finish or Cancel, pauses in between included.
        /// \param totalSize the file's size in bytes; -1 if the server does not say
        virtual void OnDownloadBegin(DownloadFileTask* task, long long totalSize) = 0;

        /// More bytes have come: at most 60 calls a second, the last of them with all bytes and before the finish.
        /// After a pause the count goes on from where it was, or begins anew where the file had to.
        /// \param written bytes received of the file so far
        /// \param totalSize as above, of this very transfer
        virtual void OnDownloadProgress(DownloadFileTask* task, long long written, long long totalSize) = 0;

        /// The download has ended. Not called after Pause and Cancel.
        /// \param error kWWWErrorNone if the file is in place, whatever the status: the page of a 404 is a file too
        /// \param totalSize as OnDownloadBegin told it; 0 if no byte came
        virtual void OnDownloadFinished(DownloadFileTask* task, WWWErrorCode error, long long totalSize) = 0;

    protected:
        ~Listener() = default;
    };

    /// The owner destroys a task by gs_OrvaneDestroy, on any thread but inside no listener. It waits for a call that is
    /// under way, gives up what is in flight, and no call comes after it.
    ~DownloadFileTask() override {}

    /// Stops and keeps what has come; Resume goes on from there. Nothing is told. On the main thread no call comes
    /// after this has returned.
    virtual void Pause() = 0;

    /// Starts, or goes on after a pause, with the address of the start: SetUrl in between has no effect. Ignored, with
    /// a line in the log, while the download is running. Cancel drops what has come, nothing is told, and a new Resume
    /// begins at the start; it waits for a listener's call of this task that is under way on another thread.
    virtual void Resume() = 0;

    /// Sets who is told, null for nobody. Waits for a call that is under way on another thread.
    virtual void SetListener(DownloadFileTask::Listener* listener) = 0;

    /// Tells nobody any more, whatever the argument. Waits likewise.
    virtual void RemoveListener(DownloadFileTask::Listener* listener) = 0;

    /// \return the path that was given, never null; valid until the task's end
    virtual const char* GetLocalFilePath() = 0;
};

}  // namespace Quern

#endif
