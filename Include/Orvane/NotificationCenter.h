/// \file NotificationCenter.h
/// The process's notification centre: what one part posts under a name, observers of that name hear. For code that does
/// not link to the library. Header-only: link liborvaneruntime.so and nothing else. C++11.
///
/// The library posts "NetworkAReachabilityChangedNotification" on the main thread whenever the system reported a change
/// of the network, behind the observers of the reachability; the object is opaque.
#ifndef ORVANE_NOTIFICATION_CENTER_H
#define ORVANE_NOTIFICATION_CENTER_H

#include "Orvane/RunTime.h"

/// Told on the thread that posts, with no lock held. The name is valid for the call.
typedef void (*OrvaneNotificationFunction)(void* observer, const char* name, void* object);

/// Enters an observer of a name; observers of one name are told in the order of their entry. The observer is any
/// pointer that names it: it is handed to the function and otherwise not touched. Any thread. Does nothing for a null
/// function or name, and without the library.
inline void gs_OrvaneAddNotificationObserver(void* observer, OrvaneNotificationFunction function, const char* name) {
    void* arguments[] = {observer, reinterpret_cast<void*>(function), const_cast<char*>(name)};
    orvane_class_perform(orvane_class_lookup("OrvaneNotificationCenter"), "addObserver:function:name:", arguments);
}

/// Removes every entry of the observer under that name; under all names for null. It is not told afterwards, unless
/// another thread is telling it at this moment. Any thread.
inline void gs_OrvaneRemoveNotificationObserver(void* observer, const char* name) {
    void* arguments[] = {observer, const_cast<char*>(name)};
    orvane_class_perform(orvane_class_lookup("OrvaneNotificationCenter"), "removeObserver:name:", arguments);
}

#endif
