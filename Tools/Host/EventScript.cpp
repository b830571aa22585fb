#include "EventScript.h"

#include "AppDelegate.h"
#include "Configuration.h"
#include "GameLogger.h"
#include "GameSpan.h"
#include "LineFeed.h"
#include "NetworkReport.h"
#include "OperationLoad.h"
#include "Options.h"
#include "Orvane/IBase.h"
#include "Orvane/OrvaneCore.h"
#include "Orvane/QuernApplicationObserver.h"
#include "Orvane/RunTime.h"
#include "StageObserver.h"

namespace OrvaneHost {
namespace {

constexpr unsigned kFileThread = 0;
constexpr uint64_t kLongestSleep = 24 * 60 * 60 * 1000;

constexpr uint64_t kMostOperations = 1000000;

// The stages of an orderly stop belong to the host of plugins, reached like all else through the run-time table.
void PerformPluginUtils(const char* selector) {
    void* instance = orvane_class_perform(orvane_class_lookup("PluginUtils"), "sharedInstance", nullptr);
    if (!instance) {
        orvane_console_log("orvane-host: no PluginUtils in this process");
        return;
    }
    orvane_object_perform(static_cast<orvane_object*>(instance), selector, nullptr);
}

// What the layer between an engine and the library would tell the older of its two application objects.
void PerformApplication(const char* selector) {
    void* const arguments[] = {nullptr};
    gs_QuernApplicationPerform(selector, arguments);
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

// One kind of event: its word, whether an argument stands behind it, and what it does.
struct EventScript::Event {
    const char* word;
    bool takesArgument;
    void (*perform)(EventScript& script, const std::string& argument);
};

const EventScript::Event EventScript::kEvents[] = {
    {"init", false, [](EventScript&, const std::string&) { orvanecore_init(); }},
    {"launch", false, [](EventScript& script, const std::string&) { script.Launch(); }},
    {"background", false,
     [](EventScript& s, const std::string&) { s._delegate.Send(AppDelegate::kDidEnterBackground); }},
    {"foreground", false,
     [](EventScript& s, const std::string&) { s._delegate.Send(AppDelegate::kWillEnterForeground); }},
    {"resign-active", false,
     [](EventScript& s, const std::string&) { s._delegate.Send(AppDelegate::kWillResignActive); }},
    {"active", false, [](EventScript& s, const std::string&) { s._delegate.Send(AppDelegate::kDidBecomeActive); }},
    {"memory-warning", false,
     [](EventScript& s, const std::string&) { s._delegate.Send(AppDelegate::kDidReceiveMemoryWarning); }},
    {"open-url", true, [](EventScript& script, const std::string& url) { script._delegate.OpenUrl(url); }},
    {"orientations", false,
     [](EventScript& script, const std::string&) {
         orvane_console_log("orvane-host: orientations %lu",
                            static_cast<unsigned long>(script._delegate.SupportedOrientations()));
     }},
    {"log", true, [](EventScript& script, const std::string& argument) { script.Log(argument); }},
    {"log-file", true, [](EventScript& script, const std::string& path) { script.LogFile(path); }},
    {"sleep", true, [](EventScript& script, const std::string& argument) { script.Sleep(argument); }},
    {"create", false, [](EventScript&, const std::string&) { gs_OrvaneApplicationOnCreate(); }},
    {"start", false, [](EventScript&, const std::string&) { gs_OrvaneApplicationOnStart(); }},
    {"pause", false, [](EventScript&, const std::string&) { PerformApplication(AppDelegate::kDidEnterBackground); }},
    {"resume", false, [](EventScript&, const std::string&) { PerformApplication(AppDelegate::kWillEnterForeground); }},
    {"stop", false, [](EventScript&, const std::string&) { gs_OrvaneApplicationOnStop(); }},
    {"destroy", false, [](EventScript&, const std::string&) { gs_OrvaneApplicationOnDestroy(); }},
    {"operations", true, [](EventScript& script, const std::string& argument) { script.Operations(argument); }},
    {"span", true,
     [](EventScript& script, const std::string& words) {
         if (!TraceSpan(words)) script.Fail("the span was not traced as told: " + words);
     }},
    {"network", false, [](EventScript&, const std::string&) { TellNetwork(); }},
    {"modem", true,
     [](EventScript& script, const std::string& words) {
         if (!PlayModem(words)) script.Fail("no such modem: " + words);
     }},
    {"fetch", false,
     [](EventScript& script, const std::string&) {
         if (!Fetch(script._options.module)) script.Fail("no configuration service yet; it comes with the launch");
     }},
    {"set-url", true, [](EventScript&, const std::string& url) { orvanecore_configure_seturl(url.c_str()); }},
    {"clear", false, [](EventScript&, const std::string&) { orvanecore_configure_clear(); }},
    {"pre-shutdown", false, [](EventScript&, const std::string&) { PerformPluginUtils("nativePreShutdown"); }},
    {"shutdown", false, [](EventScript&, const std::string&) { PerformPluginUtils("nativeShutdown"); }},
    {"release", false, [](EventScript& script, const std::string&) { script.Release(); }},
    {"quit", false, [](EventScript& script, const std::string&) { script._quit = true; }},
};

EventScript::EventScript(const Options& options, AppDelegate& delegate, GameLogger& logger, LineFeed& feed)
    : _options(options),
      _delegate(delegate),
      _logger(logger),
      _feed(feed),
      _stages(std::make_unique<StageObserver>()) {}

EventScript::~EventScript() = default;

void EventScript::Perform(const std::string& line) {
    ++_lineNumber;
    std::string word, argument;
    SplitWord(line, word, argument);
    if (word.empty() || word[0] == '#') return;
    for (const Event& event : kEvents) {
        if (word == event.word && event.takesArgument != argument.empty()) {
            event.perform(*this, argument);
            return;
        }
    }
    Fail("event not understood: " + line);
}

void EventScript::Fail(const std::string& what) {
    _failed = true;
    orvane_console_log("orvane-host: line %u: %s", _lineNumber, what.c_str());
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

void EventScript::Release() {
    Quern::IBase::Release();
    TellOperations("released");
    // Nobody observes the stages any more; an application that goes on does so anew.
    _stages.reset();
    _stages = std::make_unique<StageObserver>();
}

void EventScript::Operations(const std::string& argument) {
    uint64_t count = 0;
    if (ParseNumber(argument, 1, kMostOperations, count))
        QueueOperations(count);
    else
        Fail("cannot queue " + argument + " operations");
}

void EventScript::Log(const std::string& argument) {
    std::string level, text;
    SplitWord(argument, level, text);
    ALogPriority priority;
    if (!ParseLevel(level, priority)) {
        Fail("no such level: " + level);
        return;
    }
    if (_logger.Open())
        _logger.Log(priority, text);
    else
        Fail("nothing is logged");
}

void EventScript::LogFile(const std::string& path) {
    std::optional<LineSource> lines = _logger.Open() ? FileLines(path) : std::nullopt;
    if (lines)
        _feed.Start(kFileThread, 1, std::move(*lines));
    else
        Fail("nothing is logged");
}

void EventScript::Sleep(const std::string& argument) {
    uint64_t milliseconds = 0;
    if (!ParseNumber(argument, 0, kLongestSleep, milliseconds)) {
        Fail("cannot sleep for " + argument);
        return;
    }
    _sleepsUntil = Clock::now() + std::chrono::milliseconds(milliseconds);
}

}  // namespace OrvaneHost
