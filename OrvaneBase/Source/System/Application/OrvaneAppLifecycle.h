// What the library makes of the application's lifecycle: it starts itself at launch, tells its observers of every
// event, and lets one observer decide the orientations of a window.
//
// The logic alone: who delivers the events is no matter of this class. A hooked delegate does
// (OrvaneAppLifecycleDispatcher), or a host that calls it, here or by the run-time class "OrvaneAppLifecycle".
#ifndef ORVANE_SYSTEM_APPLICATION_ORVANE_APP_LIFECYCLE_H
#define ORVANE_SYSTEM_APPLICATION_ORVANE_APP_LIFECYCLE_H

#include <atomic>
#include <functional>
#include <vector>

#include "Orvane/AppLifecycle.h"
#include "System/Application/AppLifecycleEvents.h"
#include "System/Application/UnretainedPointer.h"

namespace Orvane {

// Main thread, but for innerAppState. Observers are instances of a run-time class that declares
// ORVANE_APP_LIFECYCLE_OBSERVER; AppLifecycle.h tells what the arguments of the events are.
class OrvaneAppLifecycle {
public:
    // The platform's numbers: of the application's state, and of the mask of orientations.
    static constexpr int kActive = 0;
    static constexpr int kBackground = 2;
    static constexpr unsigned long kAllOrientations = 30;  // if no observer decides

    // Made while the library loads; never destroyed.
    static OrvaneAppLifecycle* sharedInstance();

    // Observers are not retained, and hear events in the order of their addition, once however often they were added.
    // Null, and an object whose class does not declare the protocol, is ignored. These may be called while libraries
    // load, but never from inside an event.
    void addObserver(orvane_object* observer);
    void removeObserver(orvane_object* observer);
    // Calls the block with each observer, in order; an empty block does nothing.
    void foreachObserver(const std::function<void(orvane_object*)>& block);

    // kBackground until launch and after entering the background, kActive otherwise. Any thread.
    int innerAppState() const { return _innerAppState.load(std::memory_order_relaxed); }
    // Whether there is an observer that decides the orientations of a window.
    bool hasExtraSupportWindowImplementation();

    // Takes any event; the members below are its typed forms. `arguments` has one entry for each colon of the event's
    // selector. Returns 1 or 0 for a bool, a mask for the orientations, else null.
    void* Deliver(AppEvent event, void* const* arguments);

    // The launch: installs the core plugin, starts the log, tells the observers, and then starts all plugins.
    bool application_didFinishLaunchingWithOptions(void* application, void* options) {
        return Send(AppEvent::DidFinishLaunching, application, options);
    }
    bool handleOpenURL(const char* url) { return Send(AppEvent::HandleOpenURL, url); }
    bool application_openURL_options(void* application, const char* url, void* options) {
        return Send(AppEvent::OpenURLOptions, application, url, options);
    }
    bool application_openURL_sourceApplication_annotation(void* application, const char* url,
                                                          const char* sourceApplication, void* annotation) {
        return Send(AppEvent::OpenURLSourceApplication, application, url, sourceApplication, annotation);
    }
    void applicationDidEnterBackground(void* application) { Send(AppEvent::DidEnterBackground, application); }
    void applicationWillEnterForeground(void* application) { Send(AppEvent::WillEnterForeground, application); }
    void applicationDidBecomeActive(void* application) { Send(AppEvent::DidBecomeActive, application); }
    void applicationWillResignActive(void* application) { Send(AppEvent::WillResignActive, application); }
    void applicationWillTerminate(void* application) { Send(AppEvent::WillTerminate, application); }
    void applicationDidReceiveMemoryWarning(void* application) { Send(AppEvent::DidReceiveMemoryWarning, application); }
    void application_didRegisterForRemoteNotificationsWithDeviceToken(void* application, const char* token) {
        Send(AppEvent::DidRegisterForRemoteNotifications, application, token);
    }
    void application_didFailToRegisterForRemoteNotificationsWithError(void* application, const char* error) {
        Send(AppEvent::DidFailToRegisterForRemoteNotifications, application, error);
    }
    void application_didReceiveRemoteNotification_fetchCompletionHandler(void* application, const char* notification,
                                                                         void* handler) {
        Send(AppEvent::DidReceiveRemoteNotificationFetch, application, notification, handler);
    }
    void application_didReceiveRemoteNotification(void* application, const char* notification) {
        Send(AppEvent::DidReceiveRemoteNotification, application, notification);
    }
    void application_didReceiveLocalNotification(void* application, const char* notification) {
        Send(AppEvent::DidReceiveLocalNotification, application, notification);
    }
    bool application_continueUserActivity_restorationHandler(void* application, void* activity, void* handler) {
        return Send(AppEvent::ContinueUserActivity, application, activity, handler);
    }
    unsigned long application_supportedInterfaceOrientationsForWindow(void* application, void* window) {
        void* const arguments[] = {application, window};
        return reinterpret_cast<unsigned long>(Deliver(AppEvent::SupportedInterfaceOrientations, arguments));
    }
    void application_handleEventsForBackgroundURLSession_completionHandler(void* application, const char* identifier,
                                                                           void* handler) {
        Send(AppEvent::HandleEventsForBackgroundURLSession, application, identifier, handler);
    }

private:
    using Observer = Quern::UnretainedPointer<orvane_object>;

    OrvaneAppLifecycle() = default;

    // Delivers an event with its arguments; whether the answer is other than null.
    template <typename... Arguments>
    bool Send(AppEvent event, Arguments... arguments) {
        void* const array[] = {const_cast<void*>(static_cast<const void*>(arguments))...};
        return Deliver(event, array) != nullptr;
    }
    void Launch(void* const* arguments);
    void TellObservers(AppEvent event, void* const* arguments);
    // What the last observer that decides says, else all.
    unsigned long SupportedOrientations(void* const* arguments);

    std::vector<Observer> _observers;              // in the order of their addition
    std::atomic<int> _innerAppState{kBackground};  // read by any thread
};

// Makes the lifecycle object. One object of it is made while the library loads.
class CAppLifecycleLaunch {
public:
    CAppLifecycleLaunch();
};

}  // namespace Orvane

#endif
