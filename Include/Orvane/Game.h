/// \file Game.h
/// What a game says to the library about itself, and what it asks about its log. Header-only, C99 and C++11.
///
/// Nothing of the library starts before it has been told of the launch: until then no plugin is called, no setting
/// comes from a server, and log lines of the modes 1 and 2 wait in memory. On a phone the library hears of the launch
/// by itself, because the platform has an application object. A game that has none, which is every plain program, calls
/// these functions instead:
///
///     gs_OrvaneGameLaunched();           // at the begin of main
///     gs_OrvaneGameEnteredBackground();  // the player has put the game aside
///     gs_OrvaneGameCameBack();           // and goes on
///     gs_OrvaneGameEnds();               // before main returns
///
/// Do not call them in a game that has an application object in the run-time table (Orvane/AppLifecycle.h) and is
/// hooked by its name: the plugins would be started twice.
///
/// The functions find the library by run-time classes. In a process without it they do nothing and give false: a game
/// that calls nothing else of it links it with --no-as-needed, or opens it. All belong to the main thread, but for
/// gs_OrvaneGameLogState.
#ifndef ORVANE_GAME_H
#define ORVANE_GAME_H

#include <stdbool.h>

#include "Orvane/RunTime.h"

/// What becomes of a line that the game's logger (orvane_log_logx) is given now. The numbers are a contract.
typedef enum orvane_log_state {
    /// It is on the console at best: there is no library, orvane_log_init has not been called, or what was logged last
    /// could not be written (the folder cannot be made, the disk is full, the file has reached its limit).
    kOrvaneLogNotKept = 0,
    /// It waits in memory, and is lost if the process dies: the modes 1 and 2 before the launch or in the background.
    /// At most 1000 lines wait, and reach the log with the first line that is logged in the foreground; further ones
    /// are on the console alone.
    kOrvaneLogWaits = 1,
    /// It reaches the file, but the newest lines are lost if the process is killed: mode 0, the default, or a device on
    /// which no file can be mapped.
    kOrvaneLogBuffered = 2,
    /// It is safe from the moment when the call returns, whatever happens to the process: the modes 1 and 2. Only lines
    /// that come faster than the log can be written are lost, and a marker stands in their place (ILogger::Log).
    kOrvaneLogDurable = 3
} orvane_log_state;

/// Tells one event of the application. For the functions below.
/// \return whether there is a library to tell it to
ORVANE_RUNTIME_INLINE bool gs_OrvaneGameTell(const char* event) {
    void* arguments[2] = {NULL, NULL}; /* the platform's application object, and the options of its launch */
    orvane_object* lifecycle =
        orvane_result_object(orvane_class_perform(orvane_class_lookup("OrvaneAppLifecycle"), "sharedInstance", NULL));
    orvane_object_perform(lifecycle, event, arguments);
    return lifecycle != NULL;
}

/// The game has launched. Starts the library: its own log, then every plugin, all before this returns. Once, before the
/// game's own work; the manifest is set (Orvane/InfoPlist.h) and plugins are opened before it.
ORVANE_RUNTIME_INLINE bool gs_OrvaneGameLaunched(void) {
    return gs_OrvaneGameTell("application:didFinishLaunchingWithOptions:");
}

/// The game has gone to the background. From now on lines of the modes 1 and 2 wait in memory, since a device may lock
/// its files.
ORVANE_RUNTIME_INLINE bool gs_OrvaneGameEnteredBackground(void) {
    return gs_OrvaneGameTell("applicationWillResignActive:") && gs_OrvaneGameTell("applicationDidEnterBackground:");
}

/// The game is back in the foreground. Not needed behind gs_OrvaneGameLaunched.
ORVANE_RUNTIME_INLINE bool gs_OrvaneGameCameBack(void) {
    return gs_OrvaneGameTell("applicationWillEnterForeground:") && gs_OrvaneGameTell("applicationDidBecomeActive:");
}

/// The game ends: tells the observers, then gives each plugin its two last stages. Nothing of the library is taken
/// down, and its functions can be called until the process is gone. No call is needed for the sake of the log.
ORVANE_RUNTIME_INLINE bool gs_OrvaneGameEnds(void) {
    orvane_object* plugins =
        orvane_result_object(orvane_class_perform(orvane_class_lookup("PluginUtils"), "sharedInstance", NULL));
    const bool isThere = gs_OrvaneGameTell("applicationWillTerminate:");
    orvane_object_perform(plugins, "nativePreShutdown", NULL);
    orvane_object_perform(plugins, "nativeShutdown", NULL);
    return isThere;
}

/// What becomes of the lines of the game's log. Any thread, any time; waits for nothing. A game asks behind
/// orvane_log_init, and once more where it wants to know whether a line has been written.
ORVANE_RUNTIME_INLINE orvane_log_state gs_OrvaneGameLogState(void) {
    switch (orvane_result_int(orvane_class_perform(orvane_class_lookup("OrvaneGameLog"), "state", NULL))) {
        case kOrvaneLogWaits:
            return kOrvaneLogWaits;
        case kOrvaneLogBuffered:
            return kOrvaneLogBuffered;
        case kOrvaneLogDurable:
            return kOrvaneLogDurable;
        default:
            return kOrvaneLogNotKept;
    }
}

#endif
