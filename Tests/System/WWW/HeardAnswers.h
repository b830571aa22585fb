// Listeners that keep what they hear, for tests of the HTTP tasks.
#ifndef ORVANE_TESTS_SYSTEM_WWW_HEARD_ANSWERS_H
#define ORVANE_TESTS_SYSTEM_WWW_HEARD_ANSWERS_H

#include <cstdlib>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

#include "Orvane/DataTask.h"
#include "Orvane/DownloadFileTask.h"
#include "Support/WaitFor.h"
#include "System/Application/MainRunLoop.h"
#include "System/WWW/Linux/LinuxUrlSession.h"

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

struct Answer {
    Quern::WWWErrorCode error;
    int status;
    std::string body;
    bool hasData;
};

class HeardAnswers final : public Quern::DataTask::Listener {
public:
    void OnDataTaskFinished(Quern::DataTask* task, Quern::WWWErrorCode error, int status, const char* data,
                            long long length) override {
        if (onAnswer) onAnswer(task);
        const std::lock_guard guard(_mutex);
        _answers.push_back(
            {error, status, data ? std::string(data, static_cast<size_t>(length)) : "", data != nullptr});
    }
    size_t Count() const {
        const std::lock_guard guard(_mutex);
        return _answers.size();
    }
    // Waits until there are that many, and gives the last of them.
    Answer Wait(size_t count = 1) const {
        if (!WaitFor([&] { return Count() >= count; })) return {Quern::kWWWErrorNone, -1, "no answer", false};
        const std::lock_guard guard(_mutex);
        return _answers[count - 1];
    }

    std::function<void(Quern::DataTask*)> onAnswer;  // inside the call

private:
    mutable std::mutex _mutex;
    std::vector<Answer> _answers;
};

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
        return WaitFor(
            [&] {
                Quern::MainRunLoop::Current().RunPending();
                return condition();
            },
            deadline);
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
