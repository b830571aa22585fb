// What a network checker shares with the diagnostics that it has begun, and that outlive it.
#ifndef ORVANE_SYSTEM_NETWORK_CHECKER_NETWORK_CHECKER_STATE_H
#define ORVANE_SYSTEM_NETWORK_CHECKER_NETWORK_CHECKER_STATE_H

#include <memory>
#include <vector>

#include "System/NetworkChecker/ResultText.h"
#include "System/NetworkChecker/WorkerPool.h"
#include "System/Thread/Mutex.h"

namespace Quern {

class ANetworkChecker;
class PingDelegate;

// Shared by the checker and each diagnostic, and gone with the last of them. Any thread.
class NetworkCheckerState {
public:
    static constexpr size_t kMaxConcurrentOperationCount = 5;  // further diagnostics wait

    // The checker is not owned; it calls Detach before it goes.
    explicit NetworkCheckerState(ANetworkChecker* checker) : _checker(checker) {}

    // Null, and a delegate that is in the list already, do nothing.
    void SafeAdd(const std::shared_ptr<PingDelegate>& delegate);
    void SafeDelete(const PingDelegate* delegate);

    // Hands a result text on, under the lock; without a checker, frees it and says nothing. `notify` is one of the
    // checker's Notify operations.
    template <typename Callback>
    void Notify(void (ANetworkChecker::*notify)(char*, Callback), std::unique_ptr<char[]> text, Callback callback) {
        if (!callback) {
            NotifyUnwanted(notify, text.get());
            return;
        }
        const CCritical guard(&_mutex);
        if (_checker) (_checker->*notify)(text.release(), callback);
    }

    // When the checker goes: nothing reaches it afterwards.
    void Detach();
    bool IsDetached();

    // The workers of the diagnostics.
    WorkerPool _network_queue{"NetworkChecker", kMaxConcurrentOperationCount};
    // Guards what follows. Held while a result is put on its way to the main thread, hence before the selectors' locks.
    CMutex _mutex{true};

private:
    // Without a callback the checker only says so: outside the lock, since a log callback may be anything.
    template <typename Callback>
    void NotifyUnwanted(void (ANetworkChecker::*notify)(char*, Callback), const char* text) {
        ANetworkChecker* checker;
        {
            const CCritical guard(&_mutex);
            checker = _checker;
        }
        if (checker) (checker->*notify)(LeaveBehind(text), nullptr);
    }

    ANetworkChecker* _checker ORVANE_GUARDED_BY(_mutex);                                  // null once it is gone
    std::vector<std::shared_ptr<PingDelegate>> _pingDelegates ORVANE_GUARDED_BY(_mutex);  // alive while they run
};

}  // namespace Quern

#endif
