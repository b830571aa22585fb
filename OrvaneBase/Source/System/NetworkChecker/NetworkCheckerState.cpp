#include "System/NetworkChecker/NetworkCheckerState.h"

#include <algorithm>

#include "System/NetworkChecker/PingDelegate.h"

namespace Quern {

void NetworkCheckerState::SafeAdd(const std::shared_ptr<PingDelegate>& delegate) {
    if (!delegate) return;
    const CCritical guard(&_mutex);
    if (std::find(_pingDelegates.begin(), _pingDelegates.end(), delegate) == _pingDelegates.end())
        _pingDelegates.push_back(delegate);
}

void NetworkCheckerState::SafeDelete(const PingDelegate* delegate) {
    std::shared_ptr<PingDelegate> removed;  // goes when the lock has been released
    const CCritical guard(&_mutex);
    const auto entry = std::find_if(_pingDelegates.begin(), _pingDelegates.end(),
                                    [delegate](const auto& held) { return held.get() == delegate; });
    if (entry == _pingDelegates.end()) return;
    removed = std::move(*entry);
    _pingDelegates.erase(entry);
}

void NetworkCheckerState::Detach() {
    const CCritical guard(&_mutex);
    _checker = nullptr;
}

bool NetworkCheckerState::IsDetached() {
    const CCritical guard(&_mutex);
    return !_checker;
}

}  // namespace Quern
