#include "Storage/Log/GameLog.h"

#include <atomic>
#include <memory>

#include "Base/RunTimeClass.h"
#include "Orvane/OrvaneCore.h"
#include "Storage/Bundle/GameId.h"
#include "Storage/Log/Logger.h"

namespace Quern {
namespace {

std::atomic<Logger*> g_gameLog{nullptr};

// The game's id, or an empty text where this thread is looking it up already: the look-up logs that the manifest has no
// such section, and a log callback may hand that line on to the game's own logger.
const char* GameIdUnlessLookedFor() {
    static thread_local bool isLooking = false;
    if (isLooking) return "";
    isLooking = true;
    const char* const id = GameId();
    isLooking = false;
    return id;
}

// What becomes of the game's lines, for a game that asks. Asking does not make the logger.
void* PerformState(orvane_object*, const char*, void* const*) {
    const Logger* const gameLog = g_gameLog.load(std::memory_order_acquire);
    const LogKeeping keeping = gameLog ? gameLog->Keeping() : LogKeeping::kNotKept;
    return reinterpret_cast<void*>(static_cast<intptr_t>(keeping));
}

// Says on the console, each once in a process, what the game has forgotten at its start and that its log file fails. It
// says nothing of a line that waits because the game is in the background: that is as it should be.
void SayIfNotKept(const Logger& gameLog) {
    static std::atomic<bool> isInitMissing{false}, isLaunchMissing{false}, isFailing{false};
    const LogKeeping keeping = gameLog.Keeping();
    if (keeping == LogKeeping::kDurable || keeping == LogKeeping::kBuffered) return;
    if (keeping == LogKeeping::kNotKept) {
        if (!gameLog.IsInitCalled()) {
            if (!isInitMissing.exchange(true))
                ORVANE_CONSOLE(kLogWarning, "the game's log is not kept: orvane_log_init has yet to be called");
        } else if (!isFailing.exchange(true)) {
            ORVANE_CONSOLE(kLogError, "the game's log is not kept: its file cannot be written, or is full");
        }
    } else if (!CoreLogger() && !isLaunchMissing.exchange(true)) {
        ORVANE_CONSOLE(kLogWarning,
                       "the game's log waits in memory, and is lost with the process: the library has yet to be told "
                       "of the launch");
    }
}

}  // namespace

// Without a lock, since a log callback may come back here: of two callers that make a logger, one installs its own, and
// the other deletes its own and takes that.
Logger* GetOrvaneGameLog() {
    if (Logger* gameLog = g_gameLog.load(std::memory_order_acquire)) return gameLog;
    const char* const gameId = GameIdUnlessLookedFor();
    auto made = std::make_unique<Logger>(gameId);
    Logger* winner = nullptr;
    if (!g_gameLog.compare_exchange_strong(winner, made.get(), std::memory_order_acq_rel)) return winner;
    Orvane::Configure::GetInstance()->AddObserver(gameId, made.get());
    return made.release();
}

void RegisterGameLogClass() {
    RegisterRunTimeClass("OrvaneGameLog", {}, {{"state", PerformState}});
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
    Quern::Logger* const gameLog = Quern::GetOrvaneGameLog();
    gameLog->Log(level, file, line, function, tag, text);
    Quern::SayIfNotKept(*gameLog);
}

void orvane_log_remove_logfile(int hours, int fileNumLimit) {
    Quern::GetOrvaneGameLog()->RemoveOldLog(hours, fileNumLimit);
}
