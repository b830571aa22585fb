// Lets a page wait until there is something new to show.
#ifndef ORVANE_TOOLS_DEVSERVER_CONSOLE_CHANGES_H
#define ORVANE_TOOLS_DEVSERVER_CONSOLE_CHANGES_H

#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <functional>
#include <mutex>
#include <string>
#include <vector>

namespace OrvaneDevServer {

// Holds a number that becomes another one with each change. Any thread. Whoever waits keeps a thread of the server's:
// so few may, and each only for a while.
class Changes {
public:
    // `folders`: what is in them, and in the folders right in these, may be changed by others; names and times of files
    // are looked at while somebody waits.
    explicit Changes(std::vector<std::string> folders, size_t mostWaiting = 4);

    // Something is new: whoever waits goes on.
    void Tell();

    struct Look {
        uint64_t now = 0;
        bool isFull = false;  // too many wait: it did not, and whoever asks had better ask again in a few seconds
    };
    // Waits until there is another number than `known`, at most `patience`. A page that was loaded from an earlier run
    // of the server knows no number of this one.
    Look WaitForOther(uint64_t known, std::chrono::milliseconds patience, const std::function<bool()>& senderHasLeft);

    // Lets all go on, and nobody wait from now on.
    void Stop();

private:
    std::string Fingerprint() const;

    const std::vector<std::string> _folders;
    const size_t _mostWaiting;
    std::mutex _mutex;  // guards all below
    std::condition_variable _changed;
    uint64_t _now;  // begins with the time, so that no run begins with the number of another
    size_t _waiting = 0;
    bool _isStopped = false;
    std::string _fingerprint;                         // of the folders at the last look; empty before the first
    std::chrono::steady_clock::time_point _lookedAt;  // so that of several who wait one looks
};

}  // namespace OrvaneDevServer

#endif
