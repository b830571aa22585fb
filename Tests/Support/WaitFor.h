// Waiting in tests: on a condition, with a deadline.
#ifndef ORVANE_TESTS_SUPPORT_WAIT_FOR_H
#define ORVANE_TESTS_SUPPORT_WAIT_FOR_H

#include <unistd.h>

#include <chrono>
#include <filesystem>
#include <fstream>
#include <string>
#include <thread>

namespace OrvaneTest {

constexpr std::chrono::seconds kDeadline{20};

// Looks again and again until the condition holds. False if it did not within the deadline.
template <typename Condition>
bool WaitFor(Condition condition, std::chrono::milliseconds deadline = kDeadline) {
    const auto end = std::chrono::steady_clock::now() + deadline;
    while (!condition()) {
        if (std::chrono::steady_clock::now() >= end) return false;
        std::this_thread::sleep_for(std::chrono::milliseconds(1));
    }
    return true;
}

// The kernel's state letter of a thread of this process ('R' runs, 'S' sleeps), 0 if there is no such thread.
inline char ThreadState(pid_t thread) {
    std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/stat");
    std::string text;
    if (!std::getline(file, text)) return 0;
    const size_t name = text.rfind(')');
    return name == std::string::npos || name + 2 >= text.size() ? 0 : text[name + 2];
}

// Waits until a thread rests in the kernel: for one that was seen just before it waits, until it does wait.
inline bool WaitUntilAsleep(pid_t thread) {
    int asleep = 0;
    return WaitFor([&] {
        asleep = ThreadState(thread) == 'S' ? asleep + 1 : 0;
        return asleep == 5;
    });
}

// Waits until every thread of this process that has that name (15 bytes at most) sleeps, and there are `count` of them.
inline bool WaitUntilAllAsleep(const std::string& name, int count) {
    return WaitFor([&] {
        int found = 0;
        for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
            std::string comm;
            std::ifstream(task.path() / "comm") >> comm;
            if (comm != name) continue;
            if (count == 0 || !WaitUntilAsleep(static_cast<pid_t>(std::stol(task.path().filename())))) return false;
            ++found;
        }
        return found == count;
    });
}

inline bool WaitUntilGone(pid_t thread) {
    return WaitFor([&] { return ThreadState(thread) == 0; });
}

}  // namespace OrvaneTest

#endif
