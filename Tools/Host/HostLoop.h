// The host's one loop: events of the script, signals, the end of a load and the library's main run loop.
//
// It shows how an engine embeds that run loop in its own: it waits on the run loop's descriptor beside its own ones,
// and runs what is pending when that is readable.
#ifndef ORVANE_TOOLS_HOST_HOST_LOOP_H
#define ORVANE_TOOLS_HOST_HOST_LOOP_H

#include "EventScript.h"
#include "LineFeed.h"
#include "LineReader.h"

namespace OrvaneHost {

// Main thread only.
class HostLoop {
public:
    // `input` is the script's descriptor, `signals` the one of WatchStopSignals. Both are borrowed, as is the rest.
    HostLoop(int input, int signals, EventScript& script, LineFeed& feed);

    // Returns at the end of the script (and of the load), at "quit", or after the orderly stop that a signal asked for.
    void Run();

private:
    // Performs the lines that have been read, until one of them holds up the next or leaves the host.
    void PerformLines();
    // Whether Run is to return.
    bool IsFinished() const;
    // Waits for the next thing to do, for as long as it takes, and does it.
    void Wait();

    int _input;    // the script's descriptor
    int _signals;  // readable once the host is asked to stop
    EventScript& _script;
    LineFeed& _feed;
    LineReader _lines;
    bool _linesLeft = false;   // whole lines may be waiting behind a pause
    bool _terminated = false;  // a signal has asked for the stop, and that is done
};

// From now on SIGTERM and SIGINT make the returned descriptor readable and do nothing else; SIGPIPE does nothing. Call
// it once. -1 if there can be no pipe, and then all is as before.
int WatchStopSignals();

}  // namespace OrvaneHost

#endif
