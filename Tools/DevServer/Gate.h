// Where requests wait: for a while, or until they are told to go on, so that a developer sees what the game does then.
#ifndef ORVANE_TOOLS_DEVSERVER_GATE_H
#define ORVANE_TOOLS_DEVSERVER_GATE_H

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>

namespace OrvaneDevServer {

// Any thread. A waiting request keeps its thread: some threads must stay free for those who release it.
class Gate {
public:
    // Whether the sender of the waiting request has closed its connection; empty for one that never does. Called again
    // and again on the waiting thread, under no lock.
    using SenderHasLeft = std::function<bool()>;
    enum class End {
        kGoOn,  // the time is over, it was released, or the server stops
        kLeft,  // the sender closed its connection
        kFull,  // too many wait already: it did not wait
    };

    // `mostWaiting`: how many requests may wait at a time, delayed and held ones together.
    explicit Gate(size_t mostWaiting) : _mostWaiting(mostWaiting) {}

    // Waits for so long.
    End Delay(std::chrono::milliseconds time, const SenderHasLeft& senderHasLeft);
    // Waits until the next Release.
    End Hold(const SenderHasLeft& senderHasLeft);
    // Lets all that are held go on. Gives how many there were; those that come later are held again.
    size_t Release();
    // How many are held now.
    size_t Held() const;
    // Lets all go on, and nobody wait from now on.
    void Stop();

private:
    // Waits under `guard` until `isOver` gives true, which is asked under it as well.
    End Wait(std::unique_lock<std::mutex>& guard, const std::function<bool()>& isOver,
             const SenderHasLeft& senderHasLeft);

    const size_t _mostWaiting;
    mutable std::mutex _mutex;  // guards all below
    std::condition_variable _changed;
    size_t _waiting = 0, _held = 0;  // all, and of these those that wait for a release
    uint64_t _releases = 0;          // so far: whoever is held goes on when it changes
    bool _isStopped = false;
};

}  // namespace OrvaneDevServer

#endif
