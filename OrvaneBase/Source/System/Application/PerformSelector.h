// The routes by which a call reaches the thread on which it is meant to run: the main run loop, the engine's tick, or
// the target's own queue.
//
// A call has no liveness check of its own: whoever destroys a target first drops its calls, with Quern_IgnoreUIThread
// or Quern_RemoveTargetFromMainThread (Orvane/OrvaneCore.h), on the thread that performs them: elsewhere one may be
// under way. Any thread may post.
#ifndef ORVANE_SYSTEM_APPLICATION_PERFORM_SELECTOR_H
#define ORVANE_SYSTEM_APPLICATION_PERFORM_SELECTOR_H

#include "System/Thread/SelectorManager.h"

namespace Quern {

// The queue of the main run loop, made at the first need; lives as long as the process.
CSelectorManager* GetMainSelectorManger();
// The queue of the engine's tick, made at the first need; lives as long as the process, and Quern_EndUIThread empties
// it.
CSelectorManager* getUnityObjectSelectorManger();

// Queues a copy for the main run loop and returns. Null is ignored.
void PerformSelectorOnMainThread(CAFunctionSelector* selector);

// Performs the selector itself, not a copy, on the main thread and returns when that is done; at once if the caller is
// on the main thread. With null it does not wait: the main manager is going to be updated.
void QuernPerformSelectorOnMainThread(CAFunctionSelector* selector);

// Queues a copy: in the target's own queue if it has one; else for the engine's tick, once the engine has asked for
// that (Quern_EnableManualUpdate); else for the main run loop. Null is ignored.
void PerformSelectorOnUIThread(CAFunctionSelector* selector);
void PerformSelectorOnUIThread(CTargetBase* target, void (CTargetBase::*member)(void*), void* a);
void PerformSelectorOnUIThread(CTargetBase* target, void (CTargetBase::*member)(void*, void*), void* a, void* b);

}  // namespace Quern

#endif
