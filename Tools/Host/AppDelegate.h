// The application class: what the platform would send events to.
//
// Registered in the run-time table as "HostAppDelegate" and hooked there by the library, so that an event reaches the
// library first and the delegate's own code then, which says on the console what it was told.
#ifndef ORVANE_TOOLS_HOST_APP_DELEGATE_H
#define ORVANE_TOOLS_HOST_APP_DELEGATE_H

#include <cstdint>
#include <string>

struct orvane_object;

namespace OrvaneHost {

// Main thread only.
class AppDelegate {
public:
    // The events that say nothing but that they happened; their one argument is the application.
    static constexpr char kDidEnterBackground[] = "applicationDidEnterBackground:";
    static constexpr char kWillEnterForeground[] = "applicationWillEnterForeground:";
    static constexpr char kWillResignActive[] = "applicationWillResignActive:";
    static constexpr char kDidBecomeActive[] = "applicationDidBecomeActive:";
    static constexpr char kDidReceiveMemoryWarning[] = "applicationDidReceiveMemoryWarning:";
    static constexpr char kWillTerminate[] = "applicationWillTerminate:";

    // Registers the class, has it hooked and makes the one instance.
    AppDelegate();
    ~AppDelegate();
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    void DidFinishLaunching();
    // `selector` is one of the constants above.
    void Send(const char* selector);
    void OpenUrl(const std::string& url);
    // The mask that the system would see.
    uintptr_t SupportedOrientations();

private:
    orvane_object* _delegate;
};

}  // namespace OrvaneHost

#endif
