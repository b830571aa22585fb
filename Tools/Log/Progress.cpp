#include "Log/Progress.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <string>

namespace OrvaneLog {
namespace {

// Short work shows no bar at all.
constexpr std::chrono::milliseconds kFirst(700), kStep(100);
constexpr int kWidth = 40;

void Say(const std::string& text) {
    (void)!write(STDERR_FILENO, text.data(), text.size());
}

}  // namespace

Progress::Progress(bool shown, uint64_t total) : _shown(shown), _total(total), _next(Clock::now() + kFirst) {}

void Progress::At(uint64_t done) {
    if (!_shown) return;
    const auto now = Clock::now();
    if (now < _next) return;
    _next = now + kStep;
    _drawn = true;
    const double part = _total > 0 ? std::min(1.0, static_cast<double>(done) / static_cast<double>(_total)) : 0;
    const int filled = static_cast<int>(part * kWidth);
    char text[160];
    snprintf(text, sizeof text, "\r[%-*.*s] %3.0f%% of %.1f MB\x1b[K", kWidth, filled,
             "########################################", part * 100, static_cast<double>(_total) / 1e6);
    if (_total == 0) snprintf(text, sizeof text, "\r%.1f MB\x1b[K", static_cast<double>(done) / 1e6);
    Say(text);
}

void Progress::Clear() {
    if (_drawn) Say("\r\x1b[K");
    _drawn = false;
}

}  // namespace OrvaneLog
