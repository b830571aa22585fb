#include "Storage/Log/GameLog.h"

#include "Orvane/OrvaneCore.h"
#include "Storage/Bundle/GameId.h"
#include "Storage/Log/Logger.h"
#include "System/Thread/Mutex.h"

namespace Quern {

Orvane::ILogger* GetOrvaneGameLog() {
    static CMutex* mutex = new CMutex(false);  // never destroyed: reached from any thread until the process ends
    static Logger* gameLog = nullptr;
    const CCritical guard(mutex);
    if (!gameLog) {
        const char* gameId = GameId();
        gameLog = new Logger(gameId);
        Orvane::Configure::GetInstance()->AddObserver(gameId, gameLog);
    }
    return gameLog;
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
