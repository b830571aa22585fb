// Whether the application is in the background, as the log asks on every line.
#ifndef ORVANE_SYSTEM_APPLICATION_BACKGROUND_STATE_H
#define ORVANE_SYSTEM_APPLICATION_BACKGROUND_STATE_H

namespace Quern {

// True exactly while the lifecycle object's innerAppState is 2: from load to launch, and from entering the background
// to becoming active. Any thread.
bool isIosBackground();

}  // namespace Quern

#endif
