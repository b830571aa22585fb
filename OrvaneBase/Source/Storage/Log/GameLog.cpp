#include "Storage/Log/GameLog.h"

#include <atomic>
#include <memory>

#include "Orvane/OrvaneCore.h"
#include "Storage/Bundle/GameId.h"
#include "Storage/Log/Logger.h"

namespace Quern {
namespace {

std::atomic<Logger*> g_gameLog{nullptr};

// The look-up logs that a manifest has no such section, and a log callback may hand that line on to the game's own
// logger: there is no id then.
const char* GameIdUnlessLookedFor() {
    static thread_local bool isLooking = false;
    if (isLooking) return "";
    isLooking = true;
    const char* const id = GameId();
    isLooking = false;
    return id;
}

}  // namespace

// Without a lock, for the same reason: of two that make it one installs its logger, and the other takes that.
Orvane::ILogger* GetOrvaneGameLog() {
    if (Logger* gameLog = g_gameLog.load(std::memory_order_acquire)) return gameLog;
    const char* const gameId = GameIdUnlessLookedFor();
    auto made = std::make_unique<Logger>(gameId);
    Logger* winner = nullptr;
    if (!g_gameLog.compare_exchange_strong(winner, made.get(), std::memory_order_acq_rel)) return winner;
    Orvane::Configure::GetInstance()->AddObserver(gameId, made.get());
    return made.release();
}

}  // namespace Quern

void orvane_log_set_loglevel(ALogPriority level) {
    Quern::GetOrvaneGameLog()->SetLogLevel(level);
}

ALogPriority orvane_log_get_loglevel() {
    return Quern::GetOrvaneGameLog()->GetLogLevel();
}

void orvane_log_set_option_int(const char* key, int value) {
    Quern::GetOrvaneGameLog()->SetOption(key, value);
}

void orvane_log_set_option_str(const char* key, const char* value) {
    Quern::GetOrvaneGameLog()->SetOption(key, value);
}

void orvane_log_init() {
    Quern::GetOrvaneGameLog()->Init();
}

void orvane_log_logx(ALogPriority level, const char* text, const char* file, unsigned int line, const char* function,
                     const char* tag) {
    Quern::GetOrvaneGameLog()->Log(level, file, line, function, tag, text);
}

void orvane_log_remove_logfile(int hours, int fileNumLimit) {
    Quern::GetOrvaneGameLog()->RemoveOldLog(hours, fileNumLimit);
}
