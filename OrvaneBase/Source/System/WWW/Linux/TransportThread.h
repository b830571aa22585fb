// The thread that every transfer of a session runs on, and what other threads leave for it.
#ifndef ORVANE_SYSTEM_WWW_LINUX_TRANSPORT_THREAD_H
#define ORVANE_SYSTEM_WWW_LINUX_TRANSPORT_THREAD_H

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "System/WWW/Linux/CompletionThread.h"
#include "System/WWW/Linux/Transport.h"

namespace Quern {

// Shared with its detached threads. At the process's end (`exit`) it stands still before the libraries beneath it take
// themselves down: what is in flight then is dropped, and nobody waits for it.
class TransportThread : public std::enable_shared_from_this<TransportThread> {
public:
    using Work = std::function<void(Transport& transport)>;

    explicit TransportThread(TransportOptions options) : _options(std::move(options)) {}

    // Has something done on the thread, in the order of the calls. The first call starts the thread. Where it cannot be
    // started, the transfers end with kUrlUnknown, by way of the main run loop; the next one tries again. Any thread,
    // also under the caller's locks.
    void Do(Work work);
    // Ends both threads, and waits for the transport's, so that nothing is told any more but what was under way.
    void End();
    CompletionThread& Completions() { return _completions; }

private:
    enum class Stop { kNo, kStandStill, kEnd };

    std::string Start();
    void FailWork();
    void Run();
    bool TakeWork(std::vector<Work>& work);
    void AskToStop(Stop stop, int milliseconds);
    void StandStillAtExit();

    const TransportOptions _options;
    CompletionThread _completions;

    std::mutex _mutex;  // held while the threads are started
    std::vector<Work> _work;
    bool _isCompleting = false;  // the completion thread runs
    bool _isRunning = false;
    Stop _stop = Stop::kNo;
    bool _hasStopped = false;
    std::condition_variable _stopped;
    Transport* _transport = nullptr;  // once it is open; for Wake alone
};

}  // namespace Quern

#endif
