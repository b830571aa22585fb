// The thread on which the completions of data transfers are called, one after the other.
#ifndef ORVANE_SYSTEM_WWW_LINUX_COMPLETION_THREAD_H
#define ORVANE_SYSTEM_WWW_LINUX_COMPLETION_THREAD_H

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

namespace Quern {

// Any thread may post; the calls come in order, with no lock held. Shared with its thread, which is detached.
class CompletionThread {
public:
    using Call = std::function<void()>;

    // Performs calls until Stop: the body of the thread.
    void Run();
    // Performs what was posted, in the caller's thread, where none could be started.
    void RunPosted();
    void Post(Call call);
    // No further call begins. Does not wait for the one that is under way.
    void Stop();

private:
    bool Take(Call& call, bool waits);

    std::mutex _mutex;  // a leaf
    std::condition_variable _posted;
    std::deque<Call> _calls;
    bool _isStopped = false;
};

}  // namespace Quern

#endif
