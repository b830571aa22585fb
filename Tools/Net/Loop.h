// The tool's main thread: it runs the library's main run loop until what was asked for has come.
#ifndef ORVANE_TOOLS_NET_LOOP_H
#define ORVANE_TOOLS_NET_LOOP_H

#include <chrono>
#include <functional>
#include <optional>

namespace OrvaneNet {

using Deadline = std::optional<std::chrono::steady_clock::time_point>;  // none: no limit

// Performs what the library posts to the main thread, until `isDone` gives true or the deadline comes. `isDone` is
// asked after each turn; a turn comes when something was posted, or after WakeLoop. Gives whether it was done. Main
// thread.
bool RunUntil(const std::function<bool()>& isDone, Deadline deadline);

// Makes RunUntil ask again at once. Any thread, also in a signal handler.
void WakeLoop();

// So many seconds from now.
inline Deadline InSeconds(int seconds) {
    return std::chrono::steady_clock::now() + std::chrono::seconds(seconds);
}

}  // namespace OrvaneNet

#endif
