// A queue of calls, performed a bounded number at a time.
#ifndef ORVANE_SYSTEM_SELECTOR_SELECTOR_MANAGER_H
#define ORVANE_SYSTEM_SELECTOR_SELECTOR_MANAGER_H

#include <deque>
#include <memory>

#include "System/Selector/ISelectorCollection.h"
#include "System/Thread/Mutex.h"

namespace Quern {

class CSelectorManager : public ISelectorCollection {
public:
    // What one Update may take of a game's frame.
    static constexpr int kSelectorsPerUpdate = 20;

    CSelectorManager() = default;
    // Drops the waiting calls. A call that Update performs may destroy the manager: Update then ends behind that call.
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
    struct Queue {
        CMutex mutex{true};
        std::deque<CAFunctionSelector> selectors ORVANE_GUARDED_BY(mutex);  // oldest first

        bool Pop(CAFunctionSelector& selector);
    };

    const std::shared_ptr<Queue> _queue = std::make_shared<Queue>();  // shared with an Update that is under way
};

}  // namespace Quern

#endif
