#include "EventScript.h"

#include "AppDelegate.h"
#include "GameLogger.h"
#include "LineFeed.h"
#include "Options.h"
#include "Orvane/RunTime.h"

namespace OrvaneHost {
namespace {

constexpr unsigned kFileThread = 0;
constexpr uint64_t kLongestSleep = 24 * 60 * 60 * 1000;

const char* SelectorOf(const std::string& event) {
    if (event == "background") return AppDelegate::kDidEnterBackground;
    if (event == "foreground") return AppDelegate::kWillEnterForeground;
    if (event == "resign-active") return AppDelegate::kWillResignActive;
    if (event == "active") return AppDelegate::kDidBecomeActive;
    if (event == "memory-warning") return AppDelegate::kDidReceiveMemoryWarning;
    return nullptr;
}

// The stages of an orderly stop belong to the host of plugins, reached like all else through the run-time table.
void PerformPluginUtils(const char* selector) {
    void* instance = orvane_class_perform(orvane_class_lookup("PluginUtils"), "sharedInstance", nullptr);
    if (!instance) {
        orvane_console_log("orvane-host: no PluginUtils in this process");
        return;
    }
    orvane_object_perform(static_cast<orvane_object*>(instance), selector, nullptr);
}

// Splits at the first run of blanks; trims both ends.
void SplitWord(const std::string& text, std::string& word, std::string& rest) {
    constexpr char kBlanks[] = " \t\r";
    const size_t begin = text.find_first_not_of(kBlanks);
    if (begin == std::string::npos) {
        word.clear();
        rest.clear();
        return;
    }
    const size_t end = text.find_last_not_of(kBlanks) + 1;
    const size_t gap = std::min(text.find_first_of(kBlanks, begin), end);
    word = text.substr(begin, gap - begin);
    const size_t next = text.find_first_not_of(kBlanks, gap);
    rest = next < end ? text.substr(next, end - next) : std::string();
}

}  // namespace

EventScript::EventScript(const Options& options, AppDelegate& delegate, GameLogger& logger, LineFeed& feed)
    : _options(options), _delegate(delegate), _logger(logger), _feed(feed) {}

void EventScript::Perform(const std::string& line) {
    std::string event, argument;
    SplitWord(line, event, argument);
    if (event.empty() || event[0] == '#') return;

    const bool takesArgument = event == "log" || event == "log-file" || event == "open-url" || event == "sleep";
    if (takesArgument == argument.empty()) {
        orvane_console_log("orvane-host: event not understood: %s", line.c_str());
    } else if (event == "launch") {
        Launch();
    } else if (const char* selector = SelectorOf(event)) {
        _delegate.Send(selector);
    } else if (event == "open-url") {
        _delegate.OpenUrl(argument);
    } else if (event == "orientations") {
        orvane_console_log("orvane-host: orientations %lu",
                           static_cast<unsigned long>(_delegate.SupportedOrientations()));
    } else if (event == "log") {
        Log(argument);
    } else if (event == "log-file") {
        LogFile(argument);
    } else if (event == "sleep") {
        Sleep(argument);
    } else if (event == "pre-shutdown") {
        PerformPluginUtils("nativePreShutdown");
    } else if (event == "shutdown") {
        PerformPluginUtils("nativeShutdown");
    } else if (event == "quit") {
        _quit = true;
    } else {
        orvane_console_log("orvane-host: event not understood: %s", line.c_str());
    }
}

bool EventScript::IsPaused(Clock::time_point now) const {
    return now < _sleepsUntil || _feed.IsRunning(kFileThread);
}

void EventScript::Terminate() {
    _delegate.Send(AppDelegate::kWillTerminate);
    PerformPluginUtils("nativePreShutdown");
    PerformPluginUtils("nativeShutdown");
}

void EventScript::Launch() {
    _delegate.DidFinishLaunching();
    if (_options.threads == 0 || _loadStarted || !_logger.Open()) return;
    _loadStarted = true;
    orvane_console_log("orvane-host: load of %u threads", _options.threads);
    for (unsigned thread = 1; thread <= _options.threads; ++thread) {
        _feed.Start(thread, _options.firstSequence, NumberedLines(thread, _options.firstSequence, _options.lines));
    }
}

void EventScript::Log(const std::string& argument) {
    std::string level, text;
    SplitWord(argument, level, text);
    ALogPriority priority;
    if (!ParseLevel(level, priority)) {
        orvane_console_log("orvane-host: no such level: %s", level.c_str());
        return;
    }
    if (_logger.Open()) _logger.Log(priority, text);
}

void EventScript::LogFile(const std::string& path) {
    if (!_logger.Open()) return;
    std::optional<LineSource> lines = FileLines(path);
    if (lines) _feed.Start(kFileThread, 1, std::move(*lines));
}

void EventScript::Sleep(const std::string& argument) {
    uint64_t milliseconds = 0;
    if (!ParseNumber(argument, 0, kLongestSleep, milliseconds)) {
        orvane_console_log("orvane-host: cannot sleep for %s", argument.c_str());
        return;
    }
    _sleepsUntil = Clock::now() + std::chrono::milliseconds(milliseconds);
}

}  // namespace OrvaneHost
