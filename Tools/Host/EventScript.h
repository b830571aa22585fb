// Performs the events of a script: one a line, each a word and what it needs. Options.cpp lists them for the user; the
// table kEvents in EventScript.cpp says what each does.
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

// Plays the parts of a game that the library hears of: the platform's events, the game's own calls, and the orderly
// stop. Reads nothing itself; HostLoop hands it the lines. Main thread only.
class EventScript {
public:
    using Clock = std::chrono::steady_clock;

    // All borrowed. Observes the coarse stages of the application from now on.
    EventScript(const Options& options, AppDelegate& delegate, GameLogger& logger, LineFeed& feed);
    ~EventScript();

    // Performs one line. Some events only begin what goes on beside the script: a load, a log-file, operations, a
    // fetch. Blank lines and lines that begin with "#" do nothing. What it does not understand, or cannot do, is told
    // on the console with the line's number, and the next line is performed all the same.
    void Perform(const std::string& line);
    // Whether there was a line that it did not understand or could not do.
    bool HasFailed() const { return _failed; }

    // True while the last event holds the next one up: a sleep, or a file that is still being logged.
    bool IsPaused(Clock::time_point now) const;
    // When a sleep ends; in the past if there is none.
    Clock::time_point SleepsUntil() const { return _sleepsUntil; }
    // True after "quit".
    bool HasQuit() const { return _quit; }

    // The orderly stop that a signal asks for: the application will terminate, then both walks over the plugins.
    void Terminate();

private:
    struct Event;  // a word and what it does
    static const Event kEvents[];

    // Says what is wrong with the line that is being performed.
    void Fail(const std::string& what);

    // The events that are more than one call.
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
    std::unique_ptr<StageObserver> _stages;  // made anew by "release", which drops all observers
    Clock::time_point _sleepsUntil{};        // in the past if nothing sleeps
    unsigned _lineNumber = 0;                // of the line being performed, from 1
    bool _failed = false;
    bool _quit = false;
    bool _loadStarted = false;  // a second "launch" starts no second load
};

}  // namespace OrvaneHost

#endif
