#include "System/Thread/TargetBase.h"

#include "System/Thread/SelectorManager.h"

namespace Quern {

CTargetBase::~CTargetBase() {
    EnableManualUpdate(false);
}

void CTargetBase::EnableManualUpdate(bool enable) {
    // Out of sight before it is deleted. That no other thread is in the middle of a post to it is the owner's to see
    // to.
    if (!enable)
        delete _selectors.exchange(nullptr, std::memory_order_acq_rel);
    else if (!IsManualUpdateEnable())
        _selectors.store(new CSelectorManager, std::memory_order_release);
}

void CTargetBase::UpdateByManual() {
    if (ISelectorCollection* const selectors = GetSelectorCollection()) selectors->Update();
}

}  // namespace Quern
