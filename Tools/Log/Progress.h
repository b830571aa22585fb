// A bar on standard error for work that takes long. Short work shows none.
#ifndef ORVANE_TOOLS_LOG_PROGRESS_H
#define ORVANE_TOOLS_LOG_PROGRESS_H

#include <chrono>
#include <cstdint>

namespace OrvaneLog {

// Drawn at most a few times a second, so that it costs the work nothing. One thread.
class Progress {
public:
    // Does nothing unless `shown`. `total` bytes are expected; 0 if that is not known, and then the bar is a count.
    Progress(bool shown, uint64_t total);
    // Takes the bar off.
    ~Progress() { Clear(); }
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

    // So many bytes are done, of all. Draws only if it is time to.
    void At(uint64_t done);
    // Takes the bar off the terminal, so that something else can be said; it comes back by itself.
    void Clear();

private:
    using Clock = std::chrono::steady_clock;

    bool _shown;
    uint64_t _total;
    Clock::time_point _next;  // no drawing before
    bool _drawn = false;      // the bar is on the terminal now
};

}  // namespace OrvaneLog

#endif
