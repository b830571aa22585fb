#include "System/Thread/SelectorManager.h"

namespace Quern {

CSelectorManager::~CSelectorManager() {
    Clear();
}

void CSelectorManager::AddSelector(const CAFunctionSelector& selector) {
    const CCritical guard(&_mutex);
    _posted.Push(selector);
    _hasPosted.store(true, std::memory_order_relaxed);
}

bool CSelectorManager::Pop1stSelector(CAFunctionSelector& selector) {
    const CCritical pumpGuard(&_pumpMutex);
    if (_taken.Pop(selector)) return true;
    if (!_hasPosted.load(std::memory_order_relaxed)) return false;
    {
        const CCritical guard(&_mutex);
        _taken.Swap(_posted);
        _hasPosted.store(false, std::memory_order_relaxed);
    }
    return _taken.Pop(selector);
}

void CSelectorManager::Update() {
    const std::shared_ptr<const std::atomic<int>> clearings = _clearings;
    const int before = clearings->load(std::memory_order_relaxed);
    CAFunctionSelector selector;
    for (int done = 0; done < kSelectorsPerUpdate && Pop1stSelector(selector); ++done) {
        selector.Perform();
        // The call may have deleted this manager. Only what lies on the stack is touched before that is known.
        if (clearings->load(std::memory_order_relaxed) != before) return;
    }
}

void CSelectorManager::IgnoreTarget(void* target) {
    const CCritical pumpGuard(&_pumpMutex);
    _taken.RemoveTarget(target);
    const CCritical guard(&_mutex);
    _posted.RemoveTarget(target);
}

void CSelectorManager::Clear() {
    const CCritical pumpGuard(&_pumpMutex);
    const CCritical guard(&_mutex);
    _taken.Clear();
    _posted.Clear();
    _clearings->fetch_add(1, std::memory_order_relaxed);
}

}  // namespace Quern
