// The events of a script: one a line, each a word and what it needs.
#ifndef ORVANE_TOOLS_HOST_EVENT_SCRIPT_H
#define ORVANE_TOOLS_HOST_EVENT_SCRIPT_H

#include <chrono>
#include <memory>
#include <string>

namespace OrvaneHost {

class AppDelegate;
class GameLogger;
class LineFeed;
class StageObserver;
struct Options;

// Main thread only.
class EventScript {
public:
    using Clock = std::chrono::steady_clock;

    EventScript(const Options& options, AppDelegate& delegate, GameLogger& logger, LineFeed& feed);
    ~EventScript();

    // Performs one line. What it does not understand, or cannot do, is told on the console with the line's number.
    void Perform(const std::string& line);
    // Whether there was such a line.
    bool HasFailed() const { return _failed; }

    // True while the last event holds the next one up: a sleep, or a file that is still being logged.
    bool IsPaused(Clock::time_point now) const;
    // When a sleep ends; in the past if there is none.
    Clock::time_point SleepsUntil() const { return _sleepsUntil; }
    // True after "quit".
    bool HasQuit() const { return _quit; }

    // The orderly stop that a signal asks for.
    void Terminate();

private:
    struct Event;
    static const Event kEvents[];

    // Says what is wrong with the line that is being performed.
    void Fail(const std::string& what);

    void Launch();
    void Release();
    void Log(const std::string& argument);
    void LogFile(const std::string& path);
    void Sleep(const std::string& argument);
    void Operations(const std::string& argument);

    const Options& _options;
    AppDelegate& _delegate;
    GameLogger& _logger;
    LineFeed& _feed;
    std::unique_ptr<StageObserver> _stages;
    Clock::time_point _sleepsUntil{};
    unsigned _lineNumber = 0;
    bool _failed = false;
    bool _quit = false;
    bool _loadStarted = false;
};

}  // namespace OrvaneHost

#endif
