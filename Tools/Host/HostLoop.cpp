#include "HostLoop.h"

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <unistd.h>

#include "Orvane/MainRunLoop.h"
#include "Orvane/RunTime.h"

namespace OrvaneHost {
namespace {

int g_signalPipe[2] = {-1, -1};

void OnSignal(int number) {
    const int savedErrno = errno;
    const unsigned char byte = static_cast<unsigned char>(number);
    (void)!write(g_signalPipe[1], &byte, 1);
    errno = savedErrno;
}

// As poll takes it: -1 for no limit.
int MillisecondsUntil(EventScript::Clock::time_point time, EventScript::Clock::time_point now) {
    const auto left = time - now;
    if (left <= left.zero()) return -1;
    return static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(left).count());
}

}  // namespace

HostLoop::HostLoop(int input, int signals, EventScript& script, LineFeed& feed)
    : _input(input), _signals(signals), _script(script), _feed(feed), _lines(input) {}

void HostLoop::Run() {
    for (;;) {
        PerformLines();
        if (IsFinished()) return;
        Wait();
    }
}

void HostLoop::PerformLines() {
    std::string line;
    while (!_terminated && !_script.HasQuit()) {
        _linesLeft = true;
        if (_script.IsPaused(EventScript::Clock::now())) return;
        if (!_lines.Next(line)) {
            _linesLeft = false;
            return;
        }
        _script.Perform(line);
    }
}

bool HostLoop::IsFinished() const {
    if (_terminated || _script.HasQuit()) return true;
    return _lines.IsAtEnd() && !_linesLeft && !_feed.IsAnyRunning();
}

void HostLoop::Wait() {
    const auto now = EventScript::Clock::now();  // one moment for both: a sleep that pauses also limits the wait
    const bool isPaused = _script.IsPaused(now);
    if (_linesLeft && !isPaused) return;  // the pause has just ended

    // A negative descriptor is one that poll leaves out.
    const bool wantsInput = !_lines.IsAtEnd() && !isPaused;
    pollfd watched[] = {
        {_signals, POLLIN, 0},
        {wantsInput ? _input : -1, POLLIN, 0},
        {_feed.EndedDescriptor(), POLLIN, 0},
        {gs_OrvaneMainRunLoopDescriptor(), POLLIN, 0},
    };
    auto& [signals, input, ended, mainRunLoop] = watched;
    if (poll(watched, std::size(watched), MillisecondsUntil(_script.SleepsUntil(), now)) <= 0) return;

    if (mainRunLoop.revents) gs_OrvaneMainRunLoopRunPending();
    if (ended.revents) _feed.ClearEnded();
    if (input.revents) _lines.Fill();
    if (signals.revents) {
        orvane_console_log("orvane-host: asked to stop");
        _feed.Stop();
        _script.Terminate();
        _terminated = true;
    }
}

int WatchStopSignals() {
    if (pipe2(g_signalPipe, O_CLOEXEC | O_NONBLOCK) != 0) return -1;
    struct sigaction action = {};
    action.sa_handler = OnSignal;
    action.sa_flags = SA_RESTART;
    sigemptyset(&action.sa_mask);
    sigaction(SIGTERM, &action, nullptr);
    sigaction(SIGINT, &action, nullptr);
    signal(SIGPIPE, SIG_IGN);
    return g_signalPipe[0];
}

}  // namespace OrvaneHost
