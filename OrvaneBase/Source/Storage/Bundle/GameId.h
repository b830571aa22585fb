// The game's id, as the application's manifest tells it.
#ifndef ORVANE_STORAGE_BUNDLE_GAME_ID_H
#define ORVANE_STORAGE_BUNDLE_GAME_ID_H

namespace Quern {

// Section "Orvane", key "GameId", without the blanks around it. Looked up until found; once found it never changes, and
// its text stays valid for the life of the process. Empty if unknown, never null. Any thread.
const char* GameId();

}  // namespace Quern

#endif
