// Work for the library's shared queue, as a game's own background work would be.
#ifndef ORVANE_TOOLS_HOST_OPERATION_LOAD_H
#define ORVANE_TOOLS_HOST_OPERATION_LOAD_H

#include <cstdint>

namespace OrvaneHost {

// Queues that many operations of a few milliseconds, which say on the console when the last of them has run, and one
// that repeats until the library is taken down. Main thread.
void QueueOperations(uint64_t count);

// Says on the console how many have run so far; nothing if none was ever queued. Main thread.
void TellOperations(const char* occasion);

}  // namespace OrvaneHost

#endif
