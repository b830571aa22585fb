// Listeners that keep what they hear, for tests of the HTTP tasks.
#ifndef ORVANE_TESTS_SYSTEM_WWW_HEARD_ANSWERS_H
#define ORVANE_TESTS_SYSTEM_WWW_HEARD_ANSWERS_H

#include "Orvane/DataTask.h"
#include "Orvane/DownloadFileTask.h"
#include "Support/Test.h"
#include "System/Application/MainRunLoop.h"
#include "System/WWW/Linux/LinuxUrlSession.h"
#include "System/WWW/Task/WWW.h"

namespace OrvaneTest {

// Puts a session with that idle clock in force.
inline void UseSession(int idleMilliseconds, const std::string& certificateFile = "") {
    Quern::TransportOptions options;
    options.idleMilliseconds = idleMilliseconds;
    options.certificateFile = certificateFile;
    Quern::UrlSession::Use(std::make_shared<Quern::LinuxUrlSession>(options));
}

// How many tasks a test destroys in flight; the full count by ORVANE_DESTROY_CYCLES.
inline int DestroyCycles() {
    const char* const cycles = getenv("ORVANE_DESTROY_CYCLES");
    return cycles ? atoi(cycles) : 2000;
}

// An answer is one text here: the error, the status and the body, with "(no data)" in the place of one that there is
// not.
inline std::string Failed(Quern::WWWErrorCode error, int status = 0) {
    return std::to_string(error) + " " + std::to_string(status) + " (no data)";
}

class HeardAnswers final : public Quern::DataTask::Listener {
public:
    void OnDataTaskFinished(Quern::DataTask* task, Quern::WWWErrorCode error, int status, const char* data,
                            long long length) override {
        if (onAnswer) onAnswer(task);
        const std::string body = data ? std::string(data, static_cast<size_t>(length)) : "(no data)";
        const std::lock_guard guard(_mutex);
        _answers.push_back(std::to_string(error) + " " + std::to_string(status) + " " + body);
    }
    size_t Count() const {
        const std::lock_guard guard(_mutex);
        return _answers.size();
    }
    // Waits until there are that many, and gives the last of them.
    std::string Wait(size_t count = 1) const {
        if (!WaitFor([&] { return Count() >= count; })) return "no answer";
        const std::lock_guard guard(_mutex);
        return _answers[count - 1];
    }
    std::function<void(Quern::DataTask*)> onAnswer;  // inside the call

private:
    mutable std::mutex _mutex;
    std::vector<std::string> _answers;
};

// A task that is under way.
inline Quern::DataTask* Begin(const std::string& url, Quern::DataTask::Listener* listener = nullptr) {
    Quern::DataTask* const task = Quern::WWW::Request(url.c_str());
    if (listener) task->SetListener(listener);
    task->Get();
    return task;
}

// On the main thread, which Run lets work until a condition holds.
class HeardDownload final : public Quern::DownloadFileTask::Listener {
public:
    void OnDownloadBegin(Quern::DownloadFileTask*, long long totalSize) override {
        events += "begin " + std::to_string(totalSize) + " ";
    }
    void OnDownloadProgress(Quern::DownloadFileTask* task, long long bytes, long long totalSize) override {
        isOrderly = isOrderly && !events.empty() && (totalSize < 0 || bytes <= totalSize);
        written = bytes;
        ++progresses;
        if (onProgress) onProgress(task);
    }
    void OnDownloadFinished(Quern::DownloadFileTask* task, Quern::WWWErrorCode error, long long totalSize) override {
        events += "finished " + std::to_string(error) + " " + std::to_string(totalSize) + " ";
        ++finishes;
        if (onFinished) onFinished(task);
    }
    static bool Run(const std::function<bool()>& condition, std::chrono::milliseconds deadline = kDeadline) {
        return WaitFor([&] { return Quern::MainRunLoop::Current().RunPending(), condition(); }, deadline);
    }
    bool RunUntilFinished(int count = 1) {
        return Run([&] { return finishes >= count; });
    }

    std::string events;
    long long written = 0;
    int progresses = 0;
    int finishes = 0;
    bool isOrderly = true;  // a begin came first, and no more bytes than there are
    std::function<void(Quern::DownloadFileTask*)> onProgress, onFinished;
};

}  // namespace OrvaneTest

#endif
