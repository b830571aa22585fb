#include "System/WWW/Linux/CompletionThread.h"

#include <utility>

#include "System/Thread/ThreadName.h"

namespace Quern {

void CompletionThread::Run() {
    set_thread_name("UrlCompletion");
    // Each call is let go of before the next is waited for: what it holds must not stay alive while the thread rests.
    for (Call call; Take(call, true); call = nullptr)
        call();
}

void CompletionThread::RunPosted() {
    for (Call call; Take(call, false); call = nullptr)
        call();
}

bool CompletionThread::Take(Call& call, bool waits) {
    std::unique_lock<std::mutex> guard(_mutex);
    _posted.wait(guard, [&] { return !waits || _isStopped || !_calls.empty(); });
    if (_isStopped || _calls.empty()) return false;
    call = std::move(_calls.front());
    _calls.pop_front();
    return true;
}

void CompletionThread::Post(Call call) {
    {
        const std::lock_guard<std::mutex> guard(_mutex);
        _calls.push_back(std::move(call));
    }
    _posted.notify_one();
}

void CompletionThread::Stop() {
    {
        const std::lock_guard<std::mutex> guard(_mutex);
        _isStopped = true;
    }
    _posted.notify_one();
}

}  // namespace Quern
