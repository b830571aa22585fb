/// \file AppLifecycle.h
/// How another library observes the application's lifecycle without linking to the host: an object of a run-time class
/// that declares the observer protocol and has a method for each event it wants.
///
/// Arguments of the events, in the order of the selector's colons: the application is an opaque pointer; a URL, a
/// device token, an error and a notification are null-terminated UTF-8 texts (a notification as JSON); options,
/// annotations, handlers, activities and windows are opaque pointers of the application's making and may be null.
/// C99 and C++11.
#ifndef ORVANE_APP_LIFECYCLE_H
#define ORVANE_APP_LIFECYCLE_H

#include "Orvane/RunTime.h"

/// The protocol that an observer's class declares (orvane_class_add_protocol).
#define ORVANE_APP_LIFECYCLE_OBSERVER "OrvaneAppLifecycleObserver"

/// Adds an observer to the process's lifecycle object. Does nothing in a process without the host, or where the object
/// does not declare the protocol. The object is not retained: it removes itself before it dies. Main thread, or while
/// libraries load; never from inside an event.
/// \param observer an orvane_object*
ORVANE_RUNTIME_INLINE void gs_OrvaneAppLifecycleAddObserver(void* observer) {
    orvane_object* wrapper = orvane_object_create(orvane_class_lookup("OrvaneAppLifecycleWrapper"));
    if (orvane_object_responds(wrapper, "addObserver:")) {
        void* arguments[1];
        arguments[0] = observer;
        orvane_object_perform(wrapper, "addObserver:", arguments);
    }
    orvane_object_release(wrapper);
}

#endif
