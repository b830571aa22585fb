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

    // Registers the class, has it hooked and makes the one instance. At most one in a process: the run-time table keeps
    // a class for good.
    AppDelegate();
    ~AppDelegate();
    AppDelegate(const AppDelegate&) = delete;
    AppDelegate& operator=(const AppDelegate&) = delete;

    // The launch: starts the library, its plugins included, before the delegate's own code runs. Returns when all that
    // is done on the main thread.
    void DidFinishLaunching();
    // Sends an event. `selector` is one of the constants above.
    void Send(const char* selector);
    // Asks the application to open a URL, which is not checked here.
    void OpenUrl(const std::string& url);
    // Asks for the orientations that the window supports. Gives the mask that the system would see, in UIKit's bits: 2
    // is portrait.
    uintptr_t SupportedOrientations();

private:
    orvane_object* _delegate;  // owned
};

}  // namespace OrvaneHost

#endif
