// The application as the layer on top tells of it: its events go to an observer set of their own
// (Orvane/QuernApplicationObserver.h), and two of them on to the coarse stages of CApplication.
#ifndef ORVANE_SYSTEM_APPLICATION_QUERN_APPLICATION_H
#define ORVANE_SYSTEM_APPLICATION_QUERN_APPLICATION_H

#include <functional>
#include <vector>

#include "Orvane/QuernApplicationObserver.h"
#include "System/Application/UnretainedPointer.h"

namespace Quern {

// Main thread. An event goes to every observer, in the order of their addition, and what they return is ignored.
class QuernApplication {
public:
    // Made while the library loads; never destroyed.
    static QuernApplication* sharedInstance();

    // Observers are not retained, and are told once however often they were added. Null is ignored. Never call these
    // from inside an event.
    void addObserver(QuernApplicationObserver* observer);
    void removeObserver(QuernApplicationObserver* observer);
    // Calls the block with each observer, in order; an empty block does nothing.
    void foreachObserver(const std::function<void(QuernApplicationObserver*)>& block);

    // The application's view controller, kept for the layer on top; null at first.
    void* rootVC() const { return _rootVC; }
    void setRootVC(void* controller) { _rootVC = controller; }

    // Each tells its event to the observers; a bool is always true.
    bool handleOpenURL(const char* url);
    void applicationDidEnterBackground(void* application);   // and CApplication::OnPause
    void applicationWillEnterForeground(void* application);  // and CApplication::OnResume
    void applicationDidBecomeActive(void* application);
    void applicationWillResignActive(void* application);
    void applicationWillTerminate(void* application);
    bool applicationContinueUserActivity_Activity(void* application, void* activity);
    bool application_didFinishLaunchingWithOptions(void* application, void* options);
    void application_didRegisterForRemoteNotificationsWithDeviceToken(void* application, const char* token);
    void application_didFailToRegisterForRemoteNotificationsWithError(void* application, const char* error);
    void application_didReceiveRemoteNotification(void* application, const char* notification);
    void application_handleEventsForBackgroundURLSession_completionHandler(void* application, const char* identifier,
                                                                           void* handler);

private:
    QuernApplication() = default;

    template <typename Result, typename... Arguments>
    void Tell(Result (QuernApplicationObserver::*event)(Arguments...), Arguments... arguments) {
        foreachObserver([=](QuernApplicationObserver* observer) { (observer->*event)(arguments...); });
    }

    std::vector<UnretainedPointer<QuernApplicationObserver>> _observers;  // in the order of their addition
    void* _rootVC = nullptr;                                              // not owned, never looked into
};

// Makes the shared object. One object of it is made while the library loads.
class CLaunch {
public:
    CLaunch() { QuernApplication::sharedInstance(); }
};

}  // namespace Quern

#endif
