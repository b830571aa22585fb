// The application's events: the one table behind the lifecycle object, its run-time class and the delegate's hook.
#ifndef ORVANE_SYSTEM_APPLICATION_APP_LIFECYCLE_EVENTS_H
#define ORVANE_SYSTEM_APPLICATION_APP_LIFECYCLE_EVENTS_H

#include <array>
#include <cstddef>

namespace Orvane {

// In the order of the observer protocol, which is also the order in which the delegate is hooked.
enum class AppEvent {
    DidFinishLaunching,
    HandleOpenURL,
    OpenURLOptions,
    OpenURLSourceApplication,
    DidEnterBackground,
    WillEnterForeground,
    DidBecomeActive,
    WillResignActive,
    WillTerminate,
    DidReceiveMemoryWarning,
    DidRegisterForRemoteNotifications,
    DidFailToRegisterForRemoteNotifications,
    DidReceiveRemoteNotificationFetch,
    DidReceiveRemoteNotification,
    DidReceiveLocalNotification,
    ContinueUserActivity,
    SupportedInterfaceOrientations,
    HandleEventsForBackgroundURLSession,
};

// What is known of one event. The texts are literals.
struct AppEventDescription {
    AppEvent event;
    const char* selector;     // a colon for each argument
    bool answersYes;          // what the lifecycle object returns; otherwise nothing (but a mask of orientations)
    const char* hookLine;     // what the hook writes when the event arrives, "%@" for the argument below; null: nothing
    size_t hookLineArgument;  // index of the argument that the line prints
};

constexpr size_t kAppEventCount = 18;
constexpr size_t kMaxAppEventArguments = 4;

extern const std::array<AppEventDescription, kAppEventCount> kAppEvents;  // indexed by AppEvent

inline const AppEventDescription& DescribeAppEvent(AppEvent event) {
    return kAppEvents[static_cast<size_t>(event)];
}

// The event of that selector, or null.
const AppEventDescription* FindAppEvent(const char* selector);

// An event that came without its array of arguments counts as one whose arguments are all null. Gives the array, or one
// of kMaxAppEventArguments nulls, which is valid for the process.
void* const* AppEventArgumentsOrNulls(void* const* arguments);

}  // namespace Orvane

#endif
