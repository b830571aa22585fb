/// \file IApplicationObserver.h
/// The coarse stages of the application, for native code: how to hear them, and how a host tells them. Header-only:
/// link liborvaneruntime.so and nothing else. C++11.
///
/// Nothing in the library brings a stage about by itself. The layer that sits on top, such as an engine's glue, calls
/// the functions below, or lets QuernApplication (Orvane/QuernApplicationObserver.h) derive pause and resume from the
/// application's events. The lifecycle of Orvane/AppLifecycle.h is another matter: neither hears of the other.
#ifndef ORVANE_I_APPLICATION_OBSERVER_H
#define ORVANE_I_APPLICATION_OBSERVER_H

#include "Orvane/RunTime.h"

namespace Quern {

/// Hears the stages from its construction to its destruction, or until the library is taken down, in the order of
/// construction. An operation runs on the thread that brought the stage about, under a recursive lock: it may destroy
/// observers, but must not make one or wait for another thread that does. Nobody brings a stage about on one thread
/// while another makes or destroys an observer: that one would be called before or after it has its operations. As a
/// rule one thread does both. Does nothing in a process without the library. The order of the virtual operations is a
/// contract between libraries.
class IApplicationObserver {
public:
    IApplicationObserver() { Tell("addObserver:"); }
    virtual ~IApplicationObserver() { Tell("removeObserver:"); }
    virtual void OnCreate() = 0;
    virtual void OnStart() = 0;
    virtual void OnPause() = 0;
    virtual void OnResume() = 0;
    virtual void OnStop() = 0;
    virtual void OnDestroy() = 0;

private:
    IApplicationObserver(const IApplicationObserver&);
    IApplicationObserver& operator=(const IApplicationObserver&);

    void Tell(const char* selector) {
        void* arguments[] = {this};
        orvane_class_perform(orvane_class_lookup("CApplication"), selector, arguments);
    }
};

}  // namespace Quern

/// Each brings one stage about and returns when every observer has heard it; two at a time follow each other. Any
/// thread, as long as no other one makes or destroys an observer meanwhile. Does nothing without the library.
inline void gs_OrvaneApplicationOnCreate() {
    orvane_class_perform(orvane_class_lookup("CApplication"), "OnCreate", nullptr);
}
inline void gs_OrvaneApplicationOnStart() {
    orvane_class_perform(orvane_class_lookup("CApplication"), "OnStart", nullptr);
}
inline void gs_OrvaneApplicationOnPause() {
    orvane_class_perform(orvane_class_lookup("CApplication"), "OnPause", nullptr);
}
inline void gs_OrvaneApplicationOnResume() {
    orvane_class_perform(orvane_class_lookup("CApplication"), "OnResume", nullptr);
}
inline void gs_OrvaneApplicationOnStop() {
    orvane_class_perform(orvane_class_lookup("CApplication"), "OnStop", nullptr);
}
/// First releases the network (Orvane/INetwork.h), which waits for a change that is being told on another thread.
inline void gs_OrvaneApplicationOnDestroy() {
    orvane_class_perform(orvane_class_lookup("CApplication"), "OnDestroy", nullptr);
}

#endif
