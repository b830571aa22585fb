/// \file QuernApplicationObserver.h
/// The application's events as the layer on top tells them to the run-time class "QuernApplication": how to hear them,
/// and how to tell them. Header-only: link liborvaneruntime.so and nothing else. C++11.
///
/// This is the older of two ways to hear about the application. The library delivers nothing here by itself, and what
/// its hook sees (Orvane/AppLifecycle.h) does not come here. Arguments are those of Orvane/AppLifecycle.h. Everything
/// here belongs to the main thread, but for observers that are made while libraries load.
#ifndef ORVANE_QUERN_APPLICATION_OBSERVER_H
#define ORVANE_QUERN_APPLICATION_OBSERVER_H

#include "Orvane/RunTime.h"

/// Sends a selector to the process's shared QuernApplication: an event, or "setRootVC:" and "rootVC" for the view
/// controller of the application, an opaque pointer.
/// \param arguments one entry for each colon of the selector
/// \return 1 or 0 for an event with a bool, the pointer for "rootVC", else null; null without the library
inline void* gs_QuernApplicationPerform(const char* selector, void* const* arguments) {
    void* shared = orvane_class_perform(orvane_class_lookup("QuernApplication"), "sharedInstance", nullptr);
    return orvane_object_perform(static_cast<orvane_object*>(shared), selector, arguments);
}

namespace Quern {

/// Hears every event from its construction to its destruction, which never come from inside an event. A subclass
/// overrides what it needs; what an operation returns is ignored. The order of the virtual operations is a contract
/// between libraries.
class QuernApplicationObserver {
public:
    QuernApplicationObserver() { Tell("addObserver:"); }
    virtual ~QuernApplicationObserver() { Tell("removeObserver:"); }

    virtual void initialize() {}
    virtual bool handleOpenURL(const char* /*url*/) { return false; }
    virtual void applicationDidEnterBackground(void* /*application*/) {}
    virtual void applicationWillEnterForeground(void* /*application*/) {}
    virtual void applicationDidBecomeActive(void* /*application*/) {}
    virtual void applicationWillResignActive(void* /*application*/) {}
    virtual void applicationWillTerminate(void* /*application*/) {}
    virtual bool applicationContinueUserActivity_Activity(void* /*application*/, void* /*activity*/) { return false; }
    virtual bool application_didFinishLaunchingWithOptions(void* /*application*/, void* /*options*/) { return false; }
    virtual void application_didRegisterForRemoteNotificationsWithDeviceToken(void* /*application*/,
                                                                              const char* /*token*/) {}
    virtual void application_didFailToRegisterForRemoteNotificationsWithError(void* /*application*/,
                                                                              const char* /*error*/) {}
    virtual void application_didReceiveRemoteNotification(void* /*application*/, const char* /*notification*/) {}
    virtual void application_handleEventsForBackgroundURLSession_completionHandler(void* /*application*/,
                                                                                   const char* /*identifier*/,
                                                                                   void* /*handler*/) {}

private:
    QuernApplicationObserver(const QuernApplicationObserver&);
    QuernApplicationObserver& operator=(const QuernApplicationObserver&);

    void Tell(const char* selector) {
        void* arguments[] = {this};
        gs_QuernApplicationPerform(selector, arguments);
    }
};

}  // namespace Quern

#endif
