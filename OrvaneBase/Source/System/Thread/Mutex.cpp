#include "System/Thread/Mutex.h"

namespace Quern {

CMutex::CMutex(bool recursive) {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, recursive ? PTHREAD_MUTEX_RECURSIVE : PTHREAD_MUTEX_DEFAULT);
    pthread_mutex_init(&_mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
}

CMutex::~CMutex() {
    pthread_mutex_destroy(&_mutex);
}

}  // namespace Quern
