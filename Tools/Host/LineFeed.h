// Logs many lines from threads of its own and acknowledges each one when its log call has returned.
//
// An acknowledgement is the text "THREAD NUMBER" and a newline on the descriptor of the options. A test that kills the
// process holds them against the log: no line that was acknowledged may be lost in silence.
#ifndef ORVANE_TOOLS_HOST_LINE_FEED_H
#define ORVANE_TOOLS_HOST_LINE_FEED_H

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace OrvaneHost {

class GameLogger;
struct Options;

// Gives the next line, or nothing at the end. On the feeding thread.
using LineSource = std::function<std::optional<std::string>()>;

// Used by the main thread, which owns all feeds. A feed is one thread that takes lines of one source.
class LineFeed {
public:
    // Both are borrowed. REQUIRES: the logger is open before the first Start.
    LineFeed(const Options& options, GameLogger& logger);
    // Stops and joins.
    ~LineFeed();

    // Feeds the lines of the source from a new thread, as that thread number, with numbers from `firstSequence` on. The
    // feed ends with its source, or by Stop. The source is owned by the feed.
    void Start(unsigned thread, uint64_t firstSequence, LineSource source);
    // Whether a feed of that thread number has not ended yet.
    bool IsRunning(unsigned thread) const;
    bool IsAnyRunning() const;
    // Becomes readable when a feed has ended; ClearEnded joins such feeds and makes it unreadable again. Owned here.
    int EndedDescriptor() const { return _ended; }
    void ClearEnded();
    // Ends every feed after the line it is at, and waits for that. A feed that is started afterwards logs nothing.
    void Stop();

private:
    struct Feed {
        unsigned number;                  // the thread number of the acknowledgements
        std::atomic<bool> running{true};  // cleared by the thread as its last act but for the wake-up
        std::thread thread;
    };

    // On the feeding thread: logs and acknowledges line by line, at the pace of the options.
    void Run(unsigned thread, uint64_t firstSequence, const LineSource& source);
    void Acknowledge(unsigned thread, uint64_t sequence);

    const Options& _options;
    GameLogger& _logger;
    int _ended;  // an eventfd, owned
    std::atomic<bool> _stop{false};
    std::atomic<int> _acknowledge;  // the descriptor; -1 if there is none, or once a write to it has failed
    std::vector<std::unique_ptr<Feed>> _feeds;
};

// The numbered lines of one load thread; 0 lines: no end.
LineSource NumberedLines(unsigned thread, uint64_t firstSequence, uint64_t lines);
// The lines of a text file, without their newlines. Nothing, and told, if it cannot be opened.
std::optional<LineSource> FileLines(const std::string& path);

}  // namespace OrvaneHost

#endif
