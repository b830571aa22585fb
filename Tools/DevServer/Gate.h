// Where requests wait: for a while, or until they are told to go on.
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
    using SenderHasLeft = std::function<bool()>;
    enum class End {
        kGoOn,  // the time is over, it was released, or the server stops
        kLeft,  // the sender closed its connection
        kFull,  // too many wait already: it did not wait
    };

    explicit Gate(size_t mostWaiting) : _mostWaiting(mostWaiting) {}

    End Delay(std::chrono::milliseconds time, const SenderHasLeft& senderHasLeft);
    End Hold(const SenderHasLeft& senderHasLeft);
    // Lets all that are held go on. How many there were.
    size_t Release();
    size_t Held() const;
    // Lets all go on, and nobody wait from now on.
    void Stop();

private:
    End Wait(std::unique_lock<std::mutex>& guard, const std::function<bool()>& isOver,
             const SenderHasLeft& senderHasLeft);

    const size_t _mostWaiting;
    mutable std::mutex _mutex;  // guards all below
    std::condition_variable _changed;
    size_t _waiting = 0, _held = 0;
    uint64_t _releases = 0;
    bool _isStopped = false;
};

}  // namespace OrvaneDevServer

#endif
