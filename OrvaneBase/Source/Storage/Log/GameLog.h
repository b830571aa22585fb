// The game's own logger, named after the game id.
#ifndef ORVANE_STORAGE_LOG_GAME_LOG_H
#define ORVANE_STORAGE_LOG_GAME_LOG_H

namespace Quern {

class Logger;

// Makes it at the first call, without initialising it: its caller does that. Never null, never destroyed. Any thread.
Logger* GetOrvaneGameLog();

}  // namespace Quern

#endif
