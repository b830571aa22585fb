/// \file IBase.h
/// The root of the base library, for a host that takes the library down. C++11.
#ifndef ORVANE_I_BASE_H
#define ORVANE_I_BASE_H

#include "Orvane/Export.h"

namespace Quern {

class IBase {
public:
    /// Gives the common state back. Not exported: Release destroys the root.
    virtual ~IBase();

    /// Takes the base library down, in this order: the quit callbacks, which end the queues of background work, each by
    /// its own rule; the pump of the engine's tick, with the calls that wait in it; the native halves of script
    /// objects; the script layer's callbacks; the observers of the application's stages; the root and the common state.
    /// Nothing calls this by itself. The process may go on: whatever is needed again is made anew. Queued work either
    /// has run when this returns (the pool queue) or is dropped (the threaded queue, whose sleeping workers stay until
    /// the process ends, and whose busy ones still finish the operation they run, after this has returned).
    ///
    /// On the main thread. Meanwhile other threads may log, enter quit callbacks, use the network's state
    /// (Orvane/INetwork.h), post calls for the engine's tick (which are lost, or wait for its next round) and queue
    /// work with the threaded queue: one that comes back in that way is ended as well, once a take-down. With the pool
    /// queue only its own operations may queue work. Nobody else touches script objects, nor makes or destroys
    /// observers of the stages.
    ORVANE_EXPORT static void Release();

    /// Makes sure that the root exists. Any thread. Not exported: for the library itself.
    static IBase* GetInstance();

private:
    IBase() {}
};

}  // namespace Quern

#endif
