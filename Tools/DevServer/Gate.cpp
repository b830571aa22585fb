#include "DevServer/Gate.h"

namespace OrvaneDevServer {
namespace {

using Clock = std::chrono::steady_clock;

// A sender that leaves wakes nobody: it is looked for.
constexpr std::chrono::milliseconds kLook{50};

}  // namespace

Gate::End Gate::Delay(std::chrono::milliseconds time, const SenderHasLeft& senderHasLeft) {
    const auto end = Clock::now() + time;
    std::unique_lock<std::mutex> guard(_mutex);
    return Wait(
        guard, [end] { return Clock::now() >= end; }, senderHasLeft);
}

Gate::End Gate::Hold(const SenderHasLeft& senderHasLeft) {
    std::unique_lock<std::mutex> guard(_mutex);
    ++_held;
    const End end = Wait(
        guard, [this, before = _releases] { return _releases != before; }, senderHasLeft);
    --_held;
    return end;
}

Gate::End Gate::Wait(std::unique_lock<std::mutex>& guard, const std::function<bool()>& isOver,
                     const SenderHasLeft& senderHasLeft) {
    if (_waiting >= _mostWaiting) return End::kFull;
    ++_waiting;
    End end = End::kGoOn;
    while (!_isStopped && !isOver()) {
        guard.unlock();
        const bool hasLeft = senderHasLeft && senderHasLeft();
        guard.lock();
        if (hasLeft) {
            end = End::kLeft;
            break;
        }
        if (!_isStopped && !isOver()) _changed.wait_for(guard, kLook);
    }
    --_waiting;
    return end;
}

size_t Gate::Release() {
    const std::lock_guard<std::mutex> guard(_mutex);
    ++_releases;
    _changed.notify_all();
    return _held;
}

size_t Gate::Held() const {
    const std::lock_guard<std::mutex> guard(_mutex);
    return _held;
}

void Gate::Stop() {
    const std::lock_guard<std::mutex> guard(_mutex);
    _isStopped = true;
    _changed.notify_all();
}

}  // namespace OrvaneDevServer
