// Sends what others report, in batches, from a thread of its own. The data plugin forwards spans and events with it,
// and orvane-log the entries of a log.
#ifndef ORVANE_TOOLS_OTLP_EXPORTER_H
#define ORVANE_TOOLS_OTLP_EXPORTER_H

#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <random>
#include <string>
#include <thread>
#include <vector>

#include "Otlp/Clock.h"
#include "Otlp/HttpClient.h"

namespace OrvaneOtlp {

// Limits and times of an exporter. The defaults suit a game: it drops rather than waits.
struct ExporterOptions {
    // Bytes of all items that wait or are under way. An item that does not fit is not taken.
    size_t maxBytes = 4u << 20;
    // A request takes items until it has this many of them, or this many bytes.
    size_t maxBatchItems = 512;
    size_t maxBatchBytes = 512u << 10;
    // A batch that is not full is sent this long after its first item came.
    std::chrono::milliseconds delay{1000};
    // A batch is dropped if the receiver has not taken it in this time.
    std::chrono::milliseconds giveUp{300000};
    // The end of the process waits this long for what has not been sent. 0: the exporter takes no part in that end.
    std::chrono::milliseconds exitDeadline{0};
};

// What became of the items. Each accepted item is counted once more in the end: as sent, rejected or refused.
struct ExporterCounts {
    uint64_t accepted = 0;  // items that were taken
    uint64_t sent = 0;      // of these, items that the receiver has taken
    uint64_t rejected = 0;  // of these, items that it took a request with, and then would not have
    uint64_t refused = 0;   // items of requests that it did not take, or whose time was over
    uint64_t overflow = 0;  // items that found no room, and were not taken
};

// One for each signal and endpoint. An item is a string in a form of the caller's own. The encoder makes a request's
// body of items, on the sender's thread, so that whoever reports an item pays for a copy and no more. The first item
// starts the thread.
//
// A request is tried again after a broken connection, a time-out, and the answers 429, 502, 503 and 504, later each
// time (RetryDelay.h). Other answers are final.
class Exporter {
public:
    // Makes a request's body of items.
    using Encoder = std::function<std::string(const std::vector<std::string>& items)>;
    // Told what goes wrong, and when it goes well again: a line each, on the sender's thread, under no lock.
    using Say = std::function<void(const std::string& line)>;

    // `encode` and `say` are called on the sender's thread until Stop has returned; what they use must live as long.
    Exporter(const Endpoint& endpoint, Encoder encode, Say say, const ExporterOptions& options = ExporterOptions(),
             std::shared_ptr<Clock> clock = Clock::Steady());
    // Stop, without waiting.
    ~Exporter();
    Exporter(const Exporter&) = delete;
    Exporter& operator=(const Exporter&) = delete;

    // Any thread; waits for nothing. False if there was no room.
    bool Offer(std::string item);
    // Waits for room, but not longer than that. False if there was none; the item is then as it was.
    bool Push(std::string& item, std::chrono::milliseconds deadline);
    // Sends what has been taken so far, without the delay for a batch to fill. False if not all of it was done with
    // when the time was over; it is sent later.
    bool Flush(std::chrono::milliseconds deadline);
    // As Flush; then what is left is dropped, the thread ends, and nothing is taken any more. A second call waits no
    // longer than the first. Any thread but the sender's.
    void Stop(std::chrono::milliseconds deadline);

    // Any thread; the numbers are those of one moment.
    ExporterCounts Counts() const;
    // Bytes of items that are held now.
    size_t HeldBytes() const;

private:
    using Batch = std::vector<std::string>;
    using Lock = std::unique_lock<std::mutex>;

    // Under the lock, on the caller's thread.
    bool Take(std::string& item, bool& wakes);
    // The rest, but for EndWithProcess, runs on the sender's thread, and not under the lock.
    void Run();
    bool WaitForBatch();
    Batch CutBatch(size_t& bytes);
    void Send(const Batch& batch);
    bool WaitToTry();
    bool IsOver() const;
    bool Judge(const PostAnswer& answer, const Batch& batch);
    void Refuse(const Batch& batch, const std::string& why);
    void SayOverflow(bool isLast);
    void SayOfUrl(const std::string& what);
    void DropTheRest();
    // Registers the exporter with those that the end of the process stops.
    static void EndWithProcess(Exporter* exporter);

    const Encoder _encode;
    const Say _say;
    const ExporterOptions _options;
    const std::string _url;  // as it may be shown
    const std::shared_ptr<Clock> _clock;
    const std::unique_ptr<HttpClient> _client;

    // A leaf lock: nothing is called under it but the clock, and the sender holds it for moments alone.
    mutable std::mutex _mutex;
    std::condition_variable _wake;      // the sender's
    std::condition_variable _done;      // of whoever waits for the sender
    std::deque<std::string> _incoming;  // taken, and not seen by the sender yet
    Clock::Time _firstCame;             // when _incoming got its first
    size_t _heldBytes = 0;              // of all items that wait or are under way, what each costs beside included
    uint64_t _finished = 0;             // items taken that are done with, in their order
    uint64_t _flushUpTo = 0;            // items that are to go at once
    ExporterCounts _counts;
    bool _isStarted = false, _hasEnded = false;
    Clock::Time _endBy = Clock::Time::max();  // set by Stop
    std::thread _thread;

    // The sender's alone.
    std::deque<std::string> _backlog;  // what the next batches are cut from
    bool _canSend = false;
    std::string _problem;        // why it cannot
    Clock::Time _notBefore;      // when the next try is due
    int _failures = 0;           // in a row
    uint64_t _overflowSaid = 0;  // items without room that were told of
    Clock::Time _overflowSaidAt;
    std::minstd_rand _random;  // spreads the tries; no secret hangs on it
};

}  // namespace OrvaneOtlp

#endif
