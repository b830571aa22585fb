// The host's one loop: events of the script, signals, the end of a load and the library's main run loop.
#ifndef ORVANE_TOOLS_HOST_HOST_LOOP_H
#define ORVANE_TOOLS_HOST_HOST_LOOP_H

#include "EventScript.h"
#include "LineFeed.h"
#include "LineReader.h"

namespace OrvaneHost {

// Main thread only.
class HostLoop {
public:
    // `input` is the script's descriptor, `signals` the one of WatchStopSignals.
    HostLoop(int input, int signals, EventScript& script, LineFeed& feed);

    // Returns at the end of the script (and of the load), at "quit", or after the orderly stop that a signal asked for.
    void Run();

private:
    // Performs the lines that have been read, until one of them holds up the next or leaves the host.
    void PerformLines();
    bool IsFinished() const;
    void Wait();

    int _input;
    int _signals;
    EventScript& _script;
    LineFeed& _feed;
    LineReader _lines;
    bool _linesLeft = false;  // whole lines may be waiting behind a pause
    bool _terminated = false;
};

// From now on SIGTERM and SIGINT make the returned descriptor readable and do nothing else; SIGPIPE does nothing.
int WatchStopSignals();

}  // namespace OrvaneHost

#endif
