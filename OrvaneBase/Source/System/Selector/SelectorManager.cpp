#include "System/Selector/SelectorManager.h"

#include <utility>

namespace Quern {

CSelectorManager::~CSelectorManager() {
    const CCritical guard(&_mutex);  // behind whoever is adding
    _selectors.Clear();
    if (_destroyed) *_destroyed = true;
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
    bool destroyed = false;
    bool* const outer = std::exchange(_destroyed, &destroyed);  // a call may update in turn
    CAFunctionSelector selector;
    for (int done = 0; done < kSelectorsPerUpdate && Pop1stSelector(selector); ++done) {
        selector.Perform();
        if (destroyed) {
            if (outer) *outer = true;
            return;
        }
    }
    _destroyed = outer;
}

void CSelectorManager::IgnoreTarget(void* target) {
    const CCritical guard(&_mutex);
    _selectors.RemoveTarget(target);
}

}  // namespace Quern
