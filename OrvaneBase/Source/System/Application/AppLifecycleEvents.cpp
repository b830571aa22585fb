#include "System/Application/AppLifecycleEvents.h"

#include <cstring>

namespace Orvane {

// The hook's lines stand as they are, some with brackets and some without: whoever searches a console goes by the text.
constexpr std::array<AppEventDescription, kAppEventCount> kAppEvents = {{
    {AppEvent::DidFinishLaunching, "application:didFinishLaunchingWithOptions:", true,
     "[OrvaneAppLifecycleDispatcher orvane_application: didFinishLaunchingWithOptions:]", 0},
    {AppEvent::HandleOpenURL, "handleOpenURL:", true, "OrvaneAppLifecycleDispatcher orvane_handleOpenURL: %@", 0},
    {AppEvent::OpenURLOptions, "application:openURL:options:", true,
     "[OrvaneAppLifecycleDispatcher orvane_application: openURL: %@, options:]", 1},
    {AppEvent::OpenURLSourceApplication, "application:openURL:sourceApplication:annotation:", true,
     "[OrvaneAppLifecycleDispatcher orvane_application: openURL: %@, sourceApplication:annotation:]", 1},
    {AppEvent::DidEnterBackground, "applicationDidEnterBackground:", false, nullptr, 0},
    {AppEvent::WillEnterForeground, "applicationWillEnterForeground:", false, nullptr, 0},
    {AppEvent::DidBecomeActive, "applicationDidBecomeActive:", false, nullptr, 0},
    {AppEvent::WillResignActive, "applicationWillResignActive:", false, nullptr, 0},
    {AppEvent::WillTerminate, "applicationWillTerminate:", false, nullptr, 0},
    {AppEvent::DidReceiveMemoryWarning, "applicationDidReceiveMemoryWarning:", false, nullptr, 0},
    {AppEvent::DidRegisterForRemoteNotifications, "application:didRegisterForRemoteNotificationsWithDeviceToken:",
     false, "OrvaneAppLifecycleDispatcher orvane_application: didRegisterForRemoteNotificationsWithDeviceToken: %@", 1},
    {AppEvent::DidFailToRegisterForRemoteNotifications, "application:didFailToRegisterForRemoteNotificationsWithError:",
     false, "OrvaneAppLifecycleDispatcher orvane_application: didFailToRegisterForRemoteNotificationsWithError: %@", 1},
    {AppEvent::DidReceiveRemoteNotificationFetch,
     "application:didReceiveRemoteNotification:fetchCompletionHandler:", false,
     "OrvaneAppLifecycleDispatcher orvane_application: didReceiveRemoteNotification:%@ fetchCompletionHandler:", 1},
    {AppEvent::DidReceiveRemoteNotification, "application:didReceiveRemoteNotification:", false,
     "OrvaneAppLifecycleDispatcher orvane_application: didReceiveRemoteNotification:%@", 1},
    {AppEvent::DidReceiveLocalNotification, "application:didReceiveLocalNotification:", false, nullptr, 0},
    {AppEvent::ContinueUserActivity, "application:continueUserActivity:restorationHandler:", true,
     "[OrvaneAppLifecycleDispatcher orvane_application: continueUserActivity: restorationHandler:]", 0},
    {AppEvent::SupportedInterfaceOrientations, "application:supportedInterfaceOrientationsForWindow:", false, nullptr,
     0},
    {AppEvent::HandleEventsForBackgroundURLSession,
     "application:handleEventsForBackgroundURLSession:completionHandler:", false,
     "[OrvaneAppLifecycleDispatcher orvane_application: handleEventsForBackgroundURLSession: completionHandler:]", 0},
}};

namespace {

constexpr size_t ArgumentCount(const char* selector) {
    size_t colons = 0;
    for (; *selector; ++selector)
        colons += *selector == ':';
    return colons;
}

constexpr bool IsTableSound() {
    for (size_t i = 0; i < kAppEvents.size(); ++i) {
        const size_t arguments = ArgumentCount(kAppEvents[i].selector);
        if (kAppEvents[i].event != static_cast<AppEvent>(i) || arguments > kMaxAppEventArguments ||
            kAppEvents[i].hookLineArgument >= arguments)
            return false;
    }
    return true;
}
static_assert(IsTableSound(), "the table is indexed by AppEvent, and a line prints an argument that its event has");

}  // namespace

const AppEventDescription* FindAppEvent(const char* selector) {
    if (!selector) return nullptr;
    for (const AppEventDescription& description : kAppEvents)
        if (strcmp(description.selector, selector) == 0) return &description;
    return nullptr;
}

void* const* AppEventArgumentsOrNulls(void* const* arguments) {
    static void* const kNulls[kMaxAppEventArguments] = {};
    return arguments ? arguments : kNulls;
}

}  // namespace Orvane
