#include "System/Thread/SelectorManager.h"

namespace Quern {

CSelectorManager::~CSelectorManager() {
    const CCritical guard(&_mutex);  // behind whoever is adding
    _selectors.Clear();
    _destroyed->store(true, std::memory_order_relaxed);
}

void CSelectorManager::AddSelector(const CAFunctionSelector& selector) {
    const CCritical guard(&_mutex);
    _selectors.Push(selector);
}

bool CSelectorManager::Pop1stSelector(CAFunctionSelector& selector) {
    const CCritical guard(&_mutex);
    return _selectors.Pop(selector);
}

void CSelectorManager::Update() {
    const std::shared_ptr<const std::atomic<bool>> destroyed = _destroyed;
    CAFunctionSelector selector;
    for (int done = 0; done < kSelectorsPerUpdate && Pop1stSelector(selector); ++done) {
        selector.Perform();
        if (destroyed->load(std::memory_order_relaxed)) return;
    }
}

void CSelectorManager::IgnoreTarget(void* target) {
    const CCritical guard(&_mutex);
    _selectors.RemoveTarget(target);
}

}  // namespace Quern
