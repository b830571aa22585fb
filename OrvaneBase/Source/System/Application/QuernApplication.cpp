#include "System/Application/QuernApplication.h"

#include <algorithm>

#include "System/Application/CApplication.h"

namespace Quern {

using Observer = QuernApplicationObserver;

QuernApplication* QuernApplication::sharedInstance() {
    static QuernApplication* instance = new QuernApplication;  // never destroyed: observers may go later
    return instance;
}

void QuernApplication::addObserver(Observer* observer) {
    if (!observer) return;
    const auto pointer = UnretainedPointer<Observer>::pointerWithObject(observer);
    if (std::find(_observers.begin(), _observers.end(), pointer) == _observers.end()) _observers.push_back(pointer);
}

void QuernApplication::removeObserver(Observer* observer) {
    if (!observer) return;
    const auto pointer = UnretainedPointer<Observer>::pointerWithObject(observer);
    const auto found = std::find(_observers.begin(), _observers.end(), pointer);
    if (found != _observers.end()) _observers.erase(found);
}

void QuernApplication::foreachObserver(const std::function<void(Observer*)>& block) {
    if (!block) return;
    // By index, so that an observer that breaks the rule and changes the set costs a turn and no memory.
    for (size_t i = 0; i < _observers.size(); ++i)
        block(_observers[i].object());
}

bool QuernApplication::handleOpenURL(const char* url) {
    Tell(&Observer::handleOpenURL, url);
    return true;
}

void QuernApplication::applicationDidEnterBackground(void* application) {
    Tell(&Observer::applicationDidEnterBackground, application);
    CApplication::GetInstance()->OnPause();
}

void QuernApplication::applicationWillEnterForeground(void* application) {
    Tell(&Observer::applicationWillEnterForeground, application);
    CApplication::GetInstance()->OnResume();
}

void QuernApplication::applicationDidBecomeActive(void* application) {
    Tell(&Observer::applicationDidBecomeActive, application);
}

void QuernApplication::applicationWillResignActive(void* application) {
    Tell(&Observer::applicationWillResignActive, application);
}

void QuernApplication::applicationWillTerminate(void* application) {
    Tell(&Observer::applicationWillTerminate, application);
}

bool QuernApplication::applicationContinueUserActivity_Activity(void* application, void* activity) {
    Tell(&Observer::applicationContinueUserActivity_Activity, application, activity);
    return true;
}

bool QuernApplication::application_didFinishLaunchingWithOptions(void* application, void* options) {
    Tell(&Observer::application_didFinishLaunchingWithOptions, application, options);
    return true;
}

void QuernApplication::application_didRegisterForRemoteNotificationsWithDeviceToken(void* application,
                                                                                    const char* token) {
    Tell(&Observer::application_didRegisterForRemoteNotificationsWithDeviceToken, application, token);
}

void QuernApplication::application_didFailToRegisterForRemoteNotificationsWithError(void* application,
                                                                                    const char* error) {
    Tell(&Observer::application_didFailToRegisterForRemoteNotificationsWithError, application, error);
}

void QuernApplication::application_didReceiveRemoteNotification(void* application, const char* notification) {
    Tell(&Observer::application_didReceiveRemoteNotification, application, notification);
}

void QuernApplication::application_handleEventsForBackgroundURLSession_completionHandler(void* application,
                                                                                         const char* identifier,
                                                                                         void* handler) {
    Tell(&Observer::application_handleEventsForBackgroundURLSession_completionHandler, application, identifier,
         handler);
}

}  // namespace Quern
