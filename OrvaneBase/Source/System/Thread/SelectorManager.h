// A queue of calls, performed a bounded number at a time.
#ifndef ORVANE_SYSTEM_THREAD_SELECTOR_MANAGER_H
#define ORVANE_SYSTEM_THREAD_SELECTOR_MANAGER_H

#include <atomic>
#include <memory>

#include "System/Thread/ISelectorCollection.h"
#include "System/Thread/Mutex.h"
#include "System/Thread/SelectorList.h"

namespace Quern {

class CSelectorManager : public ISelectorCollection {
public:
    // What one Update may take of a game's frame.
    static constexpr int kSelectorsPerUpdate = 20;

    // Drops the waiting calls. On the thread of Update, and also from a call that this performs: Update then ends with
    // that call.
    ~CSelectorManager() override;
    // The same, but the manager stays, and any thread may call: what is added later waits for the next Update.
    void Clear();

    void AddSelector(const CAFunctionSelector& selector) override;
    // Takes the oldest. False, and `selector` untouched, if there is none.
    bool Pop1stSelector(CAFunctionSelector& selector);
    // Performs the oldest, one by one, until none is left or kSelectorsPerUpdate are done. No lock is held meanwhile,
    // so a call may add others, which count against the same limit.
    void Update() override;
    // Drops every call to that target; the one that is being performed is left alone.
    void IgnoreTarget(void* target) override;

private:
    // In two halves, so that threads that post wait for each other alone: the pump takes all that was posted at once
    // and then works on that. _pumpMutex is taken before _mutex.
    CMutex _pumpMutex;
    SelectorList _taken ORVANE_GUARDED_BY(_pumpMutex);  // before all of _posted
    CMutex _mutex;
    SelectorList _posted ORVANE_GUARDED_BY(_mutex);
    std::atomic<bool> _hasPosted{false};  // written under _mutex; spares an empty pump that lock
    // How often the calls were dropped as a whole; each Update holds it as well, since it may outlive the manager.
    const std::shared_ptr<std::atomic<int>> _clearings = std::make_shared<std::atomic<int>>(0);
};

}  // namespace Quern

#endif
