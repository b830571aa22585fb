// Starting the log's own threads.
#ifndef ORVANE_STORAGE_LOG_LOG_THREAD_H
#define ORVANE_STORAGE_LOG_LOG_THREAD_H

namespace Quern {

// Makes a detached-to-be thread, with a line on the console about how that went. False if there is none; there is no
// retry. `argument` then stays with the caller.
bool LogCreateThread(void* (*routine)(void*), const char* name, void* argument);

}  // namespace Quern

#endif
