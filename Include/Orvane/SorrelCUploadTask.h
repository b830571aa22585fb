/// \file SorrelCUploadTask.h
/// The upload of one file in parts, which a server drives. Made by gs_OrvaneGetSorrelUploadTask (Orvane/WWW.h).
/// Header-only, C++11.
///
/// One PUT announces the file; its answer names an address and a position. Then POSTs carry one part each, from the
/// position that the server named last, until that reaches the file's size: so an upload that is begun again goes on
/// where the server stands. Docs/DevServer.md has both requests and their answers.
#ifndef ORVANE_SORREL_C_UPLOAD_TASK_H
#define ORVANE_SORREL_C_UPLOAD_TASK_H

/// One upload, once. The order of the virtual operations is a contract between libraries.
///
/// The caller owns the task and deletes it, after its end: inside OnFinished, or later. Nothing can cancel an upload,
/// so a task that goes before is used after its end.
///
/// Thread rule: used by one thread until Upload; from then on only its listener, and whoever that tells, may use it.
class SorrelCUploadTask {
public:
    /// Owned by the caller, and to be kept until it has been called.
    class Listener {
    public:
        /// The upload has ended. Called once, on the thread of the URL session's completions, with no lock held. While
        /// it runs other HTTP completions wait, so it is brief. It may delete the task.
        ///
        /// There is one upload of which nobody hears: one whose id is no UTF-8 text, which no request can carry. The
        /// console says so.
        /// \param task the task that was asked
        /// \param result 0: the whole file is on the server. 1: the server refused the file with a positive "ret".
        ///        2: the file could not be announced (no answer, another HTTP status than 200, an answer that cannot be
        ///        read, a negative "ret"). 3: a part failed four times in a row.
        virtual void OnFinished(SorrelCUploadTask* task, int result) = 0;

    protected:
        ~Listener() = default;  // not virtual: the table holds the one operation alone
    };

    virtual ~SorrelCUploadTask() {}

    /// Begins the upload and returns at once; the file is read on other threads (but where the system has no thread
    /// left: then its digest is taken before the call returns). A null text counts as empty. What may
    /// be wrong with the file or the address shows in the result; a file that is not there, and a link, is announced
    /// all the same, as one of 0 bytes with an empty digest.
    /// \param uploadId names the upload to the server; UTF-8, copied
    /// \param filePath of a file that stays as it is until the end; its last component is told to the server; copied
    /// \param partSize bytes a part, of which the low 32 bits count, signed; below 1 every part is empty. Each part is
    ///        held in memory whole.
    /// \param uploadUrl the server's address, without a path or a slash behind it; copied
    virtual void Upload(const char* uploadId, const char* filePath, long long partSize, const char* uploadUrl) = 0;

    /// \return the id and the path that Upload was given, empty before; never null, valid as long as the task
    virtual const char* GetUploadid() = 0;
    virtual const char* GetUploadFilePath() = 0;

    /// Sets the text that the announcement carries as "com_params".
    /// REQUIRES: not after Upload.
    /// \param info UTF-8, copied; null counts as empty
    virtual void SetCredentialInfo(const char* info) = 0;

    /// Sets who is told of the end; null for nobody, which the log remarks on at the end.
    /// REQUIRES: not after Upload.
    virtual void SetListener(SorrelCUploadTask::Listener* listener) = 0;
};

#endif
