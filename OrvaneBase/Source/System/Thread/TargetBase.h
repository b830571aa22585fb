// The base of objects whose members are called through selectors.
#ifndef ORVANE_SYSTEM_THREAD_TARGET_BASE_H
#define ORVANE_SYSTEM_THREAD_TARGET_BASE_H

#include <atomic>

#include "System/Thread/ISelectorCollection.h"

namespace Quern {

// With manual update on, the object has a queue of its own: calls to it that would go to the UI thread wait there until
// its owner pumps them. Thread rule: the owner's thread switches and pumps.
class CTargetBase {
public:
    explicit CTargetBase(bool manualUpdate) { EnableManualUpdate(manualUpdate); }
    // Calls that wait in the object's own queue go with it.
    virtual ~CTargetBase();
    CTargetBase(const CTargetBase&) = delete;
    CTargetBase& operator=(const CTargetBase&) = delete;

    // Switching off drops the waiting calls.
    void EnableManualUpdate(bool enable);
    bool IsManualUpdateEnable() const { return GetSelectorCollection() != nullptr; }
    // The object's own queue, or null.
    ISelectorCollection* GetSelectorCollection() const { return _selectors.load(std::memory_order_acquire); }
    // Performs waiting calls of the object's own queue, if it has one.
    void UpdateByManual();

private:
    std::atomic<ISelectorCollection*> _selectors{nullptr};  // owned; read by whoever posts a call
};

}  // namespace Quern

#endif
