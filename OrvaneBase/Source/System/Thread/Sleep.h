// Sleeping in milliseconds.
#ifndef ORVANE_SYSTEM_THREAD_SLEEP_H
#define ORVANE_SYSTEM_THREAD_SLEEP_H

namespace Quern {

// Blocks the calling thread. A signal ends the sleep early; zero yields; a negative time returns at once.
void SleepMS(long long milliseconds);

}  // namespace Quern

#endif
