// By the console, since a line of the log about the log's own thread would wait for that thread.
#include "Storage/Log/LogThread.h"

#include <pthread.h>

#include "Base/XLog.h"

namespace Quern {

bool LogCreateThread(void* (*routine)(void*), const char* name, void* argument) {
    pthread_t thread;
    const int error = pthread_create(&thread, nullptr, routine, argument);
    if (error != 0) {
        ORVANE_CONSOLE(kLogError, "pthread_create %s failed:%d", name, error);
        return false;
    }
    ORVANE_CONSOLE(kLogInfo, "pthread_create %s:%p", name, reinterpret_cast<void*>(thread));
    return true;
}

}  // namespace Quern
