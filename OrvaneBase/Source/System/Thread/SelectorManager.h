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

    void AddSelector(const CAFunctionSelector& selector) override;
    // Takes the oldest. False, and `selector` untouched, if there is none.
    bool Pop1stSelector(CAFunctionSelector& selector);
    // Performs the oldest, one by one, until none is left or kSelectorsPerUpdate are done. No lock is held meanwhile,
    // so a call may add others, which count against the same limit.
    void Update() override;
    // Drops every call to that target; the one that is being performed is left alone.
    void IgnoreTarget(void* target) override;

private:
    SelectorList _selectors ORVANE_GUARDED_BY(_mutex);
    CMutex _mutex{true};
    // Set by the destructor; each Update holds it as well, since it may outlive the manager.
    const std::shared_ptr<std::atomic<bool>> _destroyed = std::make_shared<std::atomic<bool>>(false);
};

}  // namespace Quern

#endif
