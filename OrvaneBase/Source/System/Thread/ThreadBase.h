// A thread object: one thread for one object, with a protocol to start, pause, resume and destroy it.
//
// The constructor makes the thread at once; it rests until Start. Then it runs OnThreadProc again and again, and after
// each of these passes the selectors that other threads handed to it, until Stop. The base has no sleep of its own:
// OnThreadProc decides how long a pass lasts.
//
// The events of the protocol have no memory (see CEvent). Hence its shape: whoever waits looks at the flags first, once
// more under the event's lock, and the starting thread polls a while before it waits. A thread whose Start never comes
// rests for good, and neither Stop nor Destroy frees it; one whose Start was followed by a Stop ends without a pass.
//
// Thread rule: the virtual operations run on the object's own thread, everything else may be called from any as long as
// nobody has called Destroy.
#ifndef ORVANE_SYSTEM_THREAD_THREAD_BASE_H
#define ORVANE_SYSTEM_THREAD_THREAD_BASE_H

#include <pthread.h>

#include <atomic>

#include "System/Thread/Atomic.h"
#include "System/Thread/Condition.h"
#include "System/Thread/Mutex.h"
#include "System/Thread/SelectorList.h"
#include "System/Thread/TargetBase.h"

namespace Quern {

class CThreadBase : public CTargetBase {
public:
    enum State { kStarting = 0, kRunning = 1, kPaused = 2, kExited = 3 };

    // A thread that cannot be made is not reported: the object then has none, and Start has no effect to be seen.
    CThreadBase();
    ~CThreadBase() override;
    CThreadBase(const CThreadBase&) = delete;
    CThreadBase& operator=(const CThreadBase&) = delete;

    // One pass. Not called while paused.
    virtual void OnThreadProc() = 0;
    virtual void OnThreadStart() {}
    virtual void OnThreadExit() {}
    virtual void OnThreadPause() {}
    // Told after each pause, and in the first pass after the start.
    virtual void OnThreadResume() {}
    // Part of the interface; the base never calls it.
    virtual void OnThreadError(int code) {}

    void Start();
    // Asks the thread to end after its pass; does not wait. Does nothing before Start and the second time.
    void Stop();
    void Pause();
    // Only for a running thread. `yield` gives up the processor to it.
    void Resume(bool yield);

    // Hands a call to the thread, on this object; performed in order, each once, after a pass.
    void AddSelector(void (CTargetBase::*member)());
    void AddSelector(void (CTargetBase::*member)(void*), void* data);

    // Stops the thread and clears the caller's pointer; null, and a pointer to null, are allowed.
    // selfDelete: the object is deleted, by its thread when that ends, or here if it has ended; does not wait for it.
    // Otherwise waits for the end, which must still be to come, and does not delete the object.
    static void Destroy(CThreadBase** thread, bool selfDelete);

    // Blocks the calling thread. True if no signal ended the sleep early.
    static bool Sleep(int milliseconds);

    // For looking at only: it may have changed by the time the caller has it.
    State GetThreadState() const { return _state.load(std::memory_order_relaxed); }

private:
    static void* onThreadProc(void* object);
    bool waitForStart();
    void runLoop();
    bool pauseThread();
    bool markForSelfDelete();
    bool isSelfDeleting() const { return _end.load(std::memory_order_relaxed) == End::kSelfDelete; }
    void runSelectors();

    pthread_t _thread{};
    CAtomic<bool> m_bThreadRun{false};
    std::atomic<bool> _startCame{false};  // set after m_bThreadRun: a Stop right behind the Start does not undo it
    CEvent _startEvent;
    CEvent _exitEvent;
    CEvent _pauseEvent;
    CAtomic<bool> _pause{false};   // a pause has been asked for
    CAtomic<bool> _resume{false};  // a resume has to be told to the subclass
    std::atomic<State> _state{kStarting};
    // Who deletes the object. The first of the two to say so settles it, so that it is deleted once, whatever comes in
    // between: m_bThreadExit, when the thread is past its last use of the object and leaves it behind, or Destroy's
    // mark that the thread is to delete it.
    enum class End { kOpen, kThreadExit, kSelfDelete };
    std::atomic<End> _end{End::kOpen};
    std::atomic<bool> _destroyerInside{false};  // Destroy still uses the object that it has marked for self-delete
    CMutex _selectorLock{true};
    SelectorList _selectors ORVANE_GUARDED_BY(_selectorLock);
};

}  // namespace Quern

#endif
