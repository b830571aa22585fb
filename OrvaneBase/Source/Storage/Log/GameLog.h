// The game's own logger, named after the game id, and what tells a game that no log is kept.
#ifndef ORVANE_STORAGE_LOG_GAME_LOG_H
#define ORVANE_STORAGE_LOG_GAME_LOG_H

namespace Quern {

class Logger;

// Makes it at the first call, without initialising it: its caller does that. Never null, never destroyed. Any thread.
Logger* GetOrvaneGameLog();

// Registers the class "OrvaneGameLog" with the class method "state", which Orvane/Game.h asks. Called once, while the
// library loads.
void RegisterGameLogClass();

}  // namespace Quern

#endif
