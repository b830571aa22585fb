// The run loop of the process's main thread: where calls, one-shot timers and watched descriptors come to life.
//
// A host either runs it (Run until Stop) or embeds it in a loop of its own: it polls Descriptor() for reading and calls
// RunPending() whenever that is ready. Libraries outside this one reach it through Orvane/MainRunLoop.h.
//
// The main thread is the one that ran main. Thread rule: Run, RunPending and Descriptor belong to it; everything else
// may be called from any thread, also before anybody runs the loop, from inside a call, and while a library loads.
// Whatever comes from one thread is taken up in its order. Every call, timer and handler runs on the main thread with
// no lock held.
#ifndef ORVANE_SYSTEM_APPLICATION_MAIN_RUN_LOOP_H
#define ORVANE_SYSTEM_APPLICATION_MAIN_RUN_LOOP_H

#include <cstdint>
#include <functional>

#include "Base/Seam.h"

namespace Quern {

class MainRunLoop : public Seam<MainRunLoop> {
public:
    using Call = std::function<void()>;
    // Names a timer or a watch; never 0 and never reused.
    using Id = uint64_t;

    // What a watch waits for and is told, as bits. kFailed is only told: the descriptor cannot be watched, and the
    // watch has ended.
    enum Events : int { kReadable = 1, kWritable = 2, kFailed = 4 };
    using Handler = std::function<void(int events)>;

    // Whether the caller is on the main thread.
    virtual bool IsMainThread() = 0;

    // Queues the call and returns. An empty one is ignored.
    virtual void Post(Call call) = 0;
    // Returns when the call has been performed; on the main thread that is at once, past what is queued. From another
    // thread this waits for as long as nobody runs the loop.
    virtual void PostAndWait(const Call& call) = 0;

    // Performs the call once, not before that many milliseconds from now (below 0 counts as 0).
    virtual Id StartTimer(long long milliseconds, Call call) = 0;
    // On the main thread the call is not performed after this; on another, a call that is due may still be. An id that
    // has fired or is unknown is ignored.
    virtual void CancelTimer(Id timer) = 0;

    // Calls the handler whenever the descriptor is ready for what `events` asks, again and again until it is drained.
    // Puts the descriptor into non-blocking mode; regular files cannot be watched. One watch for a descriptor at a
    // time.
    virtual Id Watch(int descriptor, int events, Handler handler) = 0;
    // On the main thread the handler is not called after this, and the descriptor may be closed. On another thread that
    // holds once a call posted afterwards has been performed.
    virtual void Unwatch(Id watch) = 0;

    // Runs the loop until Stop. False at once, with nothing done, on another thread or from inside the loop.
    virtual bool Run() = 0;
    // Ends Run after what was queued before it. Before Run, it ends the next one likewise; for a host that embeds the
    // loop it does nothing.
    virtual void Stop() = 0;
    // Ready for reading whenever RunPending has something to do, timers included. Owned by the loop; -1 if the system
    // has none left.
    virtual int Descriptor() = 0;
    // Does what is due and returns without waiting. Does nothing on another thread or from inside the loop.
    virtual void RunPending() = 0;
};

template <>
std::shared_ptr<MainRunLoop> Seam<MainRunLoop>::MakeBuiltIn();

}  // namespace Quern

#endif
