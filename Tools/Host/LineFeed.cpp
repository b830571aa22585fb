#include "LineFeed.h"

#include <errno.h>
#include <poll.h>
#include <string.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <fstream>

#include "GameLogger.h"
#include "LoadLine.h"
#include "Options.h"
#include "Orvane/RunTime.h"

namespace OrvaneHost {
namespace {

// A reader that has stopped reading must not hold up the end of the process. False if the stop came first.
bool WaitWritable(int descriptor, const std::atomic<bool>& stop) {
    constexpr int kStopCheckMilliseconds = 100;
    pollfd writable = {descriptor, POLLOUT, 0};
    while (poll(&writable, 1, kStopCheckMilliseconds) == 0) {
        if (stop) return false;
    }
    return true;
}

}  // namespace

LineFeed::LineFeed(const Options& options, GameLogger& logger)
    : _options(options),
      _logger(logger),
      _ended(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      _acknowledge(options.acknowledgeDescriptor) {}

LineFeed::~LineFeed() {
    Stop();
    close(_ended);
}

void LineFeed::Start(unsigned thread, uint64_t firstSequence, LineSource source) {
    Feed& feed = *_feeds.emplace_back(std::make_unique<Feed>());
    feed.number = thread;
    feed.thread = std::thread([this, &feed, firstSequence, source = std::move(source)] {
        Run(feed.number, firstSequence, source);
        feed.running = false;
        (void)!eventfd_write(_ended, 1);
    });
}

bool LineFeed::IsRunning(unsigned thread) const {
    return std::any_of(_feeds.begin(), _feeds.end(),
                       [thread](const auto& feed) { return feed->number == thread && feed->running; });
}

bool LineFeed::IsAnyRunning() const {
    return std::any_of(_feeds.begin(), _feeds.end(), [](const auto& feed) { return feed->running.load(); });
}

void LineFeed::ClearEnded() {
    eventfd_t count;
    (void)!eventfd_read(_ended, &count);
    std::erase_if(_feeds, [](const auto& feed) {
        if (feed->running) return false;
        feed->thread.join();
        return true;
    });
}

void LineFeed::Stop() {
    _stop = true;
    for (const auto& feed : _feeds)
        feed->thread.join();
    _feeds.clear();
}

void LineFeed::Run(unsigned thread, uint64_t firstSequence, const LineSource& source) {
    using Clock = std::chrono::steady_clock;
    const auto step = std::chrono::nanoseconds(_options.linesPerSecond ? 1000000000 / _options.linesPerSecond : 0);
    Clock::time_point due = Clock::now();
    uint64_t sequence = firstSequence;
    while (!_stop) {
        const std::optional<std::string> line = source();
        if (!line) break;
        _logger.Log(kLogInfo, *line);
        Acknowledge(thread, sequence++);
        due = std::max(due + step, Clock::now());  // what is late stays late: a pace has no bursts
        if (_options.linesPerSecond) std::this_thread::sleep_until(due);
    }
    orvane_console_log("orvane-host: thread %u logged %llu lines", thread,
                       static_cast<unsigned long long>(sequence - firstSequence));
}

// One write for each line: a pipe takes it whole or not at all, so that a killed process leaves no half of one.
void LineFeed::Acknowledge(unsigned thread, uint64_t sequence) {
    const int descriptor = _acknowledge;
    if (descriptor < 0 || !WaitWritable(descriptor, _stop)) return;
    char text[48];
    const int length = snprintf(text, sizeof text, "%u %llu\n", thread, static_cast<unsigned long long>(sequence));
    ssize_t written;
    do {
        written = write(descriptor, text, static_cast<size_t>(length));
    } while (written < 0 && errno == EINTR);
    if (written != length && _acknowledge.exchange(-1) >= 0) {
        orvane_console_log("orvane-host: no more acknowledgements: %s", strerror(errno));
    }
}

LineSource NumberedLines(unsigned thread, uint64_t firstSequence, uint64_t lines) {
    return [thread, next = firstSequence, left = lines, endless = lines == 0]() mutable -> std::optional<std::string> {
        if (!endless && left-- == 0) return std::nullopt;
        return LoadLine(thread, next++);
    };
}

std::optional<LineSource> FileLines(const std::string& path) {
    auto file = std::make_shared<std::ifstream>(path, std::ios::binary);
    if (!*file) {
        orvane_console_log("orvane-host: cannot open %s: %s", path.c_str(), strerror(errno));
        return std::nullopt;
    }
    return [file]() -> std::optional<std::string> {
        std::string line;
        if (!std::getline(*file, line)) return std::nullopt;
        return line;
    };
}

}  // namespace OrvaneHost
